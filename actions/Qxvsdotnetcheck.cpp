// What can be known of a run of "Build VS.Net Solution" before it: texts that cannot be expanded, versions that
// are none, the engine, the solution with its configurations and projects, and (StampCheck) the files to stamp.
#include <algorithm>
#include <unordered_set>

#include "actions/Qxvsdotnetaction.h"
#include "actions/SolutionVersion.h"
#include "actions/StampCheck.h"
#include "platform/Nearest.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"
#include "projects/ProjectKind.h"
#include "projects/SolutionMap.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

using enum CheckSeverity;

// A damaged build project may hold a version that has no name.
std::string NameOf(std::size_t version) {
  constexpr auto names = ValueNames<TVSDotNetVersion>;
  return version < names.size() ? std::string(names[version]) : std::to_string(version);
}

class RunCheck {
 public:
  explicit RunCheck(TQXCustomVSDotNetAction& action) : action_(action), settings_(action.Settings()) {}

  CheckReport Run() {
    CheckTexts();
    if (settings_.updateAssemblyInfo) CheckAssemblyVersions();
    if (settings_.updateWin32Resource) CheckFileVersion();
    CheckEngine();
    CheckSolution();
    CheckSecret();
    return std::move(report_);
  }

 private:
  void Tell(CheckSeverity severity, const char* subject, std::string message, std::string hint = {},
            std::string file = {}) {
    report_.findings.push_back({severity, subject, std::move(message), std::move(file), std::move(hint)});
  }

  bool Stamps(AssemblyAttribute attribute) const {
    return settings_.updateAssemblyInfo && settings_.updateAttribute[static_cast<std::size_t>(attribute)];
  }

  std::optional<std::string> Expanded(const std::string& text) {
    try {
      return action_.ExpandText(text);
    } catch (const std::exception&) {
      return std::nullopt;
    }
  }

  // A text that cannot be expanded, where it is used, ends the run before the compiler.
  void CheckText(const char* property, const std::string& text, bool isUsed) {
    try {
      action_.ExpandText(text);
    } catch (const std::exception& error) {
      Tell(isUsed ? Error : Warning, property, error.what(),
           isUsed ? "define it in the build project or for the run" : "");
    }
  }

  void CheckTexts() {
    using enum AssemblyAttribute;
    CheckText("Solution", action_.GetSolution(), true);
    CheckText("SolutionConFiguration", settings_.solutionConfiguration, true);
    constexpr std::pair<AssemblyAttribute, const char*> kTexts[] = {{Title, "AssemblyTitle"},
                                                                    {Company, "AssemblyCompany"},
                                                                    {Description, "AssemblyDescription"},
                                                                    {Copyright, "AssemblyCopyright"},
                                                                    {Trademark, "AssemblyTradeMark"},
                                                                    {Product, "AssemblyProductName"}};
    for (const auto& [attribute, property] : kTexts)
      CheckText(property, action_.GetAttributeText(attribute), Stamps(attribute));
    const bool isLinked = settings_.linkAssemblyFileVersionInfo;
    CheckText("AssemblyFileVersion", action_.GetAssemblyFileVersion(), Stamps(FileVersion) && !isLinked);
    CheckText("AssemblyVersion", action_.GetAssemblyVersion(),
              Stamps(Version) || (Stamps(FileVersion) && isLinked));
    CheckText("VersionInfoKeys", action_.GetVersionInfoKeys(), settings_.updateWin32Resource);
  }

  void CheckAssemblyVersion(const char* property, const AssemblyVersionState& version, std::int32_t largest,
                            bool takesStar) {
    if (IsDottedWithoutBars(version.whole)) {
      std::string meant = version.whole;
      std::replace(meant.begin(), meant.end(), '.', '|');
      return Tell(Error, property, "The major part " + Quoted(version.whole) + " is no number",
                  "parts are joined by bars: " + meant);
    }
    const std::optional<std::string> expanded = Expanded(version.whole);
    if (!expanded) return;  // told of by CheckTexts
    std::string dotted = *expanded;
    std::replace(dotted.begin(), dotted.end(), '|', '.');
    const std::string fault = WhyNoVersion(dotted, largest, takesStar);
    if (!fault.empty())
      Tell(Error, property, Quoted(dotted) + " would be stamped: " + fault,
           "set the version anew, like 1|2|0|0");
  }

  void CheckIncrement(const char* property, bool isOn, const std::string& part) {
    const bool isNumber = part.find_first_not_of("0123456789") == std::string::npos;
    if (isOn && !isNumber)
      Tell(Warning, property, "The part " + Quoted(part) + " is no number: raising makes 1 of it",
           "switch the increment off, or give the part a number");
  }

  void CheckAssemblyVersions() {
    using enum AssemblyAttribute;
    const std::vector<bool> all(settings_.updateAttribute.begin(), settings_.updateAttribute.end());
    if (std::none_of(all.begin(), all.end(), [](bool isOn) { return isOn; }))
      Tell(Warning, "UpdateAssemblyInfo", "No attribute is chosen to be stamped",
           "choose some, or switch it off");
    CheckIncrement("AutoIncAssemblyBuildNumber", action_.GetAutoIncAssemblyBuildNo(),
                   action_.GetAssemblyVersionBuild());
    CheckIncrement("AutoIncAssemblyRevisionNo", action_.GetAutoIncAssemblyRevisionNo(),
                   action_.GetAssemblyVersionRevision());
    const auto next = action_.VersionsOfNextRun();
    const bool isLinked = settings_.linkAssemblyFileVersionInfo;
    if (Stamps(Version) || (Stamps(FileVersion) && isLinked))
      CheckAssemblyVersion("AssemblyVersion", next.assembly, kLargestAssemblyPart, true);
    if (Stamps(FileVersion) && !isLinked)
      CheckAssemblyVersion("AssemblyFileVersion", next.file, kLargestFilePart, false);
  }

  void CheckFileVersion() {
    const std::int64_t raised = action_.GetAutoIncBuild() ? 1 : 0;
    const std::pair<const char*, std::int64_t> parts[] = {{"MajorVersion", action_.GetMajorVer()},
                                                          {"MinorVersion", action_.GetMinorVer()},
                                                          {"ReleaseVersion", action_.GetReleaseVer()},
                                                          {"BuildVersion", action_.GetBuildVer() + raised}};
    for (const auto& [property, number] : parts) {
      if (number >= 0 && number <= kLargestFilePart) continue;
      Tell(Error, property,
           std::to_string(number) + " would be stamped, which is no number from 0 to " +
               std::to_string(kLargestFilePart),
           "set the version anew");
    }
  }

  // Only then somebody asks for the password.
  bool StampsByWebDav() const {
    return settings_.updateAssemblyInfo &&
           settings_.projLocationDetectMethod == TProjLocDetectMethod::useWebDAV &&
           std::any_of(map_.projects.begin(), map_.projects.end(), [](const MappedProject& project) {
             return LowerCase(project.path).find("http://") != std::string::npos;
           });
  }

  void CheckSecret() {
    try {
      action_.GetWebDAVPassword();
    } catch (const std::exception& error) {
      Tell(StampsByWebDav() ? Error : Warning, "WebDAVPassword", error.what(),
           "set the password anew as this user, on this computer");
    }
  }

  void CheckEngine() {
    const char* subject = action_.UsesMSBuild() ? "UseMSBuild" : "VStudioVersion";
    const auto engine = action_.FindCompiler();
    if (!engine.complaint.empty()) {
      // Without a folder for devenv.com the action is not valid, and says so itself.
      if (action_.UsesMSBuild()) Tell(Error, subject, engine.complaint, "set the folder in the options");
    } else if (FileExists(engine.path)) {
      Tell(Info, subject, "The engine is " + engine.path, "", engine.path);
    } else {
      Tell(Error, subject, "The engine is not there: " + engine.path,
           "name its folder in the options, or empty it there to have it looked for", engine.path);
    }
  }

  void CheckSolution() {
    const std::string path = Expanded(action_.GetSolution()).value_or("");
    if (path.empty()) return;  // Validate's matter, or CheckTexts'
    const std::string file = ExpandPath("", path);
    if (!FileExists(file)) return Tell(Error, "Solution", "There is no such file: " + file, "", file);
    InterfacePtr<IVSDotNetSolution> solution;
    try {
      solution = OpenSolution(file);
      const std::string bytes = ReadFile(file);
      std::string decoded;
      const std::string_view text = DecodeText(bytes, decoded);
      map_ = ReadSolutionMap(text);
      CheckFormat(file, FormatNumberOf(text));
    } catch (const std::exception& error) {
      return Tell(Error, "Solution", error.what(), "", file);
    }
    CheckConfiguration(file);
    CheckSelection(*solution);
    const auto projects = solution->GetProjects();
    for (int i = 0; i < projects->GetCount(); ++i) there_.insert(projects->GetItem(i)->GetPath());
    const std::string folder = FolderPart(file);
    for (const MappedProject& project : map_.projects) AddProject(project, folder);
    if (settings_.updateAssemblyInfo) CheckAssemblyInfos(action_, *solution, report_);
    if (settings_.updateWin32Resource) CheckResourceScripts(action_, *solution, report_);
  }

  void CheckFormat(const std::string& file, const std::string& number) {
    Tell(Info, "Solution", file + " is of format " + number, "", file);
    const auto set = static_cast<std::size_t>(settings_.vstudioVersion);
    const std::optional<TVSDotNetVersion> meant = VersionOfFormat(map_.format);
    if (!meant) {
      return Tell(Warning, "VStudioVersion",
                  "The solution is of format " + number + ", which is none of 7.00, 8.00 and 9.00",
                  "save it in the format of Visual Studio 2002, 2003 or 2005", file);
    }
    const auto version = static_cast<std::size_t>(*meant);
    if (version == set) return;
    Tell(Warning, "VStudioVersion",
         "The solution is of format " + number + ", which is that of " + NameOf(version) + ", but " +
             NameOf(set) + " is to build it",
         "set VStudioVersion=" + NameOf(version), file);
  }

  void CheckConfiguration(const std::string& file) {
    const char* subject = "SolutionConFiguration";
    const std::optional<std::string> asked = Expanded(settings_.solutionConfiguration);
    if (!asked) return;
    configuration_ = FindConfiguration(map_, *asked);
    hasConfiguration_ = !configuration_.empty() || Trim(*asked).empty();
    if (!hasConfiguration_) {
      const std::string nearest = NearestName(*asked, map_.configurations);
      return Tell(
          Error, subject,
          "The solution has no configuration " + Quoted(*asked) +
              (nearest.empty() ? "" : " (nearest: " + nearest + ")"),
          map_.configurations.empty() ? "it has none at all" : "it has " + Join(map_.configurations, ", "),
          file);
    }
    if (map_.configurations.empty()) {
      Tell(Warning, subject, "The solution has no configurations", "", file);
    } else if (Trim(*asked).empty()) {
      Tell(Warning, subject, "None is set: the compiler takes " + configuration_,
           "it has " + Join(map_.configurations, ", "), file);
    }
  }

  bool IsSelection() const { return settings_.buildType == TVSDotNetBuildType::btSelectedProjects; }

  // What goes wrong with the first project fails the run; a later one that is gone ends it as it stands.
  void CheckSelection(IVSDotNetSolution& solution) {
    if (!IsSelection()) return;
    const auto& ids = settings_.selectedProjects.Items();
    if (ids.empty())
      return Tell(Error, "SelectedProjects", "No project is selected", "select some, or build all");
    const auto projects = solution.GetProjects();
    for (const std::string& id : ids) {
      if (projects->FindByGUID(id)) continue;
      Tell(&id == &ids.front() ? Error : Warning, "SelectedProjects",
           "The project " + id + " is no longer in the solution: it and those behind it are not built",
           "select the projects anew");
    }
  }

  void AddProject(const MappedProject& project, const std::string& folder) {
    const ProjectKind kind = KindOfProject(project.path, project.typeGuid);
    const std::string reason = WhyNotBuilt(project, kind, folder);
    report_.projects.push_back(
        {project.name, project.path, std::string(NameOfKind(kind)), reason.empty(), reason});
  }

  std::string WhyNotBuilt(const MappedProject& project, ProjectKind kind, const std::string& folder) {
    if (kind == ProjectKind::Folder) return "it is a solution folder";
    const std::string file = ExpandPath(folder, project.path);
    // A web project may be a folder, or be known by its address alone.
    if (kind != ProjectKind::Web && !there_.contains(project.path) && !FileExists(file)) {
      report_.findings.push_back({Warning, FilePart(file), "The project's file is not there", file,
                                  "fetch it, or take the project out of the solution"});
      return "its file is not there: " + file;
    }
    if (settings_.buildAction == TVSDotNetBuildAction::baClean) return "the run cleans and builds nothing";
    if (IsSelection() && settings_.selectedProjects.IndexOf(project.guid) < 0)
      return "it is not among the selected projects";
    if (IsSelection() && action_.UsesMSBuild()) return {};  // which is given the project, not the solution
    if (!hasConfiguration_) return "the solution has no such configuration";
    if (!map_.configurations.empty() && !ConfigurationOf(project, configuration_).isBuilt)
      return "the configuration " + configuration_ + " leaves it out";
    return {};
  }

  TQXCustomVSDotNetAction& action_;
  const VSDotNetSettings& settings_;
  CheckReport report_;
  SolutionMap map_;
  std::unordered_set<std::string> there_;  // paths of projects whose files were found
  std::string configuration_;              // the solution's name of it; empty: it has none
  bool hasConfiguration_ = false;
};

}  // namespace

CheckReport TQXCustomVSDotNetAction::CheckRun() { return RunCheck(*this).Run(); }

}  // namespace qx
