// The 66 published properties of "Build VS.Net Solution". Names, types and order are the saved format: every
// build project holds them.
#include "actions/Qxvsdotnetaction.h"

namespace qx {

struct TQXVSDotNetAction::Rows {
  using A = TQXVSDotNetAction;
  using S = VSDotNetSettings;
  using Attribute = AssemblyAttribute;

  template <auto Field>
  static constexpr PublishedProperty Plain(std::string_view name) {
    return Property<&A::template GetSetting<Field>, &A::template SetSetting<Field>>(name);
  }
  template <Attribute Which>
  static constexpr PublishedProperty Updates(std::string_view name) {
    return Property<&A::template GetUpdates<Which>, &A::template SetUpdates<Which>>(name);
  }
  template <Attribute Which>
  static constexpr PublishedProperty Text(std::string_view name) {
    return Property<&A::template GetText<Which>, &A::template SetText<Which>>(name);
  }
  // Seen and set, but part of another property that is stored.
  template <auto Getter, auto Setter>
  static constexpr PublishedProperty View(std::string_view name) {
    return Property<Getter, Setter>(name, PropertyStorage::NotStored);
  }

  static const PublishedProperty all[66];
};

// clang-format off
constexpr PublishedProperty TQXVSDotNetAction::Rows::all[66] = {
    Property<&A::GetSolution, &A::SetSolution>("Solution"),
    Plain<&S::solutionConfiguration>("SolutionConFiguration"),  // the capital F is in every saved project (docs/deliberate.md)
    Plain<&S::updateWin32Resource>("UpdateWin32Resource"),
    Plain<&S::updateAssemblyInfo>("UpdateAssemblyInfo"),
    Plain<&S::buildType>("BuildType"),
    Plain<&S::buildAction>("BuildAction"),
    Plain<&S::selectedProjects>("SelectedProjects"),
    Plain<&S::useEnv>("UseEnv"),
    Plain<&S::vstudioVersion>("VStudioVersion"),
    Plain<&S::applyAssemblyInfoTo>("ApplyAssemblyInfoTo"),
    Plain<&S::applyResourceInfoTo>("ApplyResourceInfoTo"),
    Plain<&S::assemblySelectedProjects>("AssemblySelectedProjects"),
    Plain<&S::resourceSelectedProjects>("ResourceSelectedProjects"),
    View<&A::GetAssemblyInfo, &A::SetAssemblyInfo>("AssemblyInfo"),
    Updates<Attribute::Title>("UpdateAssemblyTitle"),
    Updates<Attribute::Comment>("UpdateAssemblyComment"),
    Updates<Attribute::Company>("UpdateAssemblyCompany"),
    Updates<Attribute::Description>("UpdateAssemblyDescription"),
    Updates<Attribute::Copyright>("UpdateAssemblyCopyright"),
    Updates<Attribute::Trademark>("UpdateAssemblyTradeMark"),
    Updates<Attribute::Product>("UpdateAssemblyProductName"),
    Updates<Attribute::FileVersion>("UpdateAssemblyFileVersion"),
    Updates<Attribute::Version>("UpdateAssemblyVersion"),
    Property<&A::GetAutoIncAssemblyBuildNo, &A::SetAutoIncAssemblyBuildNo>("AutoIncAssemblyBuildNumber"),
    Property<&A::GetAutoIncAssemblyFileBuildNo, &A::SetAutoIncAssemblyFileBuildNo>("AutoIncAssemblyFileBuildNumber"),
    Property<&A::GetAutoIncAssemblyRevisionNo, &A::SetAutoIncAssemblyRevisionNo>("AutoIncAssemblyRevisionNo"),
    Property<&A::GetAutoIncAssemblyFileRevisionNo, &A::SetAutoIncAssemblyFileRevisionNo>("AutoIncAssemblyFileRevisionNo"),
    Plain<&S::linkAssemblyFileVersionInfo>("LinkAssemblyFileVersionInfo"),
    Text<Attribute::Title>("AssemblyTitle"),
    Text<Attribute::Comment>("AssemblyComment"),
    Text<Attribute::Company>("AssemblyCompany"),
    Text<Attribute::Description>("AssemblyDescription"),
    Text<Attribute::Copyright>("AssemblyCopyright"),
    Text<Attribute::Trademark>("AssemblyTradeMark"),
    Text<Attribute::Product>("AssemblyProductName"),
    Property<&A::GetAssemblyFileVersion, &A::SetAssemblyFileVersion>("AssemblyFileVersion"),
    Property<&A::GetAssemblyVersion, &A::SetAssemblyVersion>("AssemblyVersion"),
    View<&A::GetAssemblyVersionMajor, &A::SetAssemblyVersionMajor>("AssemblyVersionMajor"),
    View<&A::GetAssemblyVersionMinor, &A::SetAssemblyVersionMinor>("AssemblyVersionMinor"),
    View<&A::GetAssemblyVersionBuild, &A::SetAssemblyVersionBuild>("AssemblyVersionBuild"),
    View<&A::GetAssemblyVersionRevision, &A::SetAssemblyVersionRevision>("AssemblyVersionRevision"),
    View<&A::GetAssemblyFileVersionMajor, &A::SetAssemblyFileVersionMajor>("AssemblyFileVersionMajor"),
    View<&A::GetAssemblyFileVersionMinor, &A::SetAssemblyFileVersionMinor>("AssemblyFileVersionMinor"),
    View<&A::GetAssemblyFileVersionBuild, &A::SetAssemblyFileVersionBuild>("AssemblyFileVersionBuild"),
    View<&A::GetAssemblyFileVersionRevision, &A::SetAssemblyFileVersionRevision>("AssemblyFileVersionRevision"),
    Property<&A::GetAutoIncBuild, &A::SetAutoIncBuild>("AutoIncBuild"),
    Property<&A::GetMajorVer, &A::SetMajorVer>("MajorVersion"),
    Property<&A::GetMinorVer, &A::SetMinorVer>("MinorVersion"),
    Property<&A::GetReleaseVer, &A::SetReleaseVer>("ReleaseVersion"),
    Property<&A::GetBuildVer, &A::SetBuildVer>("BuildVersion"),
    Property<&A::GetIsDebug, &A::SetIsDebug>("IsDebug"),
    Property<&A::GetIsPreRelease, &A::SetIsPreRelease>("IsPreRelease"),
    Property<&A::GetIsSpecial, &A::SetIsSpecial>("IsSpecial"),
    Property<&A::GetIsPrivate, &A::SetIsPrivate>("IsPrivate"),
    Property<&A::GetIsDLL, &A::SetIsDLL>("IsDLL"),
    Property<&A::GetLocale, &A::SetLocale>("Locale"),
    Property<&A::GetCodePage, &A::SetCodePage>("CodePage"),
    Property<&A::GetVersionInfoKeys, &A::SetVersionInfoKeys>("VersionInfoKeys"),
    Property<&A::GetIncludeCompileDate, &A::SetIncludeCompileDate>("IncludeCompileDate"),
    Plain<&S::projLocationDetectMethod>("ProjLocationDetectMethod"),
    Plain<&S::wmiWebsiteNum>("WMIWebsiteNum"),
    Plain<&S::sharePath>("SharePath"),
    Plain<&S::webDavUsername>("WebDAVUsername"),
    Property<&A::GetWebDAVPassword, &A::SetWebDAVPassword>("WebDAVPassword", PropertyStorage::Secret),
    Plain<&S::webDavPasswordEncrypted>("_WebDAVPassword"),
    Plain<&S::useMSBuild>("UseMSBuild"),
};
// clang-format on

const TQXActionClass& TQXVSDotNetAction::Class() {
  static constexpr TQXActionClass record{
      "TQXVSDotNetAction", &ActionName, Rows::all,
      []() -> std::unique_ptr<TQXAction> { return std::make_unique<TQXVSDotNetAction>(); }};
  return record;
}

}  // namespace qx
