#include "actions/Qxvsdotnetaction.h"

#include "plugin/Qxservices.h"

namespace qx {
namespace {

// "UpdateVersionComment" names no property and stays: the list is what installed hosts have always been given
// (docs/deliberate.md).
constexpr std::string_view kHiddenProperties[] = {"UpdateVersionComment",
                                                  "UpdateAssemblyTitle",
                                                  "UpdateAssemblyComment",
                                                  "UpdateAssemblyCompany",
                                                  "UpdateAssemblyDescription",
                                                  "UpdateAssemblyCopyright",
                                                  "UpdateAssemblyTradeMark",
                                                  "UpdateAssemblyProductName",
                                                  "UpdateAssemblyVersion",
                                                  "UpdateAssemblyFileVersion",
                                                  "AssemblyTitle",
                                                  "AssemblyComment",
                                                  "AssemblyCompany",
                                                  "AssemblyDescription",
                                                  "AssemblyCopyright",
                                                  "AssemblyTradeMark",
                                                  "AssemblyProductName",
                                                  "AssemblyVersion",
                                                  "AssemblyFileVersion",
                                                  "UpdateWin32Resource",
                                                  "UpdateAssemblyInfo",
                                                  "BuildType",
                                                  "BuildAction",
                                                  "SelectedProjects",
                                                  "ApplyAssemblyInfoTo",
                                                  "ApplyResourceInfoTo",
                                                  "AssemblySelectedProjects",
                                                  "ResourceSelectedProjects",
                                                  "UseEnv",
                                                  "AutoIncAssemblyBuildNumber",
                                                  "AutoIncAssemblyFileBuildNumber",
                                                  "AutoIncAssemblyRevisionNo",
                                                  "AutoIncAssemblyFileRevisionNo",
                                                  "LinkAssemblyFileVersionInfo",
                                                  "AssemblyVersionMajor",
                                                  "AssemblyVersionMinor",
                                                  "AssemblyVersionBuild",
                                                  "AssemblyVersionRevision",
                                                  "AssemblyFileVersionMajor",
                                                  "AssemblyFileVersionMinor",
                                                  "AssemblyFileVersionBuild",
                                                  "AssemblyFileVersionRevision",
                                                  "AutoIncBuild",
                                                  "MajorVersion",
                                                  "MinorVersion",
                                                  "ReleaseVersion",
                                                  "BuildVersion",
                                                  "IsDebug",
                                                  "IsPreRelease",
                                                  "IsSpecial",
                                                  "IsPrivate",
                                                  "IsDLL",
                                                  "Locale",
                                                  "CodePage",
                                                  "VersionInfoKeys",
                                                  "IncludeCompileDate",
                                                  "_WebDAVPassword"};

constexpr std::int32_t kWindowsLatin1 = 1252;

}  // namespace

// The text stays whole until one of its parts is set: saved projects hold dotted versions and ones of five
// parts (docs/deliberate.md).
void AssemblyVersionState::Split(const std::string& value) {
  whole = value;
  parts = SplitVersion(value);
}

std::string TQXCustomVSDotNetAction::ActionName() { return "Build VS.Net Solution"; }

// The defaults stand with the fields, but for the one that the user chose in the options.
void TQXCustomVSDotNetAction::Create() {
  TQXAction::Create();
  if (const InterfacePtr<IQXVSDotNetOptions> options = VSDotNetOptions())
    settings_.vstudioVersion = options->GetDefaultVSVersion();
}

void TQXCustomVSDotNetAction::GetHiddenProperties(TStringList& names) const {
  TQXAction::GetHiddenProperties(names);
  for (const std::string_view name : kHiddenProperties) names.Add(std::string(name));
}

void TQXCustomVSDotNetAction::GetPropertyHelp(TStringList& lines) const { TQXAction::GetPropertyHelp(lines); }

void TQXCustomVSDotNetAction::GetPropertyAlias(TStringList& lines) const {
  TQXAction::GetPropertyAlias(lines);
  lines.Add("[Solution]");
  lines.Add("Solution=Solution");
  lines.Add("SolutionConfiguration=SolutionConfiguration");
  lines.Add("VStudioVersion=Visual Studio Version");
}

void TQXCustomVSDotNetAction::SetSolution(const std::string& value) {
  if (solution_ != value) solution_ = value;
}

std::string TQXCustomVSDotNetAction::GetWebDAVPassword() {
  return DecryptString(settings_.webDavPasswordEncrypted, "");
}

std::string TQXCustomVSDotNetAction::NeedWebDAVPassword(const std::string& encrypted) {
  try {
    return DecryptString(encrypted, "");
  } catch (const Exception& fault) {
    throw Exception("WebDAVPassword: " + fault.Message() + "; set WebDAVPassword again on this computer");
  }
}

void TQXCustomVSDotNetAction::SetWebDAVPassword(const std::string& value) {
  settings_.webDavPasswordEncrypted = EncryptString(value, "");
}

void TQXCustomVSDotNetAction::SetAssemblyVersionMajor(const std::string& value) {
  assemblyVersion_.parts.major = value;
  ResetAssemblyVersion();
}

void TQXCustomVSDotNetAction::SetAssemblyVersionMinor(const std::string& value) {
  assemblyVersion_.parts.minor = value;
  ResetAssemblyVersion();
}

void TQXCustomVSDotNetAction::SetAssemblyVersionBuild(const std::string& value) {
  assemblyVersion_.parts.build = value;
  ResetAssemblyVersion();
}

void TQXCustomVSDotNetAction::SetAssemblyVersionRevision(const std::string& value) {
  assemblyVersion_.parts.revision = value;
  ResetAssemblyVersion();
}

// The assembly version, not the file version, and in this getter alone: reading has normalised saved projects
// so, and they depend on it (docs/deliberate.md).
std::string TQXCustomVSDotNetAction::GetAssemblyFileVersionBuild() {
  ResetAssemblyVersion();
  return assemblyFileVersion_.parts.build;
}

void TQXCustomVSDotNetAction::SetAssemblyFileVersionMajor(const std::string& value) {
  assemblyFileVersion_.parts.major = value;
  ResetAssemblyFileVersion();
}

void TQXCustomVSDotNetAction::SetAssemblyFileVersionMinor(const std::string& value) {
  assemblyFileVersion_.parts.minor = value;
  ResetAssemblyFileVersion();
}

void TQXCustomVSDotNetAction::SetAssemblyFileVersionBuild(const std::string& value) {
  assemblyFileVersion_.parts.build = value;
  ResetAssemblyFileVersion();
}

void TQXCustomVSDotNetAction::SetAssemblyFileVersionRevision(const std::string& value) {
  assemblyFileVersion_.parts.revision = value;
  ResetAssemblyFileVersion();
}

void TQXCustomVSDotNetAction::SetAutoIncAssemblyRevisionNo(bool value) {
  if (autoIncAssemblyRevisionNo_ == value) return;
  autoIncAssemblyRevisionNo_ = value;
  if (value)
    RegisterDynamicProperty("AssemblyVersion");
  else if (!autoIncAssemblyBuildNo_)
    UnRegisterDynamicProperty("AssemblyVersion");
}

void TQXCustomVSDotNetAction::SetAutoIncAssemblyBuildNo(bool value) {
  if (autoIncAssemblyBuildNo_ == value) return;
  autoIncAssemblyBuildNo_ = value;
  // The name taken away is one that is never registered, so "AssemblyVersion" stays: saved projects depend on
  // it (docs/deliberate.md).
  if (value)
    RegisterDynamicProperty("AssemblyVersion");
  else if (!autoIncAssemblyRevisionNo_)
    UnRegisterDynamicProperty("AssemblyBuildNo");
}

// Registers nothing and takes nothing away, unlike its three siblings: saved projects depend on it
// (docs/deliberate.md).
void TQXCustomVSDotNetAction::SetAutoIncAssemblyFileRevisionNo(bool value) {
  autoIncAssemblyFileRevisionNo_ = value;
}

void TQXCustomVSDotNetAction::SetAutoIncAssemblyFileBuildNo(bool value) {
  if (autoIncAssemblyFileBuildNo_ == value) return;
  autoIncAssemblyFileBuildNo_ = value;
  if (value)
    RegisterDynamicProperty("AssemblyFileVersion");
  else if (!autoIncAssemblyFileRevisionNo_)
    UnRegisterDynamicProperty("AssemblyFileVersion");
}

void TQXCustomVSDotNetAction::SetAutoIncBuild(bool value) {
  if (autoIncBuild_ == value) return;
  autoIncBuild_ = value;
  if (value)
    RegisterDynamicProperty("BuildVersion");
  else
    UnRegisterDynamicProperty("BuildVersion");
}

void TQXCustomVSDotNetAction::SetMajorVer(std::int32_t value) {
  record_.numbers.major = value;
  UpdateFileVersion();
}

void TQXCustomVSDotNetAction::SetMinorVer(std::int32_t value) {
  record_.numbers.minor = value;
  UpdateFileVersion();
}

void TQXCustomVSDotNetAction::SetReleaseVer(std::int32_t value) {
  record_.numbers.release = value;
  UpdateFileVersion();
}

void TQXCustomVSDotNetAction::SetBuildVer(std::int32_t value) {
  record_.numbers.build = value;
  UpdateFileVersion();
}

void TQXCustomVSDotNetAction::SetVersionInfoKeys(const std::string& value) {
  record_.keys = value;
  UpdateFileVersion();
}

// 0, "ANSI", is stored as what it meant; one that was never set stays 0 (docs/deliberate.md).
void TQXCustomVSDotNetAction::SetCodePage(std::int32_t value) {
  record_.codePage = value == 0 ? kWindowsLatin1 : value;
}

// Sets the neighbour and leaves IsPrivate as it was made: saved projects depend on the crossing, and so on
// what it makes of them as they are loaded (docs/deliberate.md).
void TQXCustomVSDotNetAction::SetIsPrivate(bool value) { record_.isDebug = value; }

void TQXCustomVSDotNetAction::UpdateFileVersion() {
  record_.keys = WithFileVersion(record_.keys, record_.numbers);
}

bool TQXCustomVSDotNetAction::IsAttributeUpdated(AssemblyAttribute attribute) {
  return settings_.updateAttribute[static_cast<std::size_t>(attribute)];
}

std::string TQXCustomVSDotNetAction::GetAttributeText(AssemblyAttribute attribute) {
  if (attribute == AssemblyAttribute::FileVersion) return GetAssemblyFileVersion();
  if (attribute == AssemblyAttribute::Version) return GetAssemblyVersion();
  return settings_.attributeText[static_cast<std::size_t>(attribute)];
}

ProjectLocationSettings TQXCustomVSDotNetAction::GetProjectLocation() {
  return {static_cast<std::int32_t>(settings_.projLocationDetectMethod), settings_.wmiWebsiteNum,
          settings_.sharePath, settings_.webDavUsername,
          [this, encrypted = settings_.webDavPasswordEncrypted] { return NeedWebDAVPassword(encrypted); }};
}

std::string TQXCustomVSDotNetAction::ExpandText(const std::string& text) {
  constexpr bool kNested = true;
  return ExpandExpression(text, kNested);
}

InterfacePtr<IQXApplicationServices> TQXCustomVSDotNetAction::GetServices() {
  return GetActionContext()->GetApplicationServices();
}

std::string TQXCustomVSDotNetAction::DoAutoIncBuild(const std::string& value) {
  const std::size_t last = LastPartOf(value);
  // A part that is no number becomes 0, where a run makes it 1 (docs/deliberate.md).
  return value.substr(0, last) + NextNumber(ExpandText(value.substr(last)), -1);
}

const TQXPropertyEditorClass& TSolutionEditor::Class() {
  static constexpr TQXPropertyEditorClass record{
      "TSolutionEditor",
      []() -> std::unique_ptr<TQXPropertyEditor> { return std::make_unique<TSolutionEditor>(); }};
  return record;
}

}  // namespace qx
