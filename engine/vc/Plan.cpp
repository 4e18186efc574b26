#include "engine/vc/Plan.h"

#include <algorithm>
#include <array>
#include <set>

#include "engine/CommandSteps.h"
#include "engine/vc/CompilerArguments.h"
#include "engine/vc/Planner.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

struct Extension {
  std::string_view extension;
  VcWork work;
  std::string_view tool;
};
constexpr std::array kExtensions = {
    Extension{".c", VcWork::Compile, ""},      Extension{".cpp", VcWork::Compile, ""},
    Extension{".cxx", VcWork::Compile, ""},    Extension{".cc", VcWork::Compile, ""},
    Extension{".rc", VcWork::Resource, ""},    Extension{".lib", VcWork::Link, ""},
    Extension{".obj", VcWork::Link, ""},       Extension{".idl", VcWork::Unknown, "MIDL"},
    Extension{".odl", VcWork::Unknown, "MIDL"}};

struct Tool {
  std::string_view name;
  VcWork work;
};
constexpr std::array kTools = {
    Tool{"VCCLCompilerTool", VcWork::Compile},           Tool{"VCResourceCompilerTool", VcWork::Resource},
    Tool{"VCCustomBuildTool", VcWork::Custom},           Tool{"VCMIDLTool", VcWork::Unknown},
    Tool{"VCManagedResourceCompilerTool", VcWork::None}, Tool{"VCXMLDataGeneratorTool", VcWork::None},
    Tool{"VCWebServiceProxyGeneratorTool", VcWork::None}};

// By the tool that the file's own settings name, else by its extension.
void SetWork(const VcSettings& settings, VcSource& source) {
  const VcFile& file = *source.file;
  if (settings.IsExcluded(file)) return;
  source.tool = settings.ToolOf(file);
  if (!source.tool.empty()) {
    const auto known = std::find_if(kTools.begin(), kTools.end(),
                                    [&](const Tool& each) { return each.name == source.tool; });
    source.work = known == kTools.end() ? VcWork::Unknown : known->work;
    const bool isIdle = source.work == VcWork::Custom &&
                        CommandLines(settings.Text("VCCustomBuildTool", "CommandLine", &file)).empty();
    if (isIdle) source.work = VcWork::None;
    return;
  }
  for (const Extension& each : kExtensions) {
    if (!SameText(ExtensionOf(file.path), each.extension)) continue;
    source.work = each.work;
    source.tool = each.tool;
  }
  // The project's .rules files say how these are built.
  if (HasExtension(file.path, ".asm") && !settings.Project().toolFiles.empty()) {
    source.work = VcWork::Unknown;
    source.tool = settings.Project().toolFiles.front();
  }
}

std::string Joined(const std::vector<std::string>& items, std::size_t most) {
  std::string all;
  for (std::size_t at = 0; at < items.size() && at < most; ++at) all += (at == 0 ? "" : ", ") + items[at];
  if (items.size() > most) all += " and " + std::to_string(items.size() - most) + " more";
  return all;
}

// The path with those of its folders that are there named as they are on disk.
std::string NameOnDisk(PathFinder& finder, const std::string& path) {
  std::string found = finder.Find(path);
  if (!found.empty()) return found;
  const bool isFolder = IsDelimiter(path.back());
  const std::string trimmed = isFolder ? path.substr(0, path.size() - 1) : path;
  const std::string above = FolderPart(trimmed);
  if (above.empty() || above.size() >= trimmed.size()) return path;
  return NameOnDisk(finder, above) + FilePart(trimmed) + (isFolder ? "/" : "");
}

// A name that means two files needs a folder of forwarding headers for each meaning. The sources to which it
// means the first one share the general folder.
void SeparateOverlays(Planner& planner, const std::vector<std::string>& folders, const IncludeScan& all) {
  std::map<std::map<std::string, std::string>, std::string> written{{all.Forwards(), planner.overlay}};
  for (const VcSource& source : planner.sources) {
    if (source.work != VcWork::Compile) continue;
    IncludeScan scan(folders, planner.tools.includeFolders);
    scan.Add(source.path);
    std::map<std::string, std::string> forwards = all.Forwards();
    for (const auto& [name, target] : scan.Forwards()) forwards[name] = target;
    const auto [place, isNew] = written.try_emplace(std::move(forwards));
    if (isNew) {
      place->second = WriteForwards(place->first,
                                    planner.plan.places.folder + "include" + std::to_string(written.size()));
    }
    planner.ownOverlays[source.path] = place->second;
  }
}

// gcc's C++ takes them as literals of one's own making; its C does not.
constexpr std::string_view kLiterals =
    "constexpr long long operator\"\"i64(unsigned long long v) { return static_cast<long long>(v); }\n"
    "constexpr long long operator\"\"I64(unsigned long long v) { return static_cast<long long>(v); }\n"
    "constexpr unsigned long long operator\"\"ui64(unsigned long long v) { return v; }\n"
    "constexpr unsigned long long operator\"\"UI64(unsigned long long v) { return v; }\n";

// What every source's #include lines need, found once for all of them.
void ScanIncludes(Planner& planner) {
  const VcSettings& settings = planner.settings;
  std::vector<std::string> folders = IncludeFolders(settings, "VCCLCompilerTool", nullptr);
  for (const VcSource& source : planner.sources) {
    if (source.work != VcWork::Compile || !settings.IsSpecial(*source.file)) continue;
    for (std::string& folder : IncludeFolders(settings, "VCCLCompilerTool", source.file)) {
      if (std::find(folders.begin(), folders.end(), folder) == folders.end()) folders.push_back(folder);
    }
  }
  IncludeScan scan(folders, planner.tools.includeFolders);
  for (const VcSource& source : planner.sources) {
    if (source.work != VcWork::Compile) continue;
    scan.Add(source.path);
    for (const std::string& header : ForcedIncludes(settings, *source.file)) {
      scan.AddForced(header, settings.ProjectFolder());
    }
  }
  planner.overlay = WriteForwards(scan.Forwards(), planner.plan.places.folder + "include");
  if (!scan.Ambiguous().empty()) SeparateOverlays(planner, folders, scan);
  if (scan.HasOldLiterals()) {
    planner.literals = planner.plan.places.folder + planner.Write("literals.h", kLiterals);
  }
  planner.pragmaLibraries = scan.Libraries();
  const std::vector<std::string> defines = Defines(settings, "VCCLCompilerTool", nullptr);
  const bool unicode = std::find(defines.begin(), defines.end(), "_UNICODE") != defines.end();
  planner.wideEntry = scan.HasWideMain() || (unicode && scan.HasGenericMain());
}

// Empty: the linker writes none.
std::string MapFile(const VcSettings& settings) {
  const bool links = settings.Type() == VcType::Application || settings.Type() == VcType::DynamicLibrary;
  if (!links || !settings.Flag("VCLinkerTool", "GenerateMapFile").value_or(false)) return {};
  const std::string name = settings.Text("VCLinkerTool", "MapFileName");
  if (!name.empty()) return settings.FullPath(name);
  const std::string output = settings.OutputFile();
  return output.substr(0, output.size() - ExtensionOf(output).size()) + ".map";
}

}  // namespace

std::string Planner::UniqueName(const std::string& stem, const std::string& extension) {
  const int number = ++names_[LowerCase(stem + extension)];
  return number == 1 ? stem + extension : UniqueName(stem + "_" + std::to_string(number), extension);
}

std::string Planner::Write(const std::string& name, std::string_view bytes) {
  ReplaceFile(plan.places.folder + name, bytes);
  return name;
}

void FindSources(Planner& planner) {
  std::vector<std::string> missing;
  for (const VcFile& file : planner.settings.Project().files) {
    VcSource source{&file, VcWork::None, {}, {}};
    SetWork(planner.settings, source);
    if (source.work == VcWork::None) continue;
    const std::string written = planner.settings.Expand(file.path, &file);
    source.path = planner.settings.FullPath(written);
    if (source.work == VcWork::Unknown) {
      planner.plan.errors.push_back(file.path + " needs the tool " + source.tool +
                                    ", which there is not outside Windows");
    } else if (!planner.finder.FindFile(source.path)) {
      if (source.work != VcWork::Link) missing.push_back(file.path);
    }
    planner.sources.push_back(std::move(source));
  }
  if (!missing.empty()) planner.plan.errors.push_back("no such source: " + Joined(missing, 5));
}

std::vector<std::string> VcPlaces::Files() const {
  std::vector<std::string> files;
  for (const std::string& file : {output, importLibrary, map}) {
    if (!file.empty()) files.push_back(file);
  }
  return files;
}

VcPlaces PlacesOf(const VcSettings& settings) {
  PathFinder finder;
  const auto onDisk = [&](const std::string& path) { return path.empty() ? path : NameOnDisk(finder, path); };
  std::string name = settings.ProjectName();
  std::replace_if(name.begin(), name.end(), IsDelimiter, '_');  // or it would name a folder elsewhere
  return {onDisk(settings.IntermediateFolder()) + name + ".objects/", onDisk(settings.OutputFile()),
          onDisk(settings.ImportLibrary()), onDisk(MapFile(settings))};
}

VcPlan PlanVisualCpp(const VcSettings& settings, const VcPlaces& places, const ProjectTask& task,
                     const Toolchain& tools) {
  Planner planner(settings, task, tools);
  VcPlan& plan = planner.plan;
  plan.places = places;
  FindSources(planner);
  if (!plan.errors.empty()) return plan;
  CreateFolders(plan.places.folder);
  for (const std::string& sheet : settings.Sheets()) plan.inputs.push_back(planner.finder.Find(sheet));
  plan.inputs.insert(plan.inputs.end(), {task.file, tools.c, tools.cpp});
  for (const VcSource& source : planner.sources) plan.inputs.push_back(source.path);
  ScanIncludes(planner);
  PlanCustomSteps(planner);
  PlanResources(planner);
  PlanCompiling(planner);
  planner.ninja.Build({"phony", {kObjectsTarget}, planner.objects, planner.generated, {}, {}});
  PlanLinking(planner);
  plan.ninja = planner.ninja.Text();
  plan.objects = std::move(planner.objects);
  return plan;
}

}  // namespace qx
