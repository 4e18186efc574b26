// Projects of 2002 and 2003: resources, compiler, satellite assemblies, and everything beside the output.
#include <algorithm>
#include <filesystem>

#include "engine/ChildCommand.h"
#include "engine/CommandSteps.h"
#include "engine/dotnet/CompilePlan.h"
#include "engine/dotnet/CompilerArguments.h"
#include "engine/dotnet/CopyLocal.h"
#include "engine/dotnet/Freshness.h"
#include "engine/dotnet/NetBuild.h"
#include "engine/dotnet/NetEvents.h"
#include "engine/dotnet/ResourceSteps.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNoCompiler =
    "C# cannot be compiled here: mono's compiler (mcs) is not on the PATH (Debian's package mono-devel)";

class MonoBuild {
 public:
  MonoBuild(const NetProject& project, const ProjectTask& task, Console& console)
      : project_(project), task_(task), console_(console) {}

  BuiltProject Run() {
    const bool isBasic = project_.language == NetLanguage::VisualBasic;
    compiler_ = FindProgram(isBasic ? "vbnc" : "mcs");
    if (compiler_.empty()) return isBasic ? Failed(kNoBasicCompiler, "vb") : Failed(kNoCompiler);
    if (!project_.hasConfiguration) return Failed(NoConfiguration());
    folders_ = SystemAssemblyFolders(compiler_);
    MakePlan();
    if (plan_.output.empty()) return Failed(FirstError());
    if (task_.goal == Goal::Clean) return Clean();
    if (task_.goal == Goal::Rebuild) RemoveFile(plan_.intermediateFile);
    if (IsUpToDate()) return UpToDate();
    std::string reason = Build();
    const WhenToRun when = WhenPostBuildEventRuns(project_);
    const bool runsEvent =
        when == WhenToRun::Always ||
        (reason.empty() && (when == WhenToRun::OnBuildSuccess || changed_ || IsEventOwed()));
    if (runsEvent) {
      const std::string event = RunEvent("PostBuildEvent");
      if (reason.empty()) reason = event;
    }
    return reason.empty() ? Succeeded(BuiltProject::Status::Succeeded) : Failed(reason);
  }

 private:
  std::string NoConfiguration() const {
    std::string names;
    for (const std::string& name : project_.configurations) names += (names.empty() ? "" : ", ") + name;
    return "it has no configuration \"" + task_.configuration + "\", only: " + names;
  }

  void MakePlan() {
    plan_ = MakeCompilePlan(project_, task_, folders_);
    if (plan_.output.empty()) return;
    responseFile_ = plan_.intermediateFile + ".rsp";
    scratch_ = plan_.intermediate + "new/";
    const std::string output = scratch_ + plan_.fileName;
    response_ = ResponseFileText(project_.language == NetLanguage::VisualBasic
                                     ? VbncArguments(project_, plan_, output)
                                     : McsArguments(project_, plan_, output));
    copies_ = CopiesBeside(plan_, folders_);
    AddOwnCopies();
  }

  // The program from the intermediate folder, with what belongs to it.
  void AddOwnCopies() {
    const std::string folder = plan_.OutputFolder();
    std::vector<FileCopy> own = {{plan_.intermediateFile, plan_.output}};
    for (const std::string& file : DebugFiles()) own.push_back({plan_.intermediate + file, folder + file});
    for (const std::string& culture : plan_.Cultures()) {
      const std::string name = plan_.SatelliteName(culture);
      own.push_back({plan_.intermediate + name, folder + name});
    }
    copies_.insert(copies_.begin(), own.begin(), own.end());
  }

  // Debug information has one of two forms, or there is none.
  std::vector<FileCopy> DueCopies() const {
    std::vector<FileCopy> due;
    for (const FileCopy& copy : copies_) {
      if (FileExists(copy.from) && !IsSameCopy(copy.from, copy.to)) due.push_back(copy);
    }
    return due;
  }

  std::vector<std::string> DebugFiles() const {
    const std::string stem =
        plan_.fileName.substr(0, plan_.fileName.size() - ExtensionOf(plan_.fileName).size());
    return {stem + ".pdb", plan_.fileName + ".mdb"};
  }

  std::string FirstError() const {
    for (const PlanProblem& problem : plan_.problems) {
      if (problem.isError) return problem.text;
    }
    return "its output is not known";
  }

  std::vector<std::string> CompilerInputs() const {
    std::vector<std::string> inputs = plan_.sources;
    for (const PlannedReference& reference : plan_.references) inputs.push_back(reference.file);
    for (const PlannedResource* resource : plan_.ResourcesOf("")) inputs.push_back(resource->embedded);
    if (!plan_.keyFile.empty()) inputs.push_back(plan_.keyFile);
    if (!plan_.icon.empty()) inputs.push_back(plan_.icon);
    return inputs;
  }

  std::vector<std::string> SatelliteInputs(const std::string& culture) const {
    std::vector<std::string> inputs = {plan_.intermediateFile};
    for (const PlannedResource* resource : plan_.ResourcesOf(culture)) inputs.push_back(resource->embedded);
    return inputs;
  }

  bool IsCompiled() const {
    std::string before;
    return TryReadFile(responseFile_, before) && before == response_ &&
           IsFresh(plan_.intermediateFile, CompilerInputs()) &&
           (plan_.documentationFile.empty() || FileExists(plan_.documentationFile));
  }

  bool IsUpToDate() const {
    if (!plan_.CanBeCompiled() || !IsCompiled() || IsEventOwed()) return false;
    for (const PlannedResource& resource : plan_.resources) {
      if (resource.IsCompiled() && !IsFresh(resource.embedded, InputsOfResource(resource))) return false;
    }
    for (const std::string& culture : plan_.Cultures()) {
      if (!IsFresh(plan_.intermediate + plan_.SatelliteName(culture), SatelliteInputs(culture))) return false;
    }
    return DueCopies().empty();
  }

  BuiltProject UpToDate() {
    console_.Line("The project is up-to-date.");
    if (WhenPostBuildEventRuns(project_) == WhenToRun::Always) {
      const std::string reason = RunEvent("PostBuildEvent");
      if (!reason.empty()) return Failed(reason);
    }
    return Succeeded(BuiltProject::Status::UpToDate);
  }

  BuiltProject Succeeded(BuiltProject::Status status) const {
    BuiltProject built;
    built.status = status;
    built.output = plan_.output;
    return built;
  }

  bool IsEventOwed() const { return IsPostBuildEventOwed(project_, task_, plan_.intermediate); }

  // Empty: it succeeded.
  std::string RunEvent(const char* name) {
    return RunBuildEvent(name, project_, task_, plan_.output, plan_.intermediate, console_);
  }

  std::string Build() {
    if (!TrimView(project_.preBuildEvent).empty()) {
      std::string reason = RunEvent("PreBuildEvent");
      if (!reason.empty()) return reason;
      MakePlan();  // the event may have made sources
    }
    for (const std::string& note : plan_.notes) console_.Line(note);
    for (const PlanProblem& problem : plan_.problems) {
      if (problem.isError) {
        console_.Error(problem.file, 0, problem.code, problem.text);
      } else {
        console_.Warning(problem.file, 0, problem.code, problem.text);
      }
    }
    if (!plan_.CanBeCompiled()) return FirstError();
    CreateFolders(scratch_);
    std::string reason = RunSteps();
    std::error_code ignored;
    fs::remove_all(scratch_, ignored);
    return reason;
  }

  std::string RunSteps() {
    if (!plan_.resources.empty()) console_.Line("Preparing resources...");
    if (std::string reason = CompileResources(plan_, scratch_, console_); !reason.empty()) return reason;
    console_.Line("Performing main compilation...");
    if (!IsCompiled()) {
      if (std::string reason = Compile(); !reason.empty()) return reason;
    }
    if (std::string reason = MakeSatellites(); !reason.empty()) return reason;
    for (const FileCopy& copy : DueCopies()) {
      CopyWithTime(copy.from, copy.to);
      changed_ = true;
    }
    console_.Line(task_.name + " -> " + plan_.output);
    return {};
  }

  // Through a folder of its own: what was half written when the build was stopped is never taken for done.
  std::string Compile() {
    RemoveFile(plan_.intermediateFile);
    for (const std::string& file : DebugFiles()) RemoveFile(plan_.intermediate + file);
    if (!plan_.documentationFile.empty()) CreateFolders(FolderPart(plan_.documentationFile));
    ReplaceFile(responseFile_, response_);
    const Console::Counts before = console_.Counted();
    ChildCommand command{{compiler_}, plan_.folder, {}};
    if (project_.language != NetLanguage::VisualBasic) command.arguments.emplace_back("-noconfig");
    command.arguments.push_back("@" + responseFile_);
    const ChildResult result = RunChild(command, [this](std::string_view line) { PrintCompilerLine(line); });
    if (!result.reason.empty()) return result.reason;
    const Console::Counts after = console_.Counted();
    console_.Line("Build complete -- " + std::to_string(after.errors - before.errors) + " errors, " +
                  std::to_string(after.warnings - before.warnings) + " warnings");
    if (result.code != 0) return FilePart(compiler_) + " returned code " + std::to_string(result.code);
    if (!FileExists(scratch_ + plan_.fileName)) return FilePart(compiler_) + " wrote no " + plan_.fileName;
    for (const std::string& file : DebugFiles()) {
      if (FileExists(scratch_ + file)) MoveIntoPlace(scratch_ + file, plan_.intermediate + file);
    }
    MoveIntoPlace(scratch_ + plan_.fileName, plan_.intermediateFile);
    return {};
  }

  // What is about no file gets the project's name in front, as the old product had it; the count comes from here.
  void PrintCompilerLine(std::string_view line) {
    if (line.starts_with("Compilation failed:") || line.starts_with("Compilation succeeded")) return;
    const bool isBare = line.starts_with("error ") || line.starts_with("warning ");
    console_.Line(isBare ? task_.name + " : " + std::string(line) : std::string(line));
  }

  std::string MakeSatellites() {
    const std::vector<std::string> cultures = plan_.Cultures();
    if (!cultures.empty()) console_.Line("Building satellite assemblies...");
    for (const std::string& culture : cultures) {
      const std::string name = plan_.SatelliteName(culture);
      if (IsFresh(plan_.intermediate + name, SatelliteInputs(culture))) continue;
      CreateFolders(FolderPart(scratch_ + name));
      ChildCommand command{{"al"}, plan_.folder, {}};
      for (std::string& argument : AlArguments(plan_, culture, plan_.intermediateFile, scratch_ + name)) {
        command.arguments.push_back(std::move(argument));
      }
      const ChildResult result = RunChild(command, [this](std::string_view line) { console_.Line(line); });
      if (!result.reason.empty()) return "al: " + result.reason;
      if (result.code != 0)
        return "al could not make " + name + " (code " + std::to_string(result.code) + ")";
      MoveIntoPlace(scratch_ + name, plan_.intermediate + name);
    }
    return {};
  }

  // What this build would have made, and nothing else.
  BuiltProject Clean() {
    for (const FileCopy& copy : copies_) RemoveFile(copy.to);
    for (const std::string& file : DebugFiles()) {
      RemoveFile(plan_.OutputFolder() + file);
      RemoveFile(plan_.intermediate + file);
    }
    for (const PlannedResource& resource : plan_.resources) {
      if (resource.IsCompiled()) RemoveFile(resource.embedded);
    }
    for (const std::string& culture : plan_.Cultures())
      RemoveFile(plan_.intermediate + plan_.SatelliteName(culture));
    if (!plan_.documentationFile.empty()) RemoveFile(plan_.documentationFile);
    RemoveFile(plan_.intermediateFile);
    RemoveFile(responseFile_);
    return Succeeded(BuiltProject::Status::Succeeded);
  }

  const NetProject& project_;
  const ProjectTask& task_;
  Console& console_;
  std::string compiler_;
  AssemblyFolders folders_;
  CompilePlan plan_;
  std::string responseFile_, response_, scratch_;
  std::vector<FileCopy> copies_;
  bool changed_ = false;  // whether anything of the output is new
};

}  // namespace

BuiltProject BuildWithMono(const NetProject& project, const ProjectTask& task, Console& console) {
  return MonoBuild(project, task, console).Run();
}

}  // namespace qx
