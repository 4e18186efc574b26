#include "engine/vc/CompilerArguments.h"

#include <algorithm>
#include <array>

#include "platform/Texts.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

constexpr std::string_view kCompiler = "VCCLCompilerTool";

// A setting whose value picks options.
struct Choice {
  std::string_view attribute, value;
  std::array<std::string_view, 2> options;
};
constexpr std::array kChoices = {
    Choice{"Optimization", "0", {"-O0"}},
    Choice{"Optimization", "1", {"-Os"}},
    Choice{"Optimization", "2", {"-O2"}},
    Choice{"Optimization", "3", {"-O2"}},
    Choice{"Optimization", "4", {"-O2"}},
    Choice{"DebugInformationFormat", "1", {"-g"}},
    Choice{"DebugInformationFormat", "2", {"-g"}},
    Choice{"DebugInformationFormat", "3", {"-g"}},
    Choice{"DebugInformationFormat", "4", {"-g"}},
    Choice{"WarningLevel", "0", {"-w"}},
    Choice{"EnableEnhancedInstructionSet", "1", {"-msse"}},
    Choice{"EnableEnhancedInstructionSet", "2", {"-msse2"}},
    Choice{"FloatingPointModel", "2", {"-ffast-math"}},
    Choice{"InlineFunctionExpansion", "0", {"-fno-inline"}},
};

struct Switch {
  std::string_view attribute;
  bool value;
  std::string_view option;
};
constexpr std::array kSwitches = {
    Switch{"DefaultCharIsUnsigned", true, "-funsigned-char"},
    Switch{"OmitFramePointers", true, "-fomit-frame-pointer"},
    Switch{"OmitFramePointers", false, "-fno-omit-frame-pointer"},
    Switch{"EnableFunctionLevelLinking", true, "-ffunction-sections"},
    Switch{"IgnoreStandardIncludePath", true, "-nostdinc"},
    Switch{"OpenMP", true, "-fopenmp"},
};

// The old compilers took much that gcc only takes when it is asked to, and none of them optimised by what the
// standard leaves undefined.
constexpr std::array kAlways = {"-fms-extensions",
                                "-fno-strict-aliasing",
                                "-fwrapv",
                                "-fno-delete-null-pointer-checks",
                                "-fno-diagnostics-show-caret",
                                "-fdiagnostics-color=never",
                                "-D_int64=long long",
                                "-D__int64=long long"};  // as the headers have it, for sources without any
// 14 and not 17: there "register", throw() lists and the bytes of <rpcndr.h> still mean what they meant.
constexpr std::array kCppAlways = {"-std=gnu++14", "-fpermissive", "-Wno-literal-suffix"};
constexpr std::array kCAlways = {"-std=gnu99", "-fcommon"};

// Options of AdditionalOptions that have a counterpart: /D and /I and the like, with or without a blank behind.
struct Extra {
  std::string_view option, ours;
};
constexpr std::array kExtras = {Extra{"FI", "-include"}, Extra{"I", "-I"}, Extra{"D", "-D"},
                                Extra{"U", "-U"}};

template <class Visitor>
void ForEachExtra(const VcSettings& settings, const VcFile* file, std::string_view tool, Visitor&& visit) {
  const std::vector<std::string> options = settings.List(tool, "AdditionalOptions", VcList::Options, file);
  for (std::size_t at = 0; at < options.size(); ++at) {
    std::string_view option = options[at];
    if (option.size() < 2 || (option[0] != '/' && option[0] != '-')) continue;
    option.remove_prefix(1);
    for (const Extra& extra : kExtras) {
      if (!option.starts_with(extra.option)) continue;
      std::string value(option.substr(extra.option.size()));
      if (value.empty() && at + 1 < options.size()) value = options[++at];
      visit(extra.ours, value);
      break;
    }
  }
}

bool Contains(const std::vector<std::string>& items, std::string_view item) {
  return std::find(items.begin(), items.end(), item) != items.end();
}

// Debug run-time libraries define _DEBUG.
bool IsDebugRuntime(const std::string& library) { return library == "1" || library == "3" || library == "5"; }

}  // namespace

VcLanguage LanguageOf(const VcSettings& settings, const VcFile& file) {
  const std::string as = settings.Text(kCompiler, "CompileAs", &file);
  if (as == "1") return VcLanguage::C;
  if (as == "2") return VcLanguage::Cpp;
  return HasExtension(file.path, ".c") ? VcLanguage::C : VcLanguage::Cpp;
}

bool IsStdcallByDefault(const VcSettings& settings, const VcFile* file) {
  return settings.Place().platform == "Win32" && settings.Text(kCompiler, "CallingConvention", file) == "2";
}

std::vector<std::string> IncludeFolders(const VcSettings& settings, std::string_view tool,
                                        const VcFile* file) {
  std::vector<std::string> written =
      settings.List(tool, "AdditionalIncludeDirectories", VcList::Folders, file);
  ForEachExtra(settings, file, tool, [&](std::string_view option, const std::string& value) {
    if (option == "-I") written.push_back(value);
  });
  std::vector<std::string> folders;
  for (const std::string& each : written) {
    const std::string found = FindExisting(settings.FullPath(each));
    if (found.empty()) continue;
    std::string folder = WithTrailingDelimiter(found);
    if (!Contains(folders, folder)) folders.push_back(std::move(folder));
  }
  return folders;
}

std::vector<std::string> ForcedIncludes(const VcSettings& settings, const VcFile& file) {
  std::vector<std::string> forced = settings.List(kCompiler, "ForcedIncludeFiles", VcList::Folders, &file);
  ForEachExtra(settings, &file, kCompiler, [&](std::string_view option, const std::string& value) {
    if (option == "-include") forced.push_back(value);
  });
  // One that lies beside the project is named whole: gcc does not run there.
  for (std::string& header : forced) {
    std::string found = FindExisting(settings.FullPath(header));
    if (!found.empty()) header = std::move(found);
  }
  return forced;
}

std::vector<std::string> Defines(const VcSettings& settings, std::string_view tool, const VcFile* file) {
  std::vector<std::string> defines;
  const std::string characters = settings.Attribute("CharacterSet");
  if (characters == "1") defines = {"UNICODE", "_UNICODE"};
  if (characters == "2") defines = {"_MBCS"};
  if (tool == kCompiler && IsDebugRuntime(settings.Text(kCompiler, "RuntimeLibrary", file))) {
    defines.push_back("_DEBUG");
  }
  const std::vector<std::string> removed =
      settings.List(tool, "UndefinePreprocessorDefinitions", VcList::Defines, file);
  std::vector<std::string> listed = settings.List(tool, "PreprocessorDefinitions", VcList::Defines, file);
  ForEachExtra(settings, file, tool, [&](std::string_view option, const std::string& value) {
    if (option == "-D") listed.push_back(value);
  });
  for (std::string& define : listed) {
    // A define that comes twice is one; gcc would warn of two values, the old compiler took the last.
    const auto name = [](const std::string& text) { return text.substr(0, text.find('=')); };
    std::erase_if(defines, [&](const std::string& earlier) { return name(earlier) == name(define); });
    defines.push_back(std::move(define));
  }
  std::erase_if(defines, [&](const std::string& define) {
    return Contains(removed, define.substr(0, define.find('=')));
  });
  return defines;
}

std::vector<std::string> CompilerArguments(const VcSettings& settings, const VcFile& file,
                                           const std::string& overlay) {
  std::vector<std::string> arguments;
  const bool isC = LanguageOf(settings, file) == VcLanguage::C;
  arguments = isC ? std::vector<std::string>{"-x", "c"} : std::vector<std::string>{"-x", "c++"};
  if (isC) arguments.insert(arguments.end(), kCAlways.begin(), kCAlways.end());
  if (!isC) arguments.insert(arguments.end(), kCppAlways.begin(), kCppAlways.end());
  arguments.insert(arguments.end(), kAlways.begin(), kAlways.end());
  for (const Choice& choice : kChoices) {
    if (settings.Text(kCompiler, choice.attribute, &file) != choice.value) continue;
    for (const std::string_view option : choice.options) {
      if (!option.empty()) arguments.emplace_back(option);
    }
  }
  for (const Switch& each : kSwitches) {
    if (settings.Flag(kCompiler, each.attribute, &file) == each.value) arguments.emplace_back(each.option);
  }
  if (!isC && settings.Flag(kCompiler, "RuntimeTypeInfo", &file) == false) arguments.push_back("-fno-rtti");
  // A function that others call by its address has to say that it is __stdcall; of C++ gcc minds that anyway.
  if (isC && IsStdcallByDefault(settings, &file)) arguments.push_back("-Werror=incompatible-pointer-types");
  for (const std::string& define : Defines(settings, kCompiler, &file)) arguments.push_back("-D" + define);
  for (const std::string& name :
       settings.List(kCompiler, "UndefinePreprocessorDefinitions", VcList::Defines, &file)) {
    arguments.push_back("-U" + name);
  }
  for (const std::string& folder : IncludeFolders(settings, kCompiler, &file)) {
    arguments.push_back("-I" + folder.substr(0, folder.size() - 1));
  }
  if (!overlay.empty()) arguments.push_back("-I" + overlay);
  for (const std::string& header : ForcedIncludes(settings, file)) {
    arguments.push_back("-include");
    arguments.push_back(header);
  }
  return arguments;
}

}  // namespace qx
