#include "engine/dotnet/NetEvents.h"

#include <algorithm>
#include <map>

#include "engine/CommandSteps.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

std::string Stem(const std::string& file) {
  const std::string name = FilePart(file);
  return name.substr(0, name.size() - ExtensionOf(name).size());
}

using Macros = std::map<std::string, std::string>;

// Of one file: NAME + "Path", "Dir", "FileName", "Name", "Ext".
void AddFile(Macros& macros, const std::string& name, const std::string& file) {
  macros[name + "path"] = WinePath(file);
  macros[name + "dir"] = WinePath(FolderPart(file));
  macros[name + "filename"] = FilePart(file);
  macros[name + "name"] = Stem(file);
  macros[name + "ext"] = ExtensionOf(file);
}

Macros MacrosOf(const NetProject& project, const ProjectTask& task, const std::string& output) {
  Macros macros;
  AddFile(macros, "target", output);
  AddFile(macros, "project", project.file);
  if (!task.name.empty()) macros["projectname"] = task.name;
  if (!task.solutionFile.empty()) AddFile(macros, "solution", task.solutionFile);
  macros["configurationname"] = task.configuration;
  macros["platformname"] = task.platform.empty() ? ".NET" : task.platform;
  macros["outdir"] = project.outputPath.value;
  macros["devenvdir"] = "";
  return macros;
}

// There from an event's beginning to its good end.
std::string DueFile(const ProjectTask& task, const std::string& intermediate) {
  std::string configuration = task.configuration;
  std::replace_if(configuration.begin(), configuration.end(), IsDelimiter, '_');
  return intermediate + "PostBuildEvent." + configuration + ".due";
}

}  // namespace

WhenToRun WhenPostBuildEventRuns(const NetProject& project) {
  if (SameText(project.runPostBuildEvent, "Always")) return WhenToRun::Always;
  if (SameText(project.runPostBuildEvent, "OnOutputUpdated")) return WhenToRun::OnOutputUpdated;
  return WhenToRun::OnBuildSuccess;
}

std::string RunBuildEvent(const char* name, const NetProject& project, const ProjectTask& task,
                          const std::string& output, const std::string& intermediate, Console& console) {
  const bool isFirst = std::string_view(name) == "PreBuildEvent";
  const std::string& commands = isFirst ? project.preBuildEvent : project.postBuildEvent;
  if (TrimView(commands).empty()) return {};
  CreateFolders(FolderPart(output));
  CreateFolders(intermediate);
  const CommandStep step{isFirst ? "Performing Pre-Build Event..." : "Performing Post-Build Event...",
                         ExpandEventMacros(commands, project, task, output), FolderPart(output),
                         intermediate + name + ".bat"};
  const std::string due = isFirst ? std::string() : DueFile(task, intermediate);
  if (!due.empty()) ReplaceFile(due, "");
  const std::string reason = RunCommandStep(step, console);
  if (!reason.empty()) return std::string(name) + ": " + reason;
  if (!due.empty()) RemoveFile(due);
  return {};
}

bool IsPostBuildEventOwed(const NetProject& project, const ProjectTask& task,
                          const std::string& intermediate) {
  return !TrimView(project.postBuildEvent).empty() && FileExists(DueFile(task, intermediate));
}

std::string ExpandEventMacros(std::string_view commands, const NetProject& project, const ProjectTask& task,
                              const std::string& output) {
  const Macros macros = MacrosOf(project, task, output);
  std::string out;
  for (std::size_t at = 0; at < commands.size();) {
    const std::size_t end =
        commands.substr(at).starts_with("$(") ? commands.find(')', at) : std::string_view::npos;
    if (end != std::string_view::npos) {
      const auto found = macros.find(LowerCase(commands.substr(at + 2, end - at - 2)));
      if (found != macros.end()) {
        out += found->second;
        at = end + 1;
        continue;
      }
    }
    out += commands[at++];
  }
  return out;
}

}  // namespace qx
