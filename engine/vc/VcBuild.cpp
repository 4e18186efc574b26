#include <filesystem>

#include "engine/ChildCommand.h"
#include "engine/CommandSteps.h"
#include "engine/Project.h"
#include "engine/vc/BuildRecord.h"
#include "engine/vc/CompilerArguments.h"
#include "engine/vc/DefFile.h"
#include "engine/vc/Diagnostics.h"
#include "engine/vc/Plan.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

namespace fs = std::filesystem;
using Status = BuiltProject::Status;

constexpr const char* kStatus = "@ninja@ ";
constexpr const char* kRecord = "build.record";

BuiltProject Failed(std::string reason, std::string limit = {}) {
  BuiltProject built;
  built.limit = std::move(limit);
  built.reason = std::move(reason);
  return built;
}

// A project that is being built, from its file to its record.
class Builder {
 public:
  Builder(const ProjectTask& task, Console& console) : task_(task), console_(console) {}

  BuiltProject Run() {
    Open();
    if (settings_->Type() == VcType::Makefile) {
      Announce();
      return RunMakefile();
    }
    if (IsManaged()) return Refuse("managed C++ cannot be built outside Windows", "managed");
    if (const std::string reason = Hindrance(); !reason.empty()) return Refuse(reason);
    if (task_.goal == Goal::Build) {
      old_ = BuildRecord::Load(places_.folder + kRecord);
      if (old_ && IsUpToDate()) return UpToDate();
    }
    Announce();
    if (task_.goal != Goal::Build) Clean();
    return task_.goal == Goal::Clean ? Done(Status::Succeeded) : Build();
  }

 private:
  void Open();
  bool IsManaged() const;
  std::string Hindrance() const;
  std::string Key() const;
  bool IsUpToDate() const;
  // To those that are built at the same time: what it makes, and whether it runs commands of its own.
  void Announce() const;
  bool RunsCommands() const;
  BuiltProject UpToDate() const;
  BuiltProject Build();
  void Prepare();
  // None: it went well.
  std::optional<BuiltProject> CompileAndLink();
  BuiltProject ToolFailed() const;
  BuiltProject RunMakefile();
  void Clean();
  bool RunNinja(const char* target);
  // Both answer as RunCommandStep does.
  std::string RunEvent(std::string_view tool, const char* title);
  std::string RunCommands(const std::string& commands, const char* title);
  void Save(BuildRecord record, std::int64_t started);
  std::optional<BuiltProject> MakeImportLibrary(const Toolchain& tools);

  // An error with the project's name in front, as the result too.
  BuiltProject Refuse(const std::string& reason, const std::string& limit = {}) {
    if (limit.empty()) console_.Error(task_.name, 0, "PRJ0002", reason);
    return Failed(reason, limit);
  }
  BuiltProject RefuseEvent(const std::string& event, const std::string& reason) {
    console_.Error(task_.name, 0, "PRJ0019", "its " + event + " failed: " + reason);
    return Failed("its " + event + " failed");
  }
  BuiltProject Done(Status status) const {
    BuiltProject built;
    built.status = status;
    built.output = places_.output;
    // A DLL that exports nothing has none.
    if (StampOf(places_.importLibrary).size >= 0) built.importLibrary = places_.importLibrary;
    return built;
  }

  const ProjectTask& task_;
  Console& console_;
  std::optional<VcSettings> settings_;
  std::map<std::string, std::optional<std::string>> environment_;  // what the project asked for
  std::optional<BuildRecord> old_;
  VcPlaces places_;
  VcPlan plan_;
  std::string firstError_;
  std::set<std::string> missingHeaders_;
};

void Builder::Open() {
  VcPlace place = PlaceOnDisk(task_.file, task_.solutionFile, task_.configuration, task_.platform);
  place.environment = [this, ask = place.environment](const std::string& name) {
    std::optional<std::string> value = ask(name);
    environment_[name] = value;
    return value;
  };
  settings_.emplace(OpenVcProject(place));
  places_ = PlacesOf(*settings_);
}

bool Builder::IsManaged() const {
  const std::string managed = settings_->Attribute("ManagedExtensions");
  return !managed.empty() && managed != "0" && !SameText(managed, "false");
}

// Why it cannot be built here whatever its sources say; empty: it can.
std::string Builder::Hindrance() const {
  std::vector<std::string> paths = places_.Files();
  paths.push_back(places_.folder);
  for (const std::string& path : paths) {
    if (path[0] != '/') return "\"" + path + "\" lies on a drive, which there is none of here";
  }
  return {};
}

std::string Builder::Key() const {
  return "1|" + task_.configuration + "|" + task_.platform + "|" + task_.solutionFile + "|" + task_.launcher;
}

bool Builder::IsUpToDate() const {
  if (old_->key != Key()) return false;
  if (task_.neighbours != nullptr) {
    task_.neighbours->Await([this](const std::string& made) { return old_->files.contains(made); });
  }
  return old_->IsCurrent();
}

bool Builder::RunsCommands() const {
  const VcType type = settings_->Type();
  if (type == VcType::Makefile || type == VcType::Utility) return true;
  const auto runs = [this](std::string_view tool, const VcFile* file) {
    return !CommandLines(settings_->Text(tool, "CommandLine", file)).empty();
  };
  for (const char* tool :
       {"VCPreBuildEventTool", "VCPreLinkEventTool", "VCCustomBuildTool", "VCPostBuildEventTool"}) {
    if (runs(tool, nullptr)) return true;
  }
  const std::vector<VcFile>& files = settings_->Project().files;
  return std::any_of(files.begin(), files.end(), [&](const VcFile& file) {
    return settings_->ToolOf(file) == "VCCustomBuildTool" && runs("VCCustomBuildTool", &file);
  });
}

void Builder::Announce() const {
  if (task_.neighbours == nullptr) return;
  Neighbours::Intent intent{RunsCommands(), {places_.folder}};
  for (std::string& file : places_.Files()) intent.makes.push_back(std::move(file));
  task_.neighbours->Announce(intent);
}

BuiltProject Builder::UpToDate() const {
  BuiltProject built = Done(Status::UpToDate);
  built.libraries = old_->libraries;
  return built;
}

bool Builder::RunNinja(const char* target) {
  ChildCommand command;
  command.arguments = {NinjaProgram(), "-k", "0"};
  if (task_.jobs > 0) command.arguments.insert(command.arguments.end(), {"-j", std::to_string(task_.jobs)});
  command.arguments.emplace_back(target);
  command.folder = places_.folder;
  command.environment = {{"NINJA_STATUS", kStatus}, {"LC_ALL", "C"}, {"TERM", "dumb"}};
  command.turns = task_.turns;
  Diagnostics diagnostics(kStatus, [this](std::string_view line) { console_.Line(line); });
  const ChildResult result = RunChild(command, [&](std::string_view line) { diagnostics.Line(line); });
  if (firstError_.empty()) firstError_ = diagnostics.FirstError();
  missingHeaders_.insert(diagnostics.MissingHeaders().begin(), diagnostics.MissingHeaders().end());
  if (!result.reason.empty()) console_.Error(task_.name, 0, "PRJ0003", result.reason);
  return result.code == 0;
}

std::string Builder::RunEvent(std::string_view tool, const char* title) {
  if (settings_->Flag(tool, "ExcludedFromBuild").value_or(false)) return {};
  return RunCommands(settings_->Said(tool, "CommandLine", nullptr, VcPaths::ForCommands).value_or(""), title);
}

std::string Builder::RunCommands(const std::string& commands, const char* title) {
  CreateFolders(places_.folder);
  return RunCommandStep({title, commands, settings_->ProjectFolder(), places_.folder + "event.bat"},
                        console_);
}

// MFC and ATL are not there to be had: that one of their headers is missing says it all.
BuiltProject Builder::ToolFailed() const {
  constexpr std::array kLimits = {std::pair{"afx", "mfc"}, std::pair{"atl", "atl"}};
  for (const std::string& header : missingHeaders_) {
    for (const auto& [prefix, limit] : kLimits) {
      if (!LowerCase(FilePart(header)).starts_with(prefix)) continue;
      return Failed("it needs " + UpperCase(limit) + " (" + header + "), which there is not outside Windows",
                    limit);
    }
  }
  return Failed(firstError_.empty() ? "a tool failed" : firstError_);
}

// Everything that stands on disk before a tool runs.
void Builder::Prepare() {
  for (const std::string& macro : settings_->UnknownMacros()) {
    console_.Warning(task_.name, 0, "PRJ0018", "environment variable $(" + macro + ") was not found");
  }
  for (const std::string& note : plan_.notes) console_.Line(note);
  if (IsStdcallByDefault(*settings_, nullptr)) {
    console_.Warning(task_.name, 0, "PRJ0041",
                     "/Gz is left out: functions that name no calling convention are __cdecl here");
  }
  const std::string root = FolderPart(task_.solutionFile.empty() ? task_.file : task_.solutionFile);
  // For everybody to see where it goes.
  if (!places_.folder.starts_with(root)) console_.Line("Intermediate files: " + places_.folder);
  for (const std::string& file : places_.Files()) {
    if (!file.starts_with(root)) console_.Line("Output: " + file);
    CreateFolders(FolderPart(file));
  }
  RemoveFile(places_.folder + kRecord);
  ReplaceFile(places_.folder + "build.ninja", plan_.ninja);
}

std::optional<BuiltProject> Builder::CompileAndLink() {
  const bool inTwo =
      !plan_.linkErrors.empty() || !settings_->Text("VCPreLinkEventTool", "CommandLine").empty();
  if (inTwo) {
    if (!RunNinja(kObjectsTarget)) return ToolFailed();
    for (const std::string& error : plan_.linkErrors) console_.Line("LINK : fatal error LNK1104: " + error);
    if (!plan_.linkErrors.empty()) return Failed(plan_.linkErrors.front());
    const std::string reason = RunEvent("VCPreLinkEventTool", "Performing Pre-Link Event...");
    if (!reason.empty()) return RefuseEvent("pre-link event", reason);
  }
  if (!RunNinja(kAllTarget)) return ToolFailed();
  if (!places_.output.empty() && StampOf(places_.output).size < 0) {
    return Refuse("nothing was built: " + places_.output);
  }
  return std::nullopt;
}

// ld gives an import library the names that the DLL exports. Those who call a function of Win32's usual
// convention ask for it by its decorated name.
std::optional<BuiltProject> Builder::MakeImportLibrary(const Toolchain& tools) {
  if (plan_.exports.empty() || !tools.prefix.starts_with("i686")) return std::nullopt;
  ChildCommand nm{{tools.nm}, places_.folder, {{"LC_ALL", "C"}}};
  nm.arguments.insert(nm.arguments.end(), plan_.objects.begin(), plan_.objects.end());
  std::string symbols;
  RunChild(nm, [&](std::string_view line) { (symbols += line) += '\n'; });
  const std::string definitions = DefFileWithStdcall(plan_.exports, symbols);
  if (definitions.empty()) return std::nullopt;
  ReplaceFile(places_.folder + "import.def", definitions);
  const ChildResult result = RunChild({{tools.dlltool, "--kill-at", "--input-def", "import.def", "--dllname",
                                        FilePart(places_.output), "--output-lib", places_.importLibrary},
                                       places_.folder,
                                       {}},
                                      [this](std::string_view line) { console_.Line(line); });
  if (result.code == 0) return std::nullopt;
  return Refuse("its import library could not be made: " + places_.importLibrary);
}

BuiltProject Builder::Build() {
  const Toolchain& tools = ToolchainFor(settings_->Place().platform);
  plan_ = PlanVisualCpp(*settings_, places_, task_, tools);
  for (const std::string& error : plan_.errors) console_.Error(task_.name, 0, "PRJ0002", error);
  if (!plan_.errors.empty()) return Failed(plan_.errors.front());
  // As they are now: what changes while it is built, may not be in the program.
  BuildRecord record;
  for (const std::string& input : plan_.inputs) record.Add(input);
  Prepare();
  const FileStamp before = StampOf(places_.output);
  std::string reason = RunEvent("VCPreBuildEventTool", "Performing Pre-Build Event...");
  if (!reason.empty()) return RefuseEvent("pre-build event", reason);
  const std::int64_t started = TimeOfFileMadeNow(places_.folder + "started");
  if (std::optional<BuiltProject> failed = CompileAndLink()) return *failed;

  BuiltProject built = Done(Status::Succeeded);
  built.libraries = plan_.libraries;
  // What comes after the link, comes after a link; once more where the project may say something else now.
  const bool isNew = !old_ || places_.output.empty() || StampOf(places_.output) != before ||
                     old_->files[task_.file] != StampOf(task_.file);
  if (isNew) {
    if (std::optional<BuiltProject> failed = MakeImportLibrary(tools)) return *failed;
    reason = RunEvent("VCCustomBuildTool", "Performing Custom Build Step...");
    if (!reason.empty()) return RefuseEvent("custom build step", reason);
    reason = RunEvent("VCPostBuildEventTool", "Performing Post-Build Event...");
    if (reason == kNo32Bits) {
      // The program is built, and what the event would have done with it is not known to be needed. It is
      // tried again the next time.
      console_.Warning(task_.name, 0, "PRJ0019", "the post-build event did not run: " + reason);
      return built;
    }
    if (!reason.empty()) return RefuseEvent("post-build event", reason);
  }
  Save(std::move(record), started);
  return built;
}

// Headers are known only now. One that was changed meanwhile may not be in the program: then nothing is
// recorded, and the next build looks again.
void Builder::Save(BuildRecord record, std::int64_t started) {
  record.key = Key();
  record.environment = environment_;
  for (const std::string& depfile : plan_.depfiles) {
    std::string text;
    if (!TryReadFile(places_.folder + depfile, text)) return;
    for (const std::string& each : DependenciesIn(text)) {
      const bool isMade = std::find(plan_.made.begin(), plan_.made.end(), each) != plan_.made.end();
      if (each[0] != '/' || isMade || record.files.contains(each)) continue;
      record.Add(each);
      if (record.files[each].time > started) return;
    }
  }
  for (const std::string& made : plan_.made) record.Add(made);
  if (!places_.output.empty()) record.Add(places_.output);
  if (!places_.importLibrary.empty()) record.Add(places_.importLibrary);
  record.output = places_.output;
  record.importLibrary = places_.importLibrary;
  record.libraries = plan_.libraries;
  record.Save(places_.folder + kRecord);
}

void Builder::Clean() {
  std::error_code ignored;
  // A folder that an engine has not made is not the engine's to remove.
  if (FileExists(places_.folder + "build.ninja")) fs::remove_all(places_.folder, ignored);
  for (const std::string& file : places_.Files()) fs::remove(file, ignored);
}

BuiltProject Builder::RunMakefile() {
  const char* commands = "BuildCommandLine";
  if (task_.goal == Goal::Rebuild) commands = "ReBuildCommandLine";
  if (task_.goal == Goal::Clean) commands = "CleanCommandLine";
  const std::string text =
      settings_->Said("VCNMakeTool", commands, nullptr, VcPaths::ForCommands).value_or("");
  const std::string reason = RunCommands(text, "Performing Makefile project actions");
  if (!reason.empty()) return RefuseEvent("makefile command", reason);
  return Done(Status::Succeeded);
}

}  // namespace

BuiltProject BuildVisualCpp(const ProjectTask& task, Console& console) {
  try {
    return Builder(task, console).Run();
  } catch (const Exception& error) {
    console.Error(task.name, 0, "PRJ0002", error.Message());
    return Failed(error.Message());
  }
}

}  // namespace qx
