// The action "Build VS.Net Solution": every setting it keeps (66 published properties), the version numbers
// among them, and its run. State and properties are defined in Qxvsdotnetaction.cpp, their table in
// Qxvsdotnetproperties.cpp, the run in Qxvsdotnetbuild.cpp and Qxvsdotnetstamping.cpp, and what it tells
// before and afterwards in Qxvsdotnetcheck.cpp and Qxvsdotnetreport.cpp, its beginning in Qxvsdotnetinit.cpp. The
// editor of its solution stands here too.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "actions/CompilerCommandLine.h"
#include "actions/VersionNumbers.h"
#include "options/Qxvsdotnetoptions.h"
#include "plugin/Qxaction.h"
#include "plugin/Qxcheck.h"
#include "plugin/Qxframe.h"
#include "plugin/Qxfromfile.h"
#include "plugin/Qxprocess.h"
#include "plugin/Qxrunplaces.h"
#include "plugin/Qxrunreport.h"
#include "plugin/Qxversions.h"
#include "plugin/Qxweblogin.h"
#include "versioning/Qxassemblyinfo.h"
#include "versioning/Qxvc7versioninfo.h"

namespace qx {

class IVSDotNetSolution;

// What a page of the action's dialog answers when it wants to know the solution that the solution page opens.
class IVSDotNetPropertyPage : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{7D40B5E2-9A16-4C83-B7F4-2E58C6A1D093}");
  using Base = IInterface;
  // Called each time that a solution was opened; changed: the user chose another file. User-interface thread.
  virtual void UpdateSolution(bool changed, IVSDotNetSolution& solution) = 0;

 protected:
  ~IVSDotNetPropertyPage() = default;
};

// The whole solution, or the projects that a list names. Stored by name.
enum class TVSDotNetBuildType : std::uint8_t { btAllProjects, btSelectedProjects };

template <>
inline constexpr std::array<std::string_view, 2> ValueNames<TVSDotNetBuildType>{"btAllProjects",
                                                                                "btSelectedProjects"};

// How a web project is found: IIS metabase, network share, WebDAV. Stored by name.
enum class TProjLocDetectMethod : std::uint8_t { useWMI, useShare, useWebDAV };

template <>
inline constexpr std::array<std::string_view, 3> ValueNames<TProjLocDetectMethod>{"useWMI", "useShare",
                                                                                  "useWebDAV"};

// One element for each AssemblyAttribute, by its ordinal.
template <class Value>
using PerAttribute = std::array<Value, static_cast<std::size_t>(AssemblyAttribute::Version) + 1>;

// The settings that are kept just as they are set; those with a rule of their own stand in the action.
// Projects are named by their identifiers, the GUID texts of the solution file. Texts may hold host variables.
struct VSDotNetSettings {
  std::string solutionConfiguration;  // "Debug" or "Debug|Win32"
  bool updateWin32Resource = false;
  bool updateAssemblyInfo = false;
  TVSDotNetBuildType buildType = TVSDotNetBuildType::btAllProjects;
  TVSDotNetBuildAction buildAction = TVSDotNetBuildAction::baBuild;
  TStringList selectedProjects;
  bool useEnv = false;
  TVSDotNetVersion vstudioVersion = kFirstDefaultVersion;
  TVSDotNetBuildType applyAssemblyInfoTo = TVSDotNetBuildType::btAllProjects;
  TVSDotNetBuildType applyResourceInfoTo = TVSDotNetBuildType::btAllProjects;
  TStringList assemblySelectedProjects;
  TStringList resourceSelectedProjects;
  PerAttribute<bool> updateAttribute{};
  PerAttribute<std::string> attributeText;  // the two versions are kept by the action, not here
  bool linkAssemblyFileVersionInfo = false;
  TProjLocDetectMethod projLocationDetectMethod = TProjLocDetectMethod::useWMI;
  std::int32_t wmiWebsiteNum = 1;
  std::string sharePath = "wwwroot$";
  std::string webDavUsername;
  std::string webDavPasswordEncrypted;  // the only form of the password that is kept
  bool useMSBuild = false;
};

// The version resource that the action writes into C++ projects.
struct TVSDotNetVersionRecord {
  VersionNumbers numbers;
  bool isDebug = false;
  bool isPreRelease = false;
  bool isSpecial = false;
  bool isPrivate = false;
  bool isDLL = false;
  std::int32_t locale = 0;
  std::int32_t codePage = 0;
  std::string keys;  // "Key=Value" lines
  bool includeCompileDate = false;
};

// A whole version and its parts, kept in step by the action's setters.
struct AssemblyVersionState {
  std::string whole = "|||";
  VersionParts parts;
  // Keeps the text as it is, a fifth part too, and cuts the four parts out of it.
  void Split(const std::string& value);
  // Makes the text anew from the four parts.
  void Reset() { whole = JoinVersion(parts); }
};

// All state and behaviour. The host owns the action: references to its interfaces are not counted.
// Properties are set on the thread that edits or builds; see each callback for its own.
class TQXCustomVSDotNetAction
    : public AnswersUncounted<IQXProcessCallback, IQXVC7VersionInfo, IAssemblyInfoSource, IQXRunReport,
                              IQXRunPlaces, IQXVersions, IQXCheck, IQXFromFile, IQXWebLogin>,
      public TQXAction {
 public:
  static std::string ActionName();  // "Build VS.Net Solution"

  VSDotNetSettings& Settings() { return settings_; }
  const VSDotNetSettings& Settings() const { return settings_; }

  const std::string& GetSolution() const { return solution_; }
  void SetSolution(const std::string& value);
  // A heading row of the host's property grid: always "Assembly Info"; setting does nothing.
  std::string GetAssemblyInfo() const { return "Assembly Info"; }
  void SetAssemblyInfo(const std::string&) {}

  // The clear text, through the host's encryption. Raises Exception when the kept text cannot be decrypted.
  std::string GetWebDAVPassword();
  void SetWebDAVPassword(const std::string& value);

  // Assembly versions: a whole one splits into its parts, a part rebuilds the whole.
  const std::string& GetAssemblyVersion() const { return assemblyVersion_.whole; }
  void SetAssemblyVersion(const std::string& value) { assemblyVersion_.Split(value); }
  const std::string& GetAssemblyFileVersion() const { return assemblyFileVersion_.whole; }
  void SetAssemblyFileVersion(const std::string& value) { assemblyFileVersion_.Split(value); }
  void ResetAssemblyVersion() { assemblyVersion_.Reset(); }
  void ResetAssemblyFileVersion() { assemblyFileVersion_.Reset(); }
  const std::string& GetAssemblyVersionMajor() const { return assemblyVersion_.parts.major; }
  const std::string& GetAssemblyVersionMinor() const { return assemblyVersion_.parts.minor; }
  const std::string& GetAssemblyVersionBuild() const { return assemblyVersion_.parts.build; }
  const std::string& GetAssemblyVersionRevision() const { return assemblyVersion_.parts.revision; }
  void SetAssemblyVersionMajor(const std::string& value);
  void SetAssemblyVersionMinor(const std::string& value);
  void SetAssemblyVersionBuild(const std::string& value);
  void SetAssemblyVersionRevision(const std::string& value);
  const std::string& GetAssemblyFileVersionMajor() const { return assemblyFileVersion_.parts.major; }
  const std::string& GetAssemblyFileVersionMinor() const { return assemblyFileVersion_.parts.minor; }
  std::string GetAssemblyFileVersionBuild();  // also rebuilds AssemblyVersion
  const std::string& GetAssemblyFileVersionRevision() const { return assemblyFileVersion_.parts.revision; }
  void SetAssemblyFileVersionMajor(const std::string& value);
  void SetAssemblyFileVersionMinor(const std::string& value);
  void SetAssemblyFileVersionBuild(const std::string& value);
  void SetAssemblyFileVersionRevision(const std::string& value);

  // Which numbers a run raises. The setters tell the host which properties change while the action runs.
  bool GetAutoIncAssemblyBuildNo() const { return autoIncAssemblyBuildNo_; }
  void SetAutoIncAssemblyBuildNo(bool value);
  bool GetAutoIncAssemblyFileBuildNo() const { return autoIncAssemblyFileBuildNo_; }
  void SetAutoIncAssemblyFileBuildNo(bool value);
  bool GetAutoIncAssemblyRevisionNo() const { return autoIncAssemblyRevisionNo_; }
  void SetAutoIncAssemblyRevisionNo(bool value);
  bool GetAutoIncAssemblyFileRevisionNo() const { return autoIncAssemblyFileRevisionNo_; }
  void SetAutoIncAssemblyFileRevisionNo(bool value);
  bool GetAutoIncBuild() const { return autoIncBuild_; }
  void SetAutoIncBuild(bool value);

  // IQXVC7VersionInfo over the action's own version record.
  std::int32_t GetBuildVer() override { return record_.numbers.build; }
  std::int32_t GetCodePage() override { return record_.codePage; }
  bool GetIsDebug() override { return record_.isDebug; }
  bool GetIsDLL() override { return record_.isDLL; }
  bool GetIsPreRelease() override { return record_.isPreRelease; }
  bool GetIsPrivate() override { return record_.isPrivate; }
  bool GetIsSpecial() override { return record_.isSpecial; }
  std::int32_t GetLocale() override { return record_.locale; }
  std::int32_t GetMajorVer() override { return record_.numbers.major; }
  std::int32_t GetMinorVer() override { return record_.numbers.minor; }
  std::int32_t GetReleaseVer() override { return record_.numbers.release; }
  std::string GetVersionInfoKeys() override { return record_.keys; }
  void SetBuildVer(std::int32_t value) override;
  void SetCodePage(std::int32_t value) override;  // 0 is kept as 1252
  void SetIsDebug(bool value) override { record_.isDebug = value; }
  void SetIsDLL(bool value) override { record_.isDLL = value; }
  void SetIsPreRelease(bool value) override { record_.isPreRelease = value; }
  void SetIsPrivate(bool value) override;  // sets IsDebug
  void SetIsSpecial(bool value) override { record_.isSpecial = value; }
  void SetLocale(std::int32_t value) override { record_.locale = value; }
  void SetMajorVer(std::int32_t value) override;
  void SetMinorVer(std::int32_t value) override;
  void SetReleaseVer(std::int32_t value) override;
  void SetVersionInfoKeys(const std::string& value) override;
  bool GetIncludeCompileDate() override { return record_.includeCompileDate; }
  void SetIncludeCompileDate(bool value) override { record_.includeCompileDate = value; }
  // Keeps the key "FileVersion" in step with the four numbers.
  void UpdateFileVersion();

  // IAssemblyInfoSource: what the AssemblyInfo updater asks for.
  bool IsAttributeUpdated(AssemblyAttribute attribute) override;
  std::string GetAttributeText(AssemblyAttribute attribute) override;
  bool IsFileVersionLinked() override { return settings_.linkAssemblyFileVersionInfo; }
  ProjectLocationSettings GetProjectLocation() override;
  std::string ExpandText(const std::string& text) override;
  InterfacePtr<IQXApplicationServices> GetServices() override;
  void FileStamped(const std::string& path, const std::string& backup, bool changed) override;

  // IQXRunReport.
  RunReport ReportRun(bool looksForPrograms) override;

  // IQXVersions.
  std::vector<ActionVersion> GetVersions() override;
  void SetVersions(const std::string& dotted) override;
  void BumpVersions(VersionPart part) override;
  std::string WarnOfText(const std::string& property, const std::string& text) override;

  // IQXCheck.
  CheckReport CheckRun() override;

  // IQXFromFile.
  bool TakesFile(const std::string& file) override;
  FromFileAnswer SetUpFromFile(const FromFileRequest& request) override;

  // Where the compiler should be, or why that is not known: the line that a run fails with.
  struct CompilerPlace {
    std::string path, complaint;
  };
  CompilerPlace FindCompiler() const;
  bool UsesMSBuild() const;
  // The assembly versions that a run stamps: those that stand, raised as the increments say.
  struct AssemblyVersions {
    AssemblyVersionState assembly, file;
  };
  AssemblyVersions VersionsOfNextRun() const;

  // IQXRunPlaces: the solution's folder; its projects' files and what is stamped of them.
  std::vector<std::string> GetWorkFolders() override;
  std::vector<std::string> GetInputFiles() override;

  // IQXWebLogin: of the servers that its solution names, where it is to come to them by WebDAV.
  std::optional<WebLogin> GetWebLogin(const std::string& url) override;

  // The whole version with its last part expanded and raised by one; a part that is no number becomes 0.
  // Raises Exception when it cannot be expanded. A utility: runs do not use it.
  std::string DoAutoIncBuild(const std::string& value);
  // Writes the version resource of the chosen C++ projects; false when one was not written. Raises Exception.
  bool DoUpdateWin32VersionInfo(IVSDotNetSolution& solution);
  // Writes it into one resource script; within the update of all of them it is written with the others.
  virtual bool ApplyVersionInfo(const std::string& fileName);

  // Compiler runs; each is true when every program it started succeeded. The solution file is the path as it
  // goes onto the command line, the configuration is expanded.
  bool BuildAll(IVSDotNetSolution& solution, const std::string& solutionFile, const std::string& compiler,
                const std::string& configuration);
  bool BuildSelected(IVSDotNetSolution& solution, const std::string& solutionFile,
                     const std::string& compiler, const std::string& configuration);
  bool RunCompiler(const std::string& compiler, const std::string& startingDirectory,
                   const std::string& parameters);

  // IQXProcessCallback. The two data calls may come on any thread while Execute blocks; they touch nothing
  // but the build-failed flag and the log.
  bool RequiresSync() override { return false; }
  void OnStdOutData(IQXProcess& process, std::string_view text) override;
  void OnStdErrData(IQXProcess& process, std::string_view text) override;

  // TQXAction.
  void Create() override;
  bool Execute() override;
  bool Validate(IQXActionValidationError& errors) override;
  void GetHiddenProperties(TStringList& names) const override;
  void GetPropertyHelp(TStringList& lines) const override;
  void GetPropertyAlias(TStringList& lines) const override;
  void TerminateAction() override { stopEvent_.SetEvent(); }  // any thread
  bool CanTerminate() const override { return true; }
  std::string GetQuickHelpFilename() const override { return "Plugins\\VSDotNet.html"; }
  int GetHelpTopicID() const override { return 1300; }
  std::string GetActionName(const TQXActionClass&) const override { return ActionName(); }

 protected:
  // Getters and setters of the plain settings, for the property table.
  template <auto Field>
  const auto& GetSetting() const {
    return settings_.*Field;
  }
  template <auto Field>
  void SetSetting(const std::remove_cvref_t<decltype(std::declval<VSDotNetSettings&>().*Field)>& value) {
    settings_.*Field = value;
  }
  template <AssemblyAttribute Attribute>
  bool GetUpdates() const {
    return settings_.updateAttribute[static_cast<std::size_t>(Attribute)];
  }
  template <AssemblyAttribute Attribute>
  void SetUpdates(bool value) {
    settings_.updateAttribute[static_cast<std::size_t>(Attribute)] = value;
  }
  template <AssemblyAttribute Attribute>
  const std::string& GetText() const {
    return settings_.attributeText[static_cast<std::size_t>(Attribute)];
  }
  template <AssemblyAttribute Attribute>
  void SetText(const std::string& value) {
    settings_.attributeText[static_cast<std::size_t>(Attribute)] = value;
  }

 private:
  // The password where it is needed; a message says which property cannot be read, and what to do.
  std::string NeedWebDAVPassword(const std::string& encrypted);
  bool Fail(const std::string& message);  // logs it; always false
  bool Expand(const char* complaint, const std::string& text, std::string& expanded);
  std::string DevEnvFolder() const;  // trimmed; empty when not configured
  bool RunStampingPhase(const InterfacePtr<IVSDotNetSolution>& solution);
  bool Stamp(const InterfacePtr<IVSDotNetSolution>& solution);
  bool UpdateAssemblyAttributes(const InterfacePtr<IVSDotNetSolution>& solution);
  std::string SolutionOnDisk();
  // A resource script while it is updated: its name, and when it was written before.
  struct ScriptUpdate {
    std::string file;
    std::optional<std::int64_t> timeBefore;
  };
  bool UpdateScripts(IVSDotNetSolution& solution);
  void LogScript(const ScriptUpdate& update);
  void NoteScript(const ScriptUpdate& update);
  CompilerSettings CommandLineSettings() const;
  void LogRun(const std::string& compiler, const std::string& parameters);
  void LogOutput(std::string_view text);
  std::string DottedForReport(const std::string& version);
  std::vector<RunVersion> VersionsForReport();  // those that are stamped, as they are now: in `to`
  void NoteVersionsAfterStamping();

  std::string solution_;
  VSDotNetSettings settings_;
  AssemblyVersionState assemblyVersion_;
  AssemblyVersionState assemblyFileVersion_;
  bool autoIncAssemblyBuildNo_ = false;
  bool autoIncAssemblyFileBuildNo_ = false;
  bool autoIncAssemblyRevisionNo_ = false;
  bool autoIncAssemblyFileRevisionNo_ = false;
  bool autoIncBuild_ = false;
  TVSDotNetVersionRecord record_;
  TEvent stopEvent_;  // auto-reset; signalled by TerminateAction, consumed by the process
  // What the report of the last Execute needs and would not find afterwards.
  struct RunNotes {
    std::vector<RunVersion> versions;
    std::vector<RunFile> files;
    std::string solutionFile, configuration;  // empty until the compiler was started
  };
  RunNotes run_;
  std::vector<ScriptUpdate>* scriptUpdates_ = nullptr;  // while all scripts are updated together
  std::atomic<bool> buildFailed_{false};                // set by the output, cleared once an Execute
};

// Publishes the properties of the class above; adds nothing else.
class TQXVSDotNetAction final : public TQXCustomVSDotNetAction {
 public:
  static const TQXActionClass& Class();

 private:
  struct Rows;
};

// Opens the action's property pages at the solution page.
class TSolutionEditor final : public TShowActionPropertiesEditor {
 public:
  static const TQXPropertyEditorClass& Class();
  std::string GetPageName() const override { return "Solution"; }
};

}  // namespace qx
