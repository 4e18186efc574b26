#include "engine/dotnet/MsBuildRun.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "engine/ChildCommand.h"
#include "engine/MsBuildEngine.h"
#include "engine/dotnet/CompilePlan.h"
#include "engine/dotnet/Freshness.h"
#include "engine/dotnet/NetBuild.h"
#include "engine/dotnet/NetEvents.h"
#include "platform/Posix.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "projects/net/NetOutput.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNoEngine =
    "projects of Visual Studio 2005 cannot be built here: there is none of msbuild, dotnet or xbuild "
    "on the PATH (Debian's package mono-xbuild)";

const char* TargetOf(Goal goal) {
  return goal == Goal::Clean ? "/t:Clean" : goal == Goal::Rebuild ? "/t:Rebuild" : "/t:Build";
}

std::string ReplaceAll(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// A ";" would begin the next property.
std::string PropertySwitch(const std::string& name, const std::string& value) {
  return WithTurnedPaths("/p:" + name + "=" + ReplaceAll(value, ";", "%3B"));
}

bool IsFolderProperty(const std::string& name) {
  return SameText(name, "OutputPath") || SameText(name, "OutDir");
}

// Which configuration each project that is needed was built in, as the engine takes it from a solution.
std::string SolutionConfigurations(const ProjectTask& task) {
  std::string xml;
  for (const BuiltProject* need : task.needs) {
    if (need->guid.empty() || need->configuration.empty()) continue;
    xml += "<ProjectConfiguration Project=\"" + need->guid + "\">" + need->configuration + "|" +
           NetPlatformName(need->platform) + "</ProjectConfiguration>";
  }
  return xml.empty() ? xml : "<SolutionConfiguration>" + xml + "</SolutionConfiguration>";
}

bool AreReferencesBuilt(const NetProject& project, const ProjectTask& task) {
  return std::ranges::all_of(project.references, [&](const NetReference& reference) {
    return !reference.IsProject() || std::ranges::any_of(task.needs, [&](const BuiltProject* need) {
      return SameText(need->guid, reference.projectGuid);
    });
  });
}

// Attribute values as they stand in the file.
std::string Escaped(std::string text) {
  text = ReplaceAll(std::move(text), "&", "&amp;");
  return ReplaceAll(ReplaceAll(std::move(text), "<", "&lt;"), "\"", "&quot;");
}

std::string RelativeTo(const std::string& folder, const std::string& path) {
  return path.starts_with(folder) ? path.substr(folder.size()) : path;
}

bool HasWildcard(std::string_view name) { return name.find_first_of("*?") != std::string_view::npos; }

// The name that a file has on disk, where it differs from the one that is written.
std::optional<std::string> OtherName(const NetProject& project, const std::string& written) {
  if (written.empty() || HasWildcard(written)) return std::nullopt;
  const std::string expected = ExpandPath(FolderPart(project.file), written);
  const std::string found = FindExisting(expected);
  if (found.empty() || found == expected) return std::nullopt;
  return RelativeTo(FolderPart(project.file), found);
}

// Whether the engine finds the assembly by itself: its own search knows the framework and exact hints.
bool IsFoundByEngine(const NetProject& project, const NetReference& reference,
                     const AssemblyFolders& folders) {
  if (reference.IsProject() || !reference.comGuid.empty()) return true;
  if (!FindFrameworkAssembly(folders, reference.name).empty()) return true;
  return !reference.hintPath.empty() && FileExists(NetPath(project, reference.hintPath)) &&
         !OtherName(project, reference.hintPath);
}

// Rewrites Include="..." values; everything else keeps its bytes.
class Corrector {
 public:
  explicit Corrector(const std::string& text) : text_(text) {}

  void Rename(const std::string& from, const std::string& to) {
    const std::string attribute = "\"" + Escaped(from) + "\"";
    if (text_.find(attribute) == std::string::npos) return;
    text_ = ReplaceAll(std::move(text_), attribute, "\"" + Escaped(to) + "\"");
    changed_ = true;
  }

  // As Rename, and the resource's own name, which is made of where the project shows it, stays.
  void RenameResource(const std::string& from, const std::string& to) {
    const std::string attribute = "Include=\"" + Escaped(from) + "\"";
    const std::string link = "<Link>" + Escaped(from) + "</Link>";
    constexpr std::string_view kElement = "EmbeddedResource";
    for (std::size_t at = 0; (at = text_.find(attribute, at)) != std::string::npos; at += attribute.size()) {
      const std::size_t begin = text_.rfind('<', at);
      const std::size_t end = text_.find('>', at);
      if (begin == std::string::npos || end == std::string::npos ||
          !std::string_view(text_).substr(begin + 1).starts_with(kElement))
        continue;
      if (text_[end - 1] == '/') {
        text_.replace(end - 1, 2, ">" + link + "</EmbeddedResource>");
      } else {
        text_.insert(end + 1, link);
      }
    }
    Rename(from, to);
  }

  // `<Reference Include="NAME, Version=...">` of that simple name.
  void PointReference(const std::string& name, const std::string& path) {
    for (std::size_t at = 0; (at = text_.find("<Reference", at)) != std::string::npos;) {
      at = text_.find("Include=\"", at);
      if (at == std::string::npos) return;
      at += std::string_view("Include=\"").size();
      const std::size_t end = text_.find('"', at);
      if (end == std::string::npos) return;
      const std::string_view value = std::string_view(text_).substr(at, end - at);
      if (!SameText(TrimView(value.substr(0, value.find(','))), Escaped(name))) continue;
      text_.replace(at, end - at, Escaped(path));
      changed_ = true;
    }
  }

  std::optional<std::string> Result() && {
    return changed_ ? std::optional<std::string>(std::move(text_)) : std::nullopt;
  }

 private:
  std::string text_;
  bool changed_ = false;
};

// A project file that stands beside the real one for as long as the engine runs.
class TemporaryProject {
 public:
  TemporaryProject(const std::string& file, const std::string& text)
      : path(FolderPart(file) + ".engine-" + FilePart(file)) {
    ReplaceFile(path, text);
    std::error_code ignored;  // the engine compiles anew what is older than its project
    fs::last_write_time(path, fs::last_write_time(file, ignored), ignored);
  }
  ~TemporaryProject() {
    std::error_code ignored;
    fs::remove(path, ignored);
  }
  TemporaryProject(const TemporaryProject&) = delete;
  TemporaryProject& operator=(const TemporaryProject&) = delete;

  const std::string path;
};

// What an output has to be newer than, as far as the project names it.
std::vector<std::string> KnownInputs(const NetProject& project) {
  std::vector<std::string> inputs;
  for (const NetFile& file : project.files) {
    const std::string path = NetPath(project, file.path);
    if (SameText(file.action, "Compile") && !HasWildcard(file.path) && FileExists(path))
      inputs.push_back(path);
  }
  return inputs;
}

class MsBuildRun {
 public:
  MsBuildRun(const NetProject& project, const ProjectTask& task, Console& console)
      : project_(project), task_(task), console_(console) {}

  BuiltProject Run() {
    const std::optional<Engine> engine = FindEngine(system::SearchPath());
    if (!engine) return Failed(kNoEngine);
    const bool isXbuild = FilePart(engine->program) == "xbuild";
    if (isXbuild && project_.language == NetLanguage::VisualBasic && FindProgram("vbnc").empty()) {
      return Failed(kNoBasicCompiler, "vb");
    }
    output_ = WhereOutputLies(project_).path;
    if (std::string reason = RunEvent("PreBuildEvent"); !reason.empty()) return Failed(reason);
    const std::string before = Stamp();
    BuiltProject built = Judge(Call(*engine, isXbuild), before, FilePart(engine->program));
    if (!IsPostBuildEventDue(built)) return built;
    const std::string reason = RunEvent("PostBuildEvent");
    return reason.empty() || built.status == BuiltProject::Status::Failed ? built : Failed(reason);
  }

 private:
  bool IsPostBuildEventDue(const BuiltProject& built) const {
    switch (WhenPostBuildEventRuns(project_)) {
      case WhenToRun::Always:
        return true;
      case WhenToRun::OnBuildSuccess:
        return built.status != BuiltProject::Status::Failed;
      case WhenToRun::OnOutputUpdated:
        return built.status == BuiltProject::Status::Succeeded ||
               (built.status == BuiltProject::Status::UpToDate &&
                IsPostBuildEventOwed(project_, task_, Intermediate()));
    }
    return false;
  }

  // The engine would give these commands, which are for Windows, to a shell of this system.
  std::string RunEvent(const char* name) {
    if (task_.goal == Goal::Clean) return {};
    if (output_.empty() && !(project_.preBuildEvent + project_.postBuildEvent).empty()) {
      return std::string(name) + ": where the output lies is not known: " + WhereOutputLies(project_).reason;
    }
    return RunBuildEvent(name, project_, task_, output_, Intermediate(), console_);
  }

  std::string Intermediate() const { return WithTrailingDelimiter(NetPath(project_, "obj")); }

  // The output's time and size: another one, or none, tells that it was made anew.
  std::string Stamp() const {
    std::error_code error;
    const auto time = fs::last_write_time(output_, error);
    if (error) return {};
    return std::to_string(time.time_since_epoch().count()) + " " +
           std::to_string(fs::file_size(output_, error));
  }

  ChildResult Call(const Engine& engine, bool isXbuild) {
    const std::string compiler = FindProgram("mcs");
    const AssemblyFolders folders = SystemAssemblyFolders(compiler.empty() ? engine.program : compiler);
    const std::string codePage = project_.codePage.empty() ? CodePageOfSources(project_) : std::string();
    MsBuildCall call = CallFor(project_, task_, isXbuild, codePage);
    std::optional<TemporaryProject> temporary;
    if (const auto text = CorrectedProject(ReadFile(project_.file), project_, task_, folders)) {
      temporary.emplace(project_.file, *text);
      // By this file it cleans; its name is the project's.
      call.switches.push_back("/p:CleanFile=" + FilePart(project_.file) + ".FilesWrittenAbsolute.txt");
    }
    ChildCommand command{{engine.program}, FolderPart(project_.file), std::move(call.environment)};
    command.arguments.insert(command.arguments.end(), engine.arguments.begin(), engine.arguments.end());
    command.arguments.push_back(temporary ? FilePart(temporary->path) : FilePart(project_.file));
    command.arguments.insert(command.arguments.end(), call.switches.begin(), call.switches.end());
    return RunChild(command, [this](std::string_view line) {
      if (!TrimView(line).starts_with("Configuration: "))
        console_.Line(line);  // xbuild says it of each project
    });
  }

  // Success is what is there, not what the engine says.
  BuiltProject Judge(const ChildResult& result, const std::string& before, const std::string& engine) const {
    if (!result.reason.empty()) return Failed(result.reason);
    if (result.code != 0) return Failed(engine + " returned code " + std::to_string(result.code));
    BuiltProject built;
    built.status = BuiltProject::Status::Succeeded;
    if (task_.goal == Goal::Clean) return built;
    built.output = output_;
    if (output_.empty()) return built;
    const std::string after = Stamp();
    if (after.empty()) return Failed(engine + " reports success, but there is no " + output_);
    if (after != before) {
      console_.Line(task_.name + " -> " + output_);
      return built;
    }
    if (!IsFresh(output_, KnownInputs(project_))) {
      return Failed(engine + " reports success, but " + output_ + " is older than its sources");
    }
    built.status = BuiltProject::Status::UpToDate;
    return built;
  }

  const NetProject& project_;
  const ProjectTask& task_;
  Console& console_;
  std::string output_;
};

}  // namespace

MsBuildCall CallFor(const NetProject& project, const ProjectTask& task, bool isXbuild,
                    const std::string& codePage) {
  MsBuildCall call;
  call.switches = {"/nologo", "/verbosity:minimal", "/clp:NoSummary", TargetOf(task.goal)};
  if (!task.configuration.empty())
    call.switches.push_back(PropertySwitch("Configuration", task.configuration));
  if (!task.platform.empty())
    call.switches.push_back(PropertySwitch("Platform", NetPlatformName(task.platform)));
  for (const auto& [name, value] : task.properties) {
    if (SameText(name, "Configuration") || SameText(name, "Platform")) continue;
    call.switches.push_back(
        PropertySwitch(name, IsFolderProperty(name) ? WithTrailingDelimiter(value) : value));
  }
  for (const char* event : {"PreBuildEvent", "PostBuildEvent"})
    call.switches.push_back("/p:" + std::string(event) + "=");
  if (!codePage.empty()) call.switches.push_back(PropertySwitch("CodePage", codePage));
  if (!task.needs.empty() && AreReferencesBuilt(project, task)) {
    // They are built already; the engine only asks them for their outputs.
    call.switches.push_back(isXbuild ? "/p:BuildingInsideVisualStudio=true"
                                     : "/p:BuildProjectReferences=false");
    const std::string configurations = SolutionConfigurations(task);
    if (!configurations.empty()) call.environment["CurrentSolutionConfigurationContents"] = configurations;
  }
  if (!task.solutionFile.empty()) {
    call.switches.push_back("/p:SolutionDir=" + FolderPart(task.solutionFile));
    call.switches.push_back("/p:SolutionPath=" + task.solutionFile);
  }
  return call;
}

std::optional<std::string> CorrectedProject(const std::string& text, const NetProject& project,
                                            const ProjectTask& task, const AssemblyFolders& folders) {
  Corrector corrector(text);
  for (const NetFile& file : project.files) {
    const auto name = OtherName(project, file.path);
    if (!name) continue;
    if (SameText(file.action, "EmbeddedResource") && file.place == file.path) {
      corrector.RenameResource(file.path, *name);
    } else {
      corrector.Rename(file.path, *name);
    }
  }
  for (const NetReference& reference : project.references) {
    if (const auto name = OtherName(project, reference.projectFile))
      corrector.Rename(reference.projectFile, *name);
    if (IsFoundByEngine(project, reference, folders)) continue;
    bool isLocal = false;
    const std::string file = ResolveReference(project, reference, task, folders, isLocal);
    if (!file.empty()) corrector.PointReference(reference.name, file);
  }
  return std::move(corrector).Result();
}

BuiltProject BuildWithMsBuild(const NetProject& project, const ProjectTask& task, Console& console) {
  return MsBuildRun(project, task, console).Run();
}

}  // namespace qx
