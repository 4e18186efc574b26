#include "projects/net/NetFormTable.h"

#include <algorithm>
#include <iterator>

#include "platform/Texts.h"

namespace qx {
namespace {

constexpr NetForm kOld = NetForm::Attributes;
constexpr NetForm kNew = NetForm::MsBuild;
constexpr bool kUsed = true;
constexpr bool kIgnored = false;

constexpr const char* kDesign = "of the product's designers and wizards alone";
constexpr const char* kRun = "for starting the program from the product";
constexpr const char* kGenerated = "how a file was generated; the generated file is compiled as it is";
constexpr const char* kEngine = "read for nothing here; the MSBuild engine acts on it";
constexpr const char* kUpgrade = "of a conversion in the past";

constexpr NetFormEntry kTable[] = {
    {kOld, "CSHARP@ProjectType", kUsed,
     "Local, or Web (which is built like a local one when its file is here)"},
    {kOld, "CSHARP@ProductVersion", kUsed, "7.0 is Visual Studio 2002, 7.10 is 2003"},
    {kOld, "CSHARP@SchemaVersion", kIgnored, "goes with ProductVersion"},
    {kOld, "CSHARP@ProjectGuid", kUsed, "by which other projects refer to it"},
    {kOld, "Settings@ApplicationIcon", kUsed, "mcs -win32icon"},
    {kOld, "Settings@AssemblyKeyContainerName", kUsed, "refused when set: there are no key containers here"},
    {kOld, "Settings@AssemblyName", kUsed, "the output's name"},
    {kOld, "Settings@AssemblyOriginatorKeyFile", kUsed, "mcs -keyfile, from the project's folder"},
    {kOld, "Settings@AssemblyOriginatorKeyMode", kIgnored, "goes with the key file"},
    {kOld, "Settings@DefaultClientScript", kIgnored, kDesign},
    {kOld, "Settings@DefaultHTMLPageLayout", kIgnored, kDesign},
    {kOld, "Settings@DefaultTargetSchema", kIgnored, kDesign},
    {kOld, "Settings@DelaySign", kUsed, "mcs -delaysign+"},
    {kOld, "Settings@OptionCompare", kUsed, "Visual Basic: -optioncompare"},
    {kOld, "Settings@OptionExplicit", kUsed, "Visual Basic: -optionexplicit"},
    {kOld, "Settings@OptionStrict", kUsed, "Visual Basic: -optionstrict"},
    {kOld, "Settings@OutputType", kUsed, "mcs -target"},
    {kOld, "Settings@PreBuildEvent", kUsed, "runs before compiling"},
    {kOld, "Settings@PostBuildEvent", kUsed, "runs behind it, as RunPostBuildEvent says"},
    {kOld, "Settings@RunPostBuildEvent", kUsed, "Always, OnBuildSuccess or OnOutputUpdated"},
    {kOld, "Settings@RootNamespace", kUsed, "names of resources; Visual Basic: -rootnamespace"},
    {kOld, "Settings@StartupObject", kUsed, "mcs -main"},
    {kOld, "Config@Name", kUsed, "what the solution's configurations lead to"},
    {kOld, "Config@AdditionalOptions", kIgnored, "of J#, which cannot be built here"},
    {kOld, "Config@AllowUnsafeBlocks", kUsed, "mcs -unsafe+"},
    {kOld, "Config@BaseAddress", kIgnored, "mono loads assemblies anywhere"},
    {kOld, "Config@CheckForOverflowUnderflow", kUsed, "mcs -checked+"},
    {kOld, "Config@ConfigurationOverrideFile", kIgnored, "of the product's debugger"},
    {kOld, "Config@DebugSymbols", kUsed, "mcs -debug+"},
    {kOld, "Config@DefineConstants", kUsed, "mcs -define"},
    {kOld, "Config@DefineDebug", kUsed, "Visual Basic: DEBUG=True"},
    {kOld, "Config@DefineTrace", kUsed, "Visual Basic: TRACE=True"},
    {kOld, "Config@DocumentationFile", kUsed, "mcs -doc"},
    {kOld, "Config@FileAlignment", kIgnored, "has no meaning to mono"},
    {kOld, "Config@IncrementalBuild", kIgnored, "mcs compiles all of an assembly or nothing"},
    {kOld, "Config@NoStdLib", kUsed, "mcs -nostdlib"},
    {kOld, "Config@NoWarn", kUsed, "mcs -nowarn"},
    {kOld, "Config@Optimize", kUsed, "mcs -optimize+"},
    {kOld, "Config@OutputPath", kUsed, "where the output, its references and satellites go"},
    {kOld, "Config@RegisterForComInterop", kIgnored, "there is no registry of COM classes to enter it in"},
    {kOld, "Config@RemoveIntegerChecks", kUsed, "Visual Basic: -removeintchecks"},
    {kOld, "Config@TreatWarningsAsErrors", kUsed,
     "mcs -warnaserror+, but for obsolete members of a newer library"},
    {kOld, "Config@WarningLevel", kUsed, "mcs -warn"},
    {kOld, "Reference@Name", kUsed, "its name where AssemblyName is not given"},
    {kOld, "Reference@AssemblyName", kUsed,
     "looked up among the solution's projects, HintPath, mono's and Debian's"},
    {kOld, "Reference@HintPath", kUsed, "where the assembly lies"},
    {kOld, "Reference@AssemblyFolderKey", kIgnored,
     "a folder named in the registry of the machine it was made on"},
    {kOld, "Reference@Project", kUsed, "the project whose output it is"},
    {kOld, "Reference@Package", kIgnored, "what kind of project it is"},
    {kOld, "Reference@Private", kUsed, "copied beside the output or not"},
    {kOld, "Reference@Guid", kUsed, "a type library: its wrapper has to lie at HintPath or in obj"},
    {kOld, "Reference@VersionMajor", kIgnored, "of a type library"},
    {kOld, "Reference@VersionMinor", kIgnored, "of a type library"},
    {kOld, "Reference@Lcid", kIgnored, "of a type library"},
    {kOld, "Reference@WrapperTool", kIgnored, "of a type library"},
    {kOld, "Import@Namespace", kUsed, "Visual Basic: -imports"},
    {kOld, "File@RelPath", kUsed, "where it lies, or a link's place in the project"},
    {kOld, "File@Link", kUsed, "where a linked file lies"},
    {kOld, "File@BuildAction", kUsed, "Compile and EmbeddedResource go to the compiler"},
    {kOld, "File@DependentUpon", kUsed, "the source after whose first class a .resx is named"},
    {kOld, "File@SubType", kIgnored, kDesign},
    {kOld, "File@AutoGen", kIgnored, kGenerated},
    {kOld, "File@DesignTime", kIgnored, kGenerated},
    {kOld, "File@Generator", kIgnored, kGenerated},
    {kOld, "File@LastGenOutput", kIgnored, kGenerated},
    {kOld, "File@CustomToolNamespace", kIgnored, kGenerated},
    {kOld, "Folder@RelPath", kIgnored, "a folder makes nothing"},
    {kOld, "Folder@WebReferences", kIgnored, kGenerated},
    {kOld, "Folder@WebReferenceUrl", kIgnored, kGenerated},
    {kOld, "Folder@UrlBehavior", kIgnored, kGenerated},

    {kNew, "PropertyGroup", kUsed, "with its conditions and those of its properties"},
    {kNew, "ItemGroup", kUsed, "with its conditions and those of its items"},
    {kNew, "Choose", kUsed, "When and Otherwise"},
    {kNew, "Import", kUsed,
     "the product's targets are known, a file that is there is read, any other makes doubt"},
    {kNew, "ProjectExtensions", kIgnored, kDesign},
    {kNew, "Target", kIgnored, "run by the engine; an output that it moves is not seen"},
    {kNew, "UsingTask", kIgnored, kEngine},
    {kNew, "Configuration", kUsed, "the default where none is asked for"},
    {kNew, "Platform", kUsed, "likewise"},
    {kNew, "AssemblyName", kUsed, "the output's name; the project's where it is not set"},
    {kNew, "OutputType", kUsed, "the output's extension"},
    {kNew, "OutputPath", kUsed, "where the output lies; delimiters are turned for the engine"},
    {kNew, "OutDir", kUsed, "wins over OutputPath"},
    {kNew, "TargetName", kUsed, "wins over AssemblyName"},
    {kNew, "TargetExt", kUsed, "wins over OutputType"},
    {kNew, "ProjectGuid", kUsed, "by which other projects refer to it"},
    {kNew, "ProductVersion", kUsed, "told only"},
    {kNew, "RootNamespace", kUsed, "names of resources"},
    {kNew, "StartupObject", kUsed, kEngine},
    {kNew, "ApplicationIcon", kUsed, kEngine},
    {kNew, "DocumentationFile", kUsed, kEngine},
    {kNew, "PlatformTarget", kUsed, kEngine},
    {kNew, "AssemblyOriginatorKeyFile", kUsed, kEngine},
    {kNew, "KeyContainerName", kUsed, kEngine},
    {kNew, "PreBuildEvent", kUsed, kEngine},
    {kNew, "PostBuildEvent", kUsed, kEngine},
    {kNew, "RunPostBuildEvent", kUsed, kEngine},
    {kNew, "DefineConstants", kUsed, kEngine},
    {kNew, "NoWarn", kUsed, kEngine},
    {kNew, "OptionStrict", kUsed, kEngine},
    {kNew, "OptionExplicit", kUsed, kEngine},
    {kNew, "OptionCompare", kUsed, kEngine},
    {kNew, "CodePage", kUsed,
     "set for the engine where sources are in a code page and the project says nothing"},
    {kNew, "DebugSymbols", kUsed, kEngine},
    {kNew, "Optimize", kUsed, kEngine},
    {kNew, "AllowUnsafeBlocks", kUsed, kEngine},
    {kNew, "CheckForOverflowUnderflow", kUsed, kEngine},
    {kNew, "NoStdLib", kUsed, kEngine},
    {kNew, "TreatWarningsAsErrors", kUsed, kEngine},
    {kNew, "WarningLevel", kUsed, kEngine},
    {kNew, "DelaySign", kUsed, kEngine},
    {kNew, "SignAssembly", kUsed, kEngine},
    {kNew, "AppDesignerFolder", kIgnored, kDesign},
    {kNew, "AssemblyKeyContainerName", kIgnored, kEngine},
    {kNew, "BaseAddress", kIgnored, kEngine},
    {kNew, "ConfigurationOverrideFile", kIgnored, "of the product's debugger"},
    {kNew, "DebugType", kIgnored, kEngine},
    {kNew, "DefaultClientScript", kIgnored, kDesign},
    {kNew, "DefaultHTMLPageLayout", kIgnored, kDesign},
    {kNew, "DefaultTargetSchema", kIgnored, kDesign},
    {kNew, "DefineDebug", kIgnored, kEngine},
    {kNew, "DefineTrace", kIgnored, kEngine},
    {kNew, "EnableUnmanagedDebugging", kIgnored, kRun},
    {kNew, "ErrorReport", kIgnored, kEngine},
    {kNew, "FileAlignment", kIgnored, kEngine},
    {kNew, "FileUpgradeFlags", kIgnored, kUpgrade},
    {kNew, "GenerateSerializationAssemblies", kIgnored, kEngine},
    {kNew, "MyType", kIgnored, kEngine},
    {kNew, "NoConfig", kIgnored, kEngine},
    {kNew, "NoStandardLibraries", kIgnored, kEngine},
    {kNew, "OldToolsVersion", kIgnored, kUpgrade},
    {kNew, "ProjectType", kIgnored, kUpgrade},
    {kNew, "ProjectTypeGuids", kIgnored, kDesign},
    {kNew, "RegisterForComInterop", kIgnored, kEngine},
    {kNew, "RemoveIntegerChecks", kIgnored, kEngine},
    {kNew, "SchemaVersion", kIgnored, kUpgrade},
    {kNew, "StartAction", kIgnored, kRun},
    {kNew, "StartArguments", kIgnored, kRun},
    {kNew, "StartProgram", kIgnored, kRun},
    {kNew, "StartWorkingDirectory", kIgnored, kRun},
    {kNew, "UpgradeBackupLocation", kIgnored, kUpgrade},
    {kNew, "Reference@Include", kUsed, "the name up to the first comma"},
    {kNew, "Reference/HintPath", kUsed, kEngine},
    {kNew, "Reference/Private", kUsed, kEngine},
    {kNew, "Reference/Name", kIgnored, kDesign},
    {kNew, "Reference/SpecificVersion", kIgnored, kEngine},
    {kNew, "Reference/SubType", kIgnored, kDesign},
    {kNew, "ProjectReference@Include", kUsed, "what must be built before"},
    {kNew, "ProjectReference/Project", kUsed, "the same, by identifier"},
    {kNew, "ProjectReference/Name", kUsed, "told only"},
    {kNew, "ProjectReference/Private", kUsed, kEngine},
    {kNew, "ProjectReference/Package", kIgnored, kDesign},
    {kNew, "COMReference@Include", kUsed, "a type library; the engine looks for its wrapper"},
    {kNew, "COMReference/Guid", kUsed, "likewise"},
    {kNew, "COMReference/Private", kUsed, kEngine},
    {kNew, "COMReference/Isolated", kIgnored, kEngine},
    {kNew, "COMReference/Lcid", kIgnored, kEngine},
    {kNew, "COMReference/VersionMajor", kIgnored, kEngine},
    {kNew, "COMReference/VersionMinor", kIgnored, kEngine},
    {kNew, "COMReference/WrapperTool", kIgnored, kEngine},
    {kNew, "Import@Include", kUsed, "Visual Basic: a namespace"},
    {kNew, "Compile@Include", kUsed, "a source"},
    {kNew, "EmbeddedResource@Include", kUsed, "a resource"},
    {kNew, "Content@Include", kUsed, "told only"},
    {kNew, "None@Include", kUsed, "told only"},
    {kNew, "*/Link", kUsed, "a link's place in the project"},
    {kNew, "*/DependentUpon", kUsed, "the source after whose first class a .resx is named"},
    {kNew, "*/LogicalName", kUsed, "a resource's name"},
    {kNew, "*/SubType", kIgnored, kDesign},
    {kNew, "*/AutoGen", kIgnored, kGenerated},
    {kNew, "*/DesignTime", kIgnored, kGenerated},
    {kNew, "*/DesignTimeSharedInput", kIgnored, kGenerated},
    {kNew, "*/Generator", kIgnored, kGenerated},
    {kNew, "*/LastGenOutput", kIgnored, kGenerated},
    {kNew, "*/CustomToolNamespace", kIgnored, kGenerated},
    {kNew, "*/CopyToOutputDirectory", kIgnored, kEngine},
    {kNew, "Folder@Include", kIgnored, "a folder makes nothing"},
    {kNew, "Service@Include", kIgnored, kDesign},
    {kNew, "BootstrapperPackage@Include", kIgnored, "of an installation"},
    {kNew, "WebReferences@Include", kIgnored, kGenerated},
    {kNew, "WebReferenceUrl@Include", kIgnored, kGenerated},
    {kNew, "WebReferenceUrl/*", kIgnored, kGenerated},
};

// Visual Basic's and J#'s body has the attributes of C#'s; in the table they stand once.
std::string_view Canonical(NetForm form, std::string_view name, std::string& scratch) {
  if (form != NetForm::Attributes) return name;
  for (const char* other : {"VisualBasic@", "VISUALJSHARP@"}) {
    if (name.starts_with(other)) {
      scratch = "CSHARP@" + std::string(name.substr(std::string_view(other).size()));
      return scratch;
    }
  }
  return name;
}

// "*" in a table's name stands for any kind of item, or for any metadata.
bool Fits(std::string_view pattern, std::string_view name) {
  const std::size_t slash = name.find('/');
  if (slash != std::string_view::npos && pattern.starts_with("*/")) {
    return SameText(pattern.substr(1), name.substr(slash));
  }
  if (slash != std::string_view::npos && pattern.ends_with("/*")) {
    return SameText(pattern.substr(0, pattern.size() - 1), name.substr(0, slash + 1));
  }
  return SameText(pattern, name);
}

}  // namespace

std::span<const NetFormEntry> NetFormTable() { return kTable; }

const NetFormEntry* FindNetFormEntry(NetForm form, std::string_view name) {
  std::string scratch;
  name = Canonical(form, name, scratch);
  const auto* found = std::ranges::find_if(
      kTable, [&](const NetFormEntry& entry) { return entry.form == form && Fits(entry.name, name); });
  return found == std::end(kTable) ? nullptr : found;
}

std::string NetFormTableText() {
  std::string text;
  for (const NetForm form : {NetForm::Attributes, NetForm::MsBuild}) {
    text +=
        form == NetForm::Attributes ? "## Visual Studio 2002 and 2003\n\n" : "\n## Visual Studio 2005\n\n";
    text += "| name | | what becomes of it |\n| --- | --- | --- |\n";
    for (const NetFormEntry& entry : kTable) {
      if (entry.form != form) continue;
      text += "| `" + std::string(entry.name) + "` | " + (entry.isUsed ? "used" : "ignored") + " | " +
              entry.what + " |\n";
    }
  }
  return text;
}

}  // namespace qx
