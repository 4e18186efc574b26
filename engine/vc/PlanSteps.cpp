#include <set>

#include "engine/CommandSteps.h"
#include "engine/vc/CompilerArguments.h"
#include "engine/vc/OldLiterals.h"
#include "engine/vc/Planner.h"
#include "engine/vc/ResourceScript.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr std::string_view kResources = "VCResourceCompilerTool";
constexpr int kDeepestScript = 20;

std::string Stem(const std::string& path) {
  const std::string file = FilePart(path);
  return file.substr(0, file.size() - ExtensionOf(file).size());
}

std::string Description(std::string_view text) { return NinjaFile::Escaped(text); }

// The path that an output of a custom build step has or will have: in the folder as it is named on disk.
std::string OutputPath(Planner& planner, const std::string& text) {
  std::string path = planner.settings.FullPath(text);
  std::string found = planner.finder.Find(path);
  if (!found.empty()) return found;
  const std::string folder = planner.finder.Find(FolderPart(path));
  return folder.empty() ? path : WithTrailingDelimiter(folder) + FilePart(path);
}

// Copies of a script and of what it includes, each one once, all in UTF-8.
class ScriptCopies {
 public:
  ScriptCopies(Planner& planner, std::vector<std::string> folders, std::uint32_t codePage)
      : planner_(planner), folders_(std::move(folders)), codePage_(codePage) {}

  // The copy's name in the plan's folder.
  std::string Copy(const std::string& path, int depth) {
    const auto [place, isNew] = copies_.try_emplace(path);
    if (!isNew) return place->second;
    const std::string name = planner_.UniqueName(Stem(path) + ".copy", ExtensionOf(path));
    place->second = name;
    planner_.plan.inputs.push_back(path);
    const ResourceCopy copy =
        TranslateResourceScript(ReadFile(path), codePage_, path, [&](const ResourceName& wanted) {
          const std::string found = Find(wanted.name, FolderPart(path));
          if (!found.empty() && !wanted.included) planner_.plan.inputs.push_back(found);
          if (!found.empty() && !wanted.included) read_.push_back(found);
          if (found.empty() && wanted.included) return FindOwn(wanted.name);
          if (found.empty() || !wanted.included || depth >= kDeepestScript) return found;
          return Copy(found, depth + 1);
        });
    for (const std::string& note : copy.notes) planner_.plan.notes.push_back(FilePart(path) + ": " + note);
    planner_.Write(name, copy.text);
    return name;
  }
  // Icons and the like.
  const std::vector<std::string>& Read() const { return read_; }

 private:
  std::string Find(const std::string& name, const std::string& own) {
    if (Neighbours* neighbours = planner_.task.neighbours; neighbours != nullptr) {
      // A program may be put into another one.
      neighbours->Await([&](const std::string& made) { return SameText(FilePart(made), FilePart(name)); });
    }
    std::vector<std::string> folders{own, planner_.settings.ProjectFolder()};
    folders.insert(folders.end(), folders_.begin(), folders_.end());
    for (const std::string& folder : folders) {
      std::string path = ExpandPath(folder, name);
      if (planner_.finder.FindFile(path)) return path;
    }
    return {};
  }

  // A header of MinGW-w64 that is named in other letter case; it is not copied.
  std::string FindOwn(const std::string& name) {
    for (const std::string& folder : planner_.tools.includeFolders) {
      std::string path = folder + name;
      if (planner_.finder.FindFile(path)) return path == folder + name ? std::string() : path;
    }
    return {};
  }

  Planner& planner_;
  std::vector<std::string> folders_;
  std::uint32_t codePage_;
  std::map<std::string, std::string> copies_;
  std::vector<std::string> read_;
};

void PlanScript(Planner& planner, const VcSource& source) {
  const VcSettings& settings = planner.settings;
  const std::vector<std::string> folders = IncludeFolders(settings, kResources, source.file);
  ScriptCopies copies(planner, folders, CodePageOfCulture(settings.Text(kResources, "Culture", source.file)));
  const std::string script = copies.Copy(source.path, 0);
  std::vector<std::string> arguments = {"-E", "-x", "c", "-DRC_INVOKED", "-w", "-fno-diagnostics-show-caret"};
  for (const std::string& define : Defines(settings, kResources, source.file))
    arguments.push_back("-D" + define);
  for (const std::string& folder : folders) arguments.push_back("-I" + folder.substr(0, folder.size() - 1));
  if (!planner.overlay.empty()) arguments.push_back("-I" + planner.overlay);
  const std::string stem = planner.UniqueName(Stem(source.path), ".res");
  const std::string flat = Stem(stem) + ".rcpp", object = stem + ".obj";
  planner.ninja.Build({"preprocess",
                       {flat},
                       {script},
                       {},
                       planner.generated,
                       {{"arguments", Description(ShellQuoted(arguments))},
                        {"description", Description("Compiling resources...")}}});
  planner.ninja.Build({"resources",
                       {object},
                       {flat},
                       copies.Read(),
                       {},
                       {{"description", Description(FilePart(source.path))}}});
  planner.plan.depfiles.push_back(flat + ".d");
  planner.objects.push_back(object);
}

// What is compiled: the source, or a copy of it whose numbers gcc's C can read. Messages name the source all the same.
std::string CompiledFile(Planner& planner, const VcSource& source) {
  if (planner.literals.empty() || LanguageOf(planner.settings, *source.file) != VcLanguage::C)
    return source.path;
  const std::string text = ReadFile(source.path);
  const std::string copy = WithNewLiterals(text);
  if (copy == text) return source.path;
  const std::string name = planner.Write(planner.UniqueName(Stem(source.path) + ".copy", ".c"),
                                         "#line 1 \"" + source.path + "\"\n" + copy);
  return planner.plan.places.folder + name;
}

// The name of the rule that compiles a source, written where no other source has the same.
std::string CompileRule(Planner& planner, const VcSource& source, bool isCopied, const std::string& overlay,
                        std::map<std::string, std::string>& rules) {
  std::vector<std::string> command;
  if (!planner.task.launcher.empty()) command.push_back(planner.task.launcher);
  const bool isC = LanguageOf(planner.settings, *source.file) == VcLanguage::C;
  command.push_back(isC ? planner.tools.c : planner.tools.cpp);
  for (std::string& each : CompilerArguments(planner.settings, *source.file, overlay)) {
    command.push_back(std::move(each));
  }
  if (isCopied) command.push_back("-iquote" + FolderPart(source.path));
  if (!isC && !planner.literals.empty()) command.insert(command.end(), {"-include", planner.literals});
  const std::string line = Description(ShellQuoted(command));
  std::string& name = rules[line];
  if (!name.empty()) return name;
  name = "compile" + std::to_string(rules.size());
  planner.ninja.Rule(name, {{"command", line + " -MMD -MF $out.d -c $in -o $out"}, {"depfile", "$out.d"}});
  return name;
}

}  // namespace

void PlanCustomSteps(Planner& planner) {
  const VcSettings& settings = planner.settings;
  bool ruled = false;
  for (const VcSource& source : planner.sources) {
    if (source.work != VcWork::Custom) continue;
    if (WineProgram().empty()) {
      planner.plan.errors.push_back(source.file->path + ": its custom build step cannot run: " + kNoWine);
      return;
    }
    if (!ruled) {
      planner.ninja.Rule("custom",
                         {{"command", "LC_ALL=" + std::string(kWineLocale) + " WINEDEBUG=-all $variables " +
                                          Description(ShellQuoted(WineProgram())) + " cmd /c $batch"},
                          {"restat", "1"}});
      ruled = true;
    }
    const std::string commands =
        settings.Said("VCCustomBuildTool", "CommandLine", source.file, VcPaths::ForCommands).value_or("");
    const Batch step = BatchFor(commands, settings.ProjectFolder());
    const std::string batch = planner.Write(planner.UniqueName("step", ".bat"), step.text);
    std::string variables;
    for (const auto& [name, value] : step.variables) variables += name + "=" + ShellQuoted(value) + " ";
    std::vector<std::string> outputs, needed{batch};
    for (const std::string& each :
         settings.List("VCCustomBuildTool", "Outputs", VcList::Folders, source.file)) {
      outputs.push_back(OutputPath(planner, each));
    }
    for (const std::string& each :
         settings.List("VCCustomBuildTool", "AdditionalDependencies", VcList::Folders, source.file)) {
      const std::string found = planner.finder.Find(settings.FullPath(each));
      if (!found.empty()) needed.push_back(found);
      if (!found.empty()) planner.plan.inputs.push_back(found);
    }
    if (outputs.empty()) continue;  // the product runs no step that makes nothing
    for (const std::string& line : CommandLines(commands)) planner.plan.notes.push_back("  " + line);
    planner.ninja.Build(
        {"custom",
         outputs,
         {source.path},
         needed,
         {},
         {{"batch", batch},
          {"variables", Description(variables)},
          {"description", Description("Performing Custom Build Step on " + source.file->path)}}});
    planner.generated.insert(planner.generated.end(), outputs.begin(), outputs.end());
    planner.plan.made.insert(planner.plan.made.end(), outputs.begin(), outputs.end());
  }
}

void PlanResources(Planner& planner) {
  bool ruled = false;
  for (const VcSource& source : planner.sources) {
    if (source.work != VcWork::Resource) continue;
    if (planner.settings.Type() == VcType::StaticLibrary) continue;  // the librarian takes no resources
    if (!std::exchange(ruled, true)) {
      planner.ninja.Rule("preprocess", {{"command", Description(ShellQuoted(planner.tools.c)) +
                                                        " $arguments -MMD -MF $out.d $in -o $out"},
                                        {"depfile", "$out.d"}});
      // The script is preprocessed already: windres would else have a shell read its name and defines.
      planner.ninja.Rule("resources", {{"command", Description(ShellQuoted(planner.tools.windres)) +
                                                       " --preprocessor=/bin/cat -c 65001 -i $in -o $out"}});
    }
    PlanScript(planner, source);
  }
}

void PlanCompiling(Planner& planner) {
  std::map<std::string, std::string> rules;                         // by the command
  std::map<std::pair<VcLanguage, std::string>, std::string> usual;  // of sources that have nothing special
  for (const VcSource& source : planner.sources) {
    if (source.work != VcWork::Compile) continue;
    const auto own = planner.ownOverlays.find(source.path);
    const std::string& overlay = own == planner.ownOverlays.end() ? planner.overlay : own->second;
    const bool special = planner.settings.IsSpecial(*source.file);
    std::string& known = usual[{LanguageOf(planner.settings, *source.file), overlay}];
    const std::string compiled = CompiledFile(planner, source);
    const bool isCopied = compiled != source.path;
    const std::string rule =
        special || isCopied || known.empty() ? CompileRule(planner, source, isCopied, overlay, rules) : known;
    if (!special && !isCopied) known = rule;
    const std::string object = planner.UniqueName(Stem(source.path), ".obj");
    planner.ninja.Build({rule,
                         {object},
                         {compiled},
                         {},
                         planner.generated,
                         {{"description", Description(FilePart(source.path))}}});
    planner.plan.depfiles.push_back(object + ".d");
    planner.objects.push_back(object);
  }
}

}  // namespace qx
