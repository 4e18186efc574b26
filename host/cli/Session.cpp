#include "host/cli/Session.h"

#include "host/HostArguments.h"
#include "host/cli/Commands.h"
#include "host/keeping/Keeping.h"
#include "host/project/ProjectCheck.h"
#include "platform/VisibleText.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::cli {

namespace {

Host::Settings SettingsOf(const Invocation& invocation) {
  Host::Settings settings = HostSettingsOf(invocation, QXHOST_DEFAULT_PACKAGE);
  settings.mendsSettings = invocation.command != nullptr && invocation.command->run == ShowOptions;
  settings.warn = Session::Warn;
  return settings;
}

}  // namespace

Session::Session(const Invocation& invocation, StopGuard& guard)
    : Host(SettingsOf(invocation)), guard_(guard) {
  const std::string colour = invocation.Value("--color").value_or("auto");
  if (colour == "always") colour_ = ColourChoice::Always;
  if (colour == "never") colour_ = ColourChoice::Never;
}

void Session::Print(std::string_view text) { Write(LogFile::StandardOutput(), VisibleText(text)); }

void Session::PrintExact(std::string_view text) {
  LogFile out = LogFile::StandardOutput();
  const bool isShown = out.IsTerminal();
  Write(std::move(out), isShown ? VisibleText(text) : std::string(text));
}

void Session::Write(LogFile out, const std::string& text) {
  const std::string error = out.Write(text);
  if (writeError_.empty() && !error.empty()) writeError_ = "Cannot write standard output: " + error;
}

void Session::Complain(const std::string& text) {
  LogFile::StandardError().Write("qxhost: " + VisibleText(text) + "\n");
}

void Session::UseVariables(const Invocation& invocation, const BuildProject* project) {
  if (project != nullptr) UseProjectVariables(*project);
  for (const std::string& text : invocation.Values("--set")) {
    auto [name, value] = SplitAssignment(text);
    Variables().SetOverride(std::move(name), std::move(value));
  }
  Catalogue().UseDesignVariables(&Variables());
}

std::string Session::ProjectFile(const Invocation& invocation) {
  std::string file = ExpandPath("", invocation.operands[0]);
  if (FolderExists(file)) throw Exception(file + " is a folder; name a build project in it");
  if (!FileExists(file))
    throw Exception("Cannot read " + file +
                    ": there is no such file; make one with qxhost init or qxhost new");
  if (const std::string note = NoteOfCutOffRun(file); !note.empty()) Warn(note);
  return file;
}

OpenProject Session::Open(const std::string& file, const Invocation& invocation, ActionLog* log) {
  BuildProject project = BuildProject::Load(file);
  Packages();
  UseVariables(invocation, &project);
  return Host::Open(std::move(project), log);
}

std::vector<std::string> Session::UnusedSettings(const OpenProject& project) {
  const auto texts = project.StoredTexts();
  return texts ? Variables().UnusedOverrides(*texts) : std::vector<std::string>();
}

void Session::WarnOfUnusedSettings(const OpenProject& project) {
  for (const std::string& name : UnusedSettings(project))
    Warn("--set " + name + ": nothing in " + project.File() + " uses %" + name + "%");
}

std::vector<std::pair<int, CheckFinding>> Session::ForetellRun(const OpenProject& project) {
  auto findings = AskChecks(project).findings;
  std::erase_if(findings, [](const auto& one) { return one.second.severity == CheckSeverity::Info; });
  for (const auto& [action, finding] : findings) {
    const std::string line = "action " + std::to_string(action) + ": " + LineOf(finding);
    if (finding.severity == CheckSeverity::Warning) Warn(line);
    if (finding.severity == CheckSeverity::Error) Complain(line);
  }
  return findings;
}

void Session::Save(OpenProject& project) {
  for (const std::string& warning : project.Save()) Warn(warning);
}

TQXAction& Session::ActionOf(OpenProject& project, int number) {
  if (number > project.ActionCount()) {
    const std::string count = std::to_string(project.ActionCount());
    throw Exception(
        project.File() + " has no action " + std::to_string(number) +
        (project.ActionCount() == 0 ? "; append one with qxhost add" : " (nearest: " + count + ")"));
  }
  if (TQXAction* action = project.Action(number - 1)) return *action;
  throw Exception(project.File() + ": no loaded package has action " + std::to_string(number) + ", \"" +
                  project.ActionType(number - 1) + "\"; name its package with --package");
}

}  // namespace qx::cli
