#include "projects/vc/VcAttributes.h"

#include <algorithm>
#include <array>
#include <map>

namespace qx {
namespace {

using enum VcUse;

constexpr std::string_view kNames = "names and order only";
constexpr std::string_view kSourceControl = "source control";
constexpr std::string_view kBanner = "what a tool prints";
constexpr std::string_view kNoDatabase = "gcc keeps debug information in the program";
constexpr std::string_view kOther = "gcc chooses itself";
constexpr std::string_view kPrecompiled =
    "sources are compiled without precompiled headers, which changes nothing else";
constexpr std::string_view kManaged = "only managed C++ has it";
constexpr std::string_view kDevice = "devices are out of reach";
constexpr std::string_view kNotRun = "the tool makes nothing that is part of the program";

constexpr std::array kAttributes = {
    VcAttribute{"VisualStudioProject", "Name", Followed, ""},
    VcAttribute{"VisualStudioProject", "Version", Followed, "7.00 to 9.00, with a comma too"},
    VcAttribute{"VisualStudioProject", "ProjectGUID", Followed, ""},
    VcAttribute{"VisualStudioProject", "ProjectType", Ignored, "the outermost element says it"},
    VcAttribute{"VisualStudioProject", "Keyword", Ignored, "the wizard it came from"},
    VcAttribute{"VisualStudioProject", "RootNamespace", Followed, "as a macro"},
    VcAttribute{"VisualStudioProject", "TargetFrameworkVersion", Ignored, kManaged},
    VcAttribute{"VisualStudioProject", "SignManifests", Ignored, kManaged},
    VcAttribute{"VisualStudioProject", "SccProjectName", Ignored, kSourceControl},
    VcAttribute{"VisualStudioProject", "SccAuxPath", Ignored, kSourceControl},
    VcAttribute{"VisualStudioProject", "SccLocalPath", Ignored, kSourceControl},
    VcAttribute{"VisualStudioProject", "SccProvider", Ignored, kSourceControl},
    VcAttribute{"Platform", "Name", Followed, "Win32 and x64; others are refused"},
    VcAttribute{"ToolFile", "RelativePath", Refused, "files that need such a tool"},
    VcAttribute{"DefaultToolFile", "FileName", Refused, "files that need such a tool"},
    VcAttribute{"Configuration", "Name", Followed, ""},
    VcAttribute{"Configuration", "ConfigurationType", Followed,
                "0 makefile, 1 program, 2 DLL, 4 static library, 10 utility"},
    VcAttribute{"Configuration", "OutputDirectory", Followed, ""},
    VcAttribute{"Configuration", "IntermediateDirectory", Followed,
                "objects go into a folder of the project's own in it"},
    VcAttribute{"Configuration", "InheritedPropertySheets", Followed,
                "those in VCProjectDefaults need not be there"},
    VcAttribute{"Configuration", "CharacterSet", Followed, "as the defines it stands for"},
    VcAttribute{"Configuration", "ManagedExtensions", Refused, "managed C++"},
    VcAttribute{"Configuration", "UseOfMFC", Ignored,
                "a project whose sources include MFC's headers fails and is told why"},
    VcAttribute{"Configuration", "UseOfATL", Ignored, "as UseOfMFC"},
    VcAttribute{"Configuration", "ATLMinimizesCRunTimeLibraryUsage", Ignored, "there is no ATL"},
    VcAttribute{"Configuration", "WholeProgramOptimization", Ignored, kOther},
    VcAttribute{"Configuration", "ReferencesPath", Ignored, kManaged},
    VcAttribute{"Configuration", "BuildLogFile", Ignored, "there is no such log"},
    VcAttribute{"Configuration", "DeleteExtensionsOnClean", Ignored,
                "what was made is removed, nothing else"},
    VcAttribute{"Filter", "", Ignored, kNames},
    VcAttribute{"File", "RelativePath", Followed, "letter case aside, with either delimiter"},
    VcAttribute{"File", "FileType", Ignored, "the extension says it"},
    VcAttribute{"File", "DeploymentContent", Ignored, kDevice},
    VcAttribute{"FileConfiguration", "Name", Followed, ""},
    VcAttribute{"FileConfiguration", "ExcludedFromBuild", Followed, ""},
    VcAttribute{"ProjectReference", "ReferencedProjectIdentifier", Followed, ""},
    VcAttribute{"ProjectReference", "RelativePathToProject", Ignored, "the identifier says it"},
    VcAttribute{"ProjectReference", "Name", Ignored, "the identifier says it"},
    VcAttribute{"ProjectReference", "", Ignored, kManaged},
    VcAttribute{"AssemblyReference", "", Ignored, kManaged},
    VcAttribute{"Global", "", Ignored, "for add-ins"},

    VcAttribute{"VCCLCompilerTool", "AdditionalIncludeDirectories", Followed,
                "folders that are not there are left out"},
    VcAttribute{"VCCLCompilerTool", "AdditionalOptions", Partly, "/I, /D, /U and /FI; others are left out"},
    VcAttribute{"VCCLCompilerTool", "PreprocessorDefinitions", Followed, ""},
    VcAttribute{"VCCLCompilerTool", "UndefinePreprocessorDefinitions", Followed, ""},
    VcAttribute{"VCCLCompilerTool", "ForcedIncludeFiles", Followed, ""},
    VcAttribute{"VCCLCompilerTool", "ForcedUsingFiles", Ignored, kManaged},
    VcAttribute{"VCCLCompilerTool", "Optimization", Followed, "0 -O0, 1 -Os, 2 to 4 -O2"},
    VcAttribute{"VCCLCompilerTool", "InlineFunctionExpansion", Partly, "0 is -fno-inline"},
    VcAttribute{"VCCLCompilerTool", "EnableIntrinsicFunctions", Ignored, kOther},
    VcAttribute{"VCCLCompilerTool", "FavorSizeOrSpeed", Ignored, kOther},
    VcAttribute{"VCCLCompilerTool", "GlobalOptimizations", Ignored, kOther},
    VcAttribute{"VCCLCompilerTool", "ImproveFloatingPointConsistency", Ignored, kOther},
    VcAttribute{"VCCLCompilerTool", "FloatingPointModel", Partly, "2 is -ffast-math"},
    VcAttribute{"VCCLCompilerTool", "OptimizeForProcessor", Ignored, kOther},
    VcAttribute{"VCCLCompilerTool", "OptimizeForWindowsApplication", Ignored, kOther},
    VcAttribute{"VCCLCompilerTool", "WholeProgramOptimization", Ignored, kOther},
    VcAttribute{"VCCLCompilerTool", "EnableFiberSafeOptimizations", Ignored, kOther},
    VcAttribute{"VCCLCompilerTool", "EnableEnhancedInstructionSet", Followed, ""},
    VcAttribute{"VCCLCompilerTool", "OmitFramePointers", Followed, ""},
    VcAttribute{"VCCLCompilerTool", "OpenMP", Followed, ""},
    VcAttribute{"VCCLCompilerTool", "StringPooling", Ignored, "gcc always does it"},
    VcAttribute{"VCCLCompilerTool", "MinimalRebuild", Ignored, "Ninja does it"},
    VcAttribute{"VCCLCompilerTool", "ExceptionHandling", Ignored, "exceptions always work"},
    VcAttribute{"VCCLCompilerTool", "BasicRuntimeChecks", Ignored, "gcc has none like them"},
    VcAttribute{"VCCLCompilerTool", "SmallerTypeCheck", Ignored, "gcc has none like it"},
    VcAttribute{"VCCLCompilerTool", "BufferSecurityCheck", Ignored, "changes no result"},
    VcAttribute{"VCCLCompilerTool", "RuntimeLibrary", Partly,
                "the debug libraries' define; programs are linked statically"},
    VcAttribute{"VCCLCompilerTool", "StructMemberAlignment", Ignored,
                "gcc's own headers would change with it"},
    VcAttribute{"VCCLCompilerTool", "EnableFunctionLevelLinking", Followed, ""},
    VcAttribute{"VCCLCompilerTool", "DisableLanguageExtensions", Ignored, "sources of this age need gcc's"},
    VcAttribute{"VCCLCompilerTool", "DefaultCharIsUnsigned", Followed, ""},
    VcAttribute{"VCCLCompilerTool", "TreatWChar_tAsBuiltInType", Ignored, "it always is"},
    VcAttribute{"VCCLCompilerTool", "ForceConformanceInForLoopScope", Ignored, "-fpermissive takes both"},
    VcAttribute{"VCCLCompilerTool", "RuntimeTypeInfo", Followed, ""},
    VcAttribute{"VCCLCompilerTool", "UsePrecompiledHeader", Ignored, kPrecompiled},
    VcAttribute{"VCCLCompilerTool", "PrecompiledHeaderThrough", Ignored, kPrecompiled},
    VcAttribute{"VCCLCompilerTool", "PrecompiledHeaderFile", Ignored, kPrecompiled},
    VcAttribute{"VCCLCompilerTool", "ExpandAttributedSource", Ignored, "attributed sources are not compiled"},
    VcAttribute{"VCCLCompilerTool", "AssemblerOutput", Ignored, "no listing is made"},
    VcAttribute{"VCCLCompilerTool", "AssemblerListingLocation", Ignored, "no listing is made"},
    VcAttribute{"VCCLCompilerTool", "ObjectFile", Ignored, "objects have a folder of their own"},
    VcAttribute{"VCCLCompilerTool", "ProgramDataBaseFileName", Ignored, kNoDatabase},
    VcAttribute{"VCCLCompilerTool", "BrowseInformation", Ignored, kNotRun},
    VcAttribute{"VCCLCompilerTool", "BrowseInformationFile", Ignored, kNotRun},
    VcAttribute{"VCCLCompilerTool", "GeneratePreprocessedFile", Ignored, kNotRun},
    VcAttribute{"VCCLCompilerTool", "KeepComments", Ignored, kNotRun},
    VcAttribute{"VCCLCompilerTool", "WarningLevel", Partly, "0 is -w"},
    VcAttribute{"VCCLCompilerTool", "WarnAsError", Ignored, "gcc warns of other things"},
    VcAttribute{"VCCLCompilerTool", "DisableSpecificWarnings", Ignored, "gcc has other numbers"},
    VcAttribute{"VCCLCompilerTool", "SuppressStartupBanner", Ignored, kBanner},
    VcAttribute{"VCCLCompilerTool", "ShowIncludes", Ignored, kBanner},
    VcAttribute{"VCCLCompilerTool", "Detect64BitPortabilityProblems", Ignored, "gcc has none like it"},
    VcAttribute{"VCCLCompilerTool", "DebugInformationFormat", Followed, "any is -g"},
    VcAttribute{"VCCLCompilerTool", "CompileAs", Followed, ""},
    VcAttribute{"VCCLCompilerTool", "CallingConvention", Partly,
                "2 (/Gz) is left out with a warning: gcc would call its own library so"},
    VcAttribute{"VCCLCompilerTool", "IgnoreStandardIncludePath", Followed, ""},
    VcAttribute{"VCCLCompilerTool", "ExecutionBucket", Ignored, kDevice},
    VcAttribute{"VCCLCompilerTool", "CompileAsManaged", Ignored, kManaged},

    VcAttribute{"VCLinkerTool", "OutputFile", Followed, ""},
    VcAttribute{"VCLinkerTool", "AdditionalDependencies", Followed,
                "found letter case aside; the old run-time libraries are left out"},
    VcAttribute{"VCLinkerTool", "AdditionalLibraryDirectories", Followed,
                "folders that are not there are left out"},
    VcAttribute{"VCLinkerTool", "AdditionalOptions", Partly,
                "/LIBPATH, /EXPORT, /FORCE and libraries; others are left out"},
    VcAttribute{"VCLinkerTool", "IgnoreAllDefaultLibraries", Ignored, "gcc's own are needed"},
    VcAttribute{"VCLinkerTool", "IgnoreDefaultLibraryNames", Ignored, "the libraries it names are not there"},
    VcAttribute{"VCLinkerTool", "ModuleDefinitionFile", Followed, "in a copy that ld reads"},
    VcAttribute{"VCLinkerTool", "ImportLibrary", Followed, ""},
    VcAttribute{"VCLinkerTool", "IgnoreImportLibrary", Followed, ""},
    VcAttribute{"VCLinkerTool", "SubSystem", Followed, "1 console, 2 windows"},
    VcAttribute{"VCLinkerTool", "EntryPointSymbol", Followed, ""},
    VcAttribute{"VCLinkerTool", "BaseAddress", Followed, ""},
    VcAttribute{"VCLinkerTool", "StackReserveSize", Followed, ""},
    VcAttribute{"VCLinkerTool", "StackCommitSize", Ignored, kOther},
    VcAttribute{"VCLinkerTool", "LargeAddressAware", Followed, ""},
    VcAttribute{"VCLinkerTool", "GenerateMapFile", Followed, ""},
    VcAttribute{"VCLinkerTool", "MapFileName", Followed, ""},
    VcAttribute{"VCLinkerTool", "MapExports", Ignored, kOther},
    VcAttribute{"VCLinkerTool", "MapLines", Ignored, kOther},
    VcAttribute{"VCLinkerTool", "TargetMachine", Ignored, "the platform says it"},
    VcAttribute{"VCLinkerTool", "GenerateDebugInformation", Ignored, kNoDatabase},
    VcAttribute{"VCLinkerTool", "ProgramDatabaseFile", Ignored, kNoDatabase},
    VcAttribute{"VCLinkerTool", "AssemblyDebug", Ignored, kManaged},
    VcAttribute{"VCLinkerTool", "LinkIncremental", Ignored, "ld always links whole"},
    VcAttribute{"VCLinkerTool", "OptimizeReferences", Ignored, kOther},
    VcAttribute{"VCLinkerTool", "EnableCOMDATFolding", Ignored, kOther},
    VcAttribute{"VCLinkerTool", "OptimizeForWindows98", Ignored, "Windows 98 is gone"},
    VcAttribute{"VCLinkerTool", "FunctionOrder", Ignored, kOther},
    VcAttribute{"VCLinkerTool", "DelayLoadDLLs", Ignored, "they are loaded at the start, and a note says so"},
    VcAttribute{"VCLinkerTool", "FixedBaseAddress", Ignored, kOther},
    VcAttribute{"VCLinkerTool", "RandomizedBaseAddress", Ignored, kOther},
    VcAttribute{"VCLinkerTool", "DataExecutionPrevention", Ignored, kOther},
    VcAttribute{"VCLinkerTool", "TerminalServerAware", Ignored, kOther},
    VcAttribute{"VCLinkerTool", "GenerateManifest", Ignored,
                "the old run-time library needs one, gcc's does not"},
    VcAttribute{"VCLinkerTool", "AllowIsolation", Ignored, "no manifest is made"},
    VcAttribute{"VCLinkerTool", "ShowProgress", Ignored, kBanner},
    VcAttribute{"VCLinkerTool", "SuppressStartupBanner", Ignored, kBanner},

    VcAttribute{"VCLibrarianTool", "OutputFile", Followed, ""},
    VcAttribute{"VCLibrarianTool", "AdditionalDependencies", Partly,
                "objects go in, libraries go to who links it"},
    VcAttribute{"VCLibrarianTool", "AdditionalLibraryDirectories", Followed, ""},
    VcAttribute{"VCLibrarianTool", "AdditionalOptions", Partly,
                "/LIBPATH and libraries; others are left out"},
    VcAttribute{"VCLibrarianTool", "IgnoreAllDefaultLibraries", Ignored, "a library names none"},
    VcAttribute{"VCLibrarianTool", "IgnoreDefaultLibraryNames", Ignored, "a library names none"},
    VcAttribute{"VCLibrarianTool", "SuppressStartupBanner", Ignored, kBanner},

    VcAttribute{"VCResourceCompilerTool", "PreprocessorDefinitions", Followed, ""},
    VcAttribute{"VCResourceCompilerTool", "AdditionalIncludeDirectories", Followed, ""},
    VcAttribute{"VCResourceCompilerTool", "Culture", Followed, "as the code page of scripts that name none"},

    VcAttribute{"VCCustomBuildTool", "CommandLine", Followed, "by Wine"},
    VcAttribute{"VCCustomBuildTool", "Outputs", Followed, "a step that names none does not run"},
    VcAttribute{"VCCustomBuildTool", "AdditionalDependencies", Followed, ""},
    VcAttribute{"VCCustomBuildTool", "Description", Ignored, "the commands themselves are printed"},
    VcAttribute{"VCPreBuildEventTool", "CommandLine", Followed, "by Wine"},
    VcAttribute{"VCPreBuildEventTool", "ExcludedFromBuild", Followed, ""},
    VcAttribute{"VCPreBuildEventTool", "Description", Ignored, "the commands themselves are printed"},
    VcAttribute{"VCPreLinkEventTool", "CommandLine", Followed, "by Wine"},
    VcAttribute{"VCPreLinkEventTool", "ExcludedFromBuild", Followed, ""},
    VcAttribute{"VCPreLinkEventTool", "Description", Ignored, "the commands themselves are printed"},
    VcAttribute{"VCPostBuildEventTool", "CommandLine", Followed, "by Wine"},
    VcAttribute{"VCPostBuildEventTool", "ExcludedFromBuild", Followed, ""},
    VcAttribute{"VCPostBuildEventTool", "Description", Ignored, "the commands themselves are printed"},

    VcAttribute{"VCNMakeTool", "BuildCommandLine", Followed, "by Wine"},
    VcAttribute{"VCNMakeTool", "ReBuildCommandLine", Followed, "by Wine"},
    VcAttribute{"VCNMakeTool", "CleanCommandLine", Followed, "by Wine"},
    VcAttribute{"VCNMakeTool", "Output", Followed, ""},
    VcAttribute{"VCNMakeTool", "", Ignored, "for the editor"},

    VcAttribute{
        "VCMIDLTool", "", Refused,
        "projects that list an .idl or .odl file to build; the settings by themselves change nothing"},
    VcAttribute{"VCBscMakeTool", "", Ignored, kNotRun},
    VcAttribute{"VCXDCMakeTool", "", Ignored, kNotRun},
    VcAttribute{"VCFxCopTool", "", Ignored, kNotRun},
    VcAttribute{"VCAppVerifierTool", "", Ignored, kNotRun},
    VcAttribute{"VCManifestTool", "", Ignored, "the old run-time library needs a manifest, gcc's does not"},
    VcAttribute{"VCCodeSignTool", "", Ignored, kDevice},
    VcAttribute{"VCWebDeploymentTool", "", Ignored, "servers are out of reach"},
    VcAttribute{"VCWebServiceProxyGeneratorTool", "", Ignored, kManaged},
    VcAttribute{"VCXMLDataGeneratorTool", "", Ignored, kManaged},
    VcAttribute{"VCManagedWrapperGeneratorTool", "", Ignored, kManaged},
    VcAttribute{"VCAuxiliaryManagedWrapperGeneratorTool", "", Ignored, kManaged},
    VcAttribute{"VCManagedResourceCompilerTool", "", Ignored, kManaged},
    VcAttribute{"VCALinkTool", "", Ignored, kManaged},
    VcAttribute{"DeploymentTool", "", Ignored, kDevice},
    VcAttribute{"DebuggerTool", "", Ignored, kDevice},
    VcAttribute{"MASM", "", Refused, "assembler sources"},
    VcAttribute{"YASM", "", Refused, "assembler sources"},
};

constexpr std::array<std::string_view, 4> kUses = {"followed", "partly", "ignored", "refused"};

}  // namespace

std::span<const VcAttribute> VcAttributes() { return kAttributes; }

const VcAttribute* FindVcAttribute(std::string_view element, std::string_view attribute) {
  const VcAttribute* general = nullptr;
  for (const VcAttribute& each : kAttributes) {
    if (each.element != element) continue;
    if (each.attribute == attribute) return &each;
    if (each.attribute.empty()) general = &each;
  }
  return general;
}

std::string VcAttributesAsMarkdown() {
  std::map<VcUse, int> counts;
  for (const VcAttribute& each : kAttributes) ++counts[each.use];
  std::string out = "Rows by use:";
  for (const auto& [use, count] : counts) {
    (out += " " + std::to_string(count) + " ") += kUses[static_cast<std::size_t>(use)];
    out += ',';
  }
  out.back() = '.';
  out += "\n\n| element or tool | attribute | use | remark |\n| --- | --- | --- | --- |\n";
  for (const VcAttribute& each : kAttributes) {
    for (const std::string_view cell :
         {each.element, each.attribute.empty() ? std::string_view("(all others)") : each.attribute,
          kUses[static_cast<std::size_t>(each.use)], each.remark}) {
      (out += cell.empty() ? "|" : "| ") += cell;
      out += ' ';
    }
    out += "|\n";
  }
  return out;
}

}  // namespace qx
