#include "engine/dotnet/CompilerArguments.h"

#include <algorithm>

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
  const char* output_type;
  const char* target;
};
constexpr Target kTargets[] = {
    {"Exe", "exe"}, {"WinExe", "winexe"}, {"Library", "library"}, {"Module", "module"}};

std::string TargetOf(const std::string& output_type) {
  for (const Target& target : kTargets) {
    if (SameText(target.output_type, output_type)) return target.target;
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

void AddFiles(Arguments& arguments, const CompilePlan& plan) {
  for (const PlannedReference& reference : plan.references)
    arguments.push_back("-reference:" + reference.file);
  for (const PlannedResource* resource : plan.ResourcesOf("")) {
    arguments.push_back("-resource:" + resource->embedded + "," + resource->name);
  }
  arguments.insert(arguments.end(), plan.sources.begin(), plan.sources.end());
}

}  // namespace

Arguments McsArguments(const NetProject& project, const CompilePlan& plan, const std::string& output) {
  Arguments arguments = {"-out:" + output, "-target:" + TargetOf(project.output_type.value),
                         "-warn:" + std::to_string(std::clamp(project.warning_level, 0, 4)),
                         project.debug ? "-debug+" : "-debug-",
                         project.optimise ? "-optimize+" : "-optimize-"};
  const std::string no_warn = Numbers(project.no_warn);
  arguments.push_back("-nowarn:" + (no_warn.empty() ? "" : no_warn + ",") + kNewerWarnings);
  AddIf(arguments, "-define:", Symbols(project.defines));
  if (project.allow_unsafe) arguments.emplace_back("-unsafe+");
  if (project.check_overflow) arguments.emplace_back("-checked+");
  if (project.no_standard_library) arguments.emplace_back("-nostdlib+");
  if (project.warnings_as_errors) {
    arguments.emplace_back("-warnaserror+");
    arguments.push_back(std::string("-warnaserror-:") + kNewerLibraryWarnings);
  }
  AddIf(arguments, "-doc:", plan.documentation_file);
  AddIf(arguments, "-main:", project.startup_object);
  AddIf(arguments, "-win32icon:", plan.icon);
  AddIf(arguments, "-keyfile:", plan.key_file);
  if (project.delay_sign && !plan.key_file.empty()) arguments.emplace_back("-delaysign+");
  AddIf(arguments, "-codepage:", plan.code_page);
  AddIf(arguments, "-platform:", project.platform_target);
  AddFiles(arguments, plan);
  return arguments;
}

Arguments VbncArguments(const NetProject& project, const CompilePlan& plan, const std::string& output) {
  Arguments arguments = {"-out:" + output, "-target:" + TargetOf(project.output_type.value),
                         project.debug ? "-debug+" : "-debug-",
                         project.optimise ? "-optimize+" : "-optimize-",
                         project.check_overflow ? "-removeintchecks-" : "-removeintchecks+"};
  AddIf(arguments, "-rootnamespace:", project.root_namespace);
  AddIf(arguments, "-imports:", project.imports);
  std::string defines = Symbols(project.defines);
  std::replace(defines.begin(), defines.end(), ';', ',');
  AddIf(arguments, "-define:", defines);
  arguments.emplace_back(SameText(project.option_strict, "On") ? "-optionstrict+" : "-optionstrict-");
  arguments.emplace_back(SameText(project.option_explicit, "Off") ? "-optionexplicit-" : "-optionexplicit+");
  arguments.emplace_back(SameText(project.option_compare, "Text") ? "-optioncompare:text"
                                                                  : "-optioncompare:binary");
  if (project.warnings_as_errors) arguments.emplace_back("-warnaserror+");
  AddIf(arguments, "-main:", project.startup_object);
  AddIf(arguments, "-win32icon:", plan.icon);
  AddIf(arguments, "-keyfile:", plan.key_file);
  AddFiles(arguments, plan);
  return arguments;
}

Arguments AlArguments(const CompilePlan& plan, const std::string& culture, const std::string& program,
                      const std::string& output) {
  Arguments arguments = {"-nologo", "-target:library", "-culture:" + culture, "-out:" + output,
                         "-template:" + program};
  AddIf(arguments, "-keyfile:", plan.key_file);
  for (const PlannedResource* resource : plan.ResourcesOf(culture)) {
    arguments.push_back("-embed:" + resource->embedded + "," + resource->name);
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
