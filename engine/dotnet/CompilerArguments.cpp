#include "engine/dotnet/CompilerArguments.h"

#include <algorithm>
#include <filesystem>

#include "platform/Texts.h"

namespace qx {
namespace {

// Said by newer compilers of what was right in those years: a key file named by an attribute (1699), and by
// an option besides (1616).
constexpr const char* kNewerWarnings = "1616,1699";
// Members that became obsolete in a newer library than the project was written for: no errors even where
// warnings are.
constexpr const char* kNewerLibraryWarnings = "612,618";

struct Target {
  const char* outputType;
  const char* target;
};
constexpr Target kTargets[] = {
    {"Exe", "exe"}, {"WinExe", "winexe"}, {"Library", "library"}, {"Module", "module"}};

std::string TargetOf(const std::string& outputType) {
  for (const Target& target : kTargets) {
    if (SameText(target.outputType, outputType)) return target.target;
  }
  return "exe";
}

// "0618, 1591;  ": the numbers, separated by commas.
std::string Numbers(std::string_view text) {
  std::string numbers;
  for (const char c : text) {
    if (c >= '0' && c <= '9') {
      numbers += c;
    } else if (!numbers.empty() && numbers.back() != ',') {
      numbers += ',';
    }
  }
  if (numbers.ends_with(',')) numbers.pop_back();
  return numbers;
}

// Separated by ";", whatever stood between them: blanks and commas were taken too.
std::string Symbols(std::string_view text) {
  std::string symbols;
  for (const char c : text) {
    const bool separates = c == ';' || c == ',' || static_cast<unsigned char>(c) <= ' ';
    if (!separates) {
      symbols += c;
    } else if (!symbols.empty() && symbols.back() != ';') {
      symbols += ';';
    }
  }
  if (symbols.ends_with(';')) symbols.pop_back();
  return symbols;
}

using Arguments = std::vector<std::string>;

void AddIf(Arguments& arguments, const char* option, const std::string& value) {
  if (!value.empty()) arguments.push_back(option + value);
}

// The compilers separate what they are told by commas, and a folder of the tree may hold one. They run in the
// project's folder.
std::string ForCompiler(const CompilePlan& plan, const std::string& path) {
  if (path.find(',') == std::string::npos) return path;
  return std::filesystem::path(path).lexically_relative(plan.folder).string();
}

std::string Embedded(const CompilePlan& plan, const char* option, const PlannedResource& resource) {
  return option + ForCompiler(plan, resource.embedded) + "," + resource.name;
}

void AddFiles(Arguments& arguments, const CompilePlan& plan) {
  for (const PlannedReference& reference : plan.references) {
    arguments.push_back("-reference:" + ForCompiler(plan, reference.file));
  }
  for (const PlannedResource* resource : plan.ResourcesOf("")) {
    arguments.push_back(Embedded(plan, "-resource:", *resource));
  }
  arguments.insert(arguments.end(), plan.sources.begin(), plan.sources.end());
}

}  // namespace

Arguments McsArguments(const NetProject& project, const CompilePlan& plan, const std::string& output) {
  Arguments arguments = {"-out:" + output, "-target:" + TargetOf(project.outputType.value),
                         "-warn:" + std::to_string(std::clamp(project.warningLevel, 0, 4)),
                         project.debug ? "-debug+" : "-debug-",
                         project.optimise ? "-optimize+" : "-optimize-"};
  const std::string noWarn = Numbers(project.noWarn);
  arguments.push_back("-nowarn:" + (noWarn.empty() ? "" : noWarn + ",") + kNewerWarnings);
  AddIf(arguments, "-define:", Symbols(project.defines));
  if (project.allowUnsafe) arguments.emplace_back("-unsafe+");
  if (project.checkOverflow) arguments.emplace_back("-checked+");
  if (project.noStandardLibrary) arguments.emplace_back("-nostdlib+");
  if (project.warningsAsErrors) {
    arguments.emplace_back("-warnaserror+");
    arguments.push_back(std::string("-warnaserror-:") + kNewerLibraryWarnings);
  }
  AddIf(arguments, "-doc:", plan.documentationFile);
  AddIf(arguments, "-main:", project.startupObject);
  AddIf(arguments, "-win32icon:", plan.icon);
  AddIf(arguments, "-keyfile:", plan.keyFile);
  if (project.delaySign && !plan.keyFile.empty()) arguments.emplace_back("-delaysign+");
  AddIf(arguments, "-codepage:", plan.codePage);
  AddIf(arguments, "-platform:", project.platformTarget);
  AddFiles(arguments, plan);
  return arguments;
}

Arguments VbncArguments(const NetProject& project, const CompilePlan& plan, const std::string& output) {
  Arguments arguments = {"-out:" + output, "-target:" + TargetOf(project.outputType.value),
                         project.debug ? "-debug+" : "-debug-",
                         project.optimise ? "-optimize+" : "-optimize-",
                         project.checkOverflow ? "-removeintchecks-" : "-removeintchecks+"};
  AddIf(arguments, "-rootnamespace:", project.rootNamespace);
  AddIf(arguments, "-imports:", project.imports);
  std::string defines = Symbols(project.defines);
  std::replace(defines.begin(), defines.end(), ';', ',');
  AddIf(arguments, "-define:", defines);
  arguments.emplace_back(SameText(project.optionStrict, "On") ? "-optionstrict+" : "-optionstrict-");
  arguments.emplace_back(SameText(project.optionExplicit, "Off") ? "-optionexplicit-" : "-optionexplicit+");
  arguments.emplace_back(SameText(project.optionCompare, "Text") ? "-optioncompare:text"
                                                                 : "-optioncompare:binary");
  if (project.warningsAsErrors) arguments.emplace_back("-warnaserror+");
  AddIf(arguments, "-main:", project.startupObject);
  AddIf(arguments, "-win32icon:", plan.icon);
  AddIf(arguments, "-keyfile:", plan.keyFile);
  AddFiles(arguments, plan);
  return arguments;
}

Arguments AlArguments(const CompilePlan& plan, const std::string& culture, const std::string& program,
                      const std::string& output) {
  Arguments arguments = {"-nologo", "-target:library", "-culture:" + culture, "-out:" + output,
                         "-template:" + program};
  AddIf(arguments, "-keyfile:", plan.keyFile);
  for (const PlannedResource* resource : plan.ResourcesOf(culture)) {
    arguments.push_back(Embedded(plan, "-embed:", *resource));
  }
  return arguments;
}

std::string ResponseFileText(const Arguments& arguments) {
  std::string text;
  for (std::string argument : arguments) {
    // What would end the argument and begin another: no name or symbol that means something holds it.
    std::erase_if(argument, [](char c) { return c == '"' || c == '\n' || c == '\r'; });
    text += "\"" + argument + "\"\n";
  }
  return text;
}

}  // namespace qx
