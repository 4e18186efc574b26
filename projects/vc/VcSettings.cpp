#include "projects/vc/VcSettings.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr std::string_view kCustomTool = "VCCustomBuildTool";
constexpr std::size_t kDeepestSheet = 16;
constexpr std::size_t kMostSheets = 256;

// The product's own sheets lie in this folder of its own. What they set is of no matter to another compiler,
// but for the define by which a project that was converted from an older version is known.
constexpr std::string_view kOwnSheetFolder = "vcprojectdefaults";
struct OwnSheet {
  std::string_view name, defines;
};
constexpr std::array kOwnSheets = {OwnSheet{"upgradefromvc60.vsprops", "_VC80_UPGRADE=0x0600"},
                                   OwnSheet{"upgradefromvc70.vsprops", "_VC80_UPGRADE=0x0700"},
                                   OwnSheet{"upgradefromvc71.vsprops", "_VC80_UPGRADE=0x0710"}};

// None: it is not one of the product's own.
std::optional<VcConfiguration> OwnSheetLayer(std::string_view written) {
  const std::string folded = LowerCase(written);
  VcConfiguration layer;
  for (const OwnSheet& sheet : kOwnSheets) {
    if (sheet.name != FilePart(folded)) continue;
    layer.tools["VCCLCompilerTool"]["PreprocessorDefinitions"] = sheet.defines;
    return layer;
  }
  if (folded.find(kOwnSheetFolder) == std::string::npos) return std::nullopt;
  return layer;
}

constexpr std::string_view kDefaultLibraries =
    "kernel32.lib user32.lib gdi32.lib winspool.lib comdlg32.lib advapi32.lib shell32.lib ole32.lib "
    "oleaut32.lib uuid.lib odbc32.lib odbccp32.lib";

std::string Stem(std::string_view path) {
  const std::string file = FilePart(path);
  return file.substr(0, file.size() - ExtensionOf(file).size());
}

const std::string* ValueIn(const VcValues& values, std::string_view name) {
  const auto found = values.find(std::string(name));
  return found == values.end() ? nullptr : &found->second;
}

std::string ForCommands(std::string path) {
  if (SystemPassesOverSpelling()) return path;
  std::replace(path.begin(), path.end(), '/', '\\');
  return path.starts_with('\\') ? "Z:" + path : path;
}

// What holds where neither the project nor a sheet says anything.
VcConfiguration Defaults(VcType type) {
  VcConfiguration defaults;
  defaults.values = {{"OutputDirectory", "$(ConfigurationName)"},
                     {"IntermediateDirectory", "$(ConfigurationName)"}};
  VcValues& linker = defaults.tools["VCLinkerTool"];
  linker["OutputFile"] =
      type == VcType::DynamicLibrary ? "$(OutDir)/$(ProjectName).dll" : "$(OutDir)/$(ProjectName).exe";
  linker["AdditionalDependencies"] = kDefaultLibraries;
  defaults.tools["VCLibrarianTool"]["OutputFile"] = "$(OutDir)/$(ProjectName).lib";
  return defaults;
}

// "a $(Inherit) b" with what is inherited in that place; `complete`: a $(NoInherit) ended it.
std::string Inherit(const std::string& own, const std::string& inherited, VcList kind) {
  const std::string folded = LowerCase(own);
  constexpr std::string_view kInherit = "$(inherit)", kNoInherit = "$(noinherit)";
  const std::string_view separator = kind == VcList::Folders || kind == VcList::Defines ? ";" : " ";
  if (const std::size_t at = folded.find(kNoInherit); at != std::string::npos) {
    return own.substr(0, at) + own.substr(at + kNoInherit.size());
  }
  if (const std::size_t at = folded.find(kInherit); at != std::string::npos) {
    return own.substr(0, at) + inherited + own.substr(at + kInherit.size());
  }
  if (own.empty() || inherited.empty()) return own + inherited;
  return own + std::string(separator) + inherited;
}

bool IsName(const VcConfiguration& configuration, const VcPlace& place) {
  return SameText(configuration.name, place.configuration) &&
         (place.platform.empty() || SameText(configuration.platform, place.platform));
}

}  // namespace

std::optional<VcType> VcTypeOf(std::string_view text) {
  switch (ToInteger(TrimView(text)).value_or(-1)) {
    case 0:
      return VcType::Makefile;
    case 1:
      return VcType::Application;
    case 2:
      return VcType::DynamicLibrary;
    case 4:
      return VcType::StaticLibrary;
    case 10:
      return VcType::Utility;
    default:
      return std::nullopt;
  }
}

VcPlace PlaceOnDisk(std::string projectFile, std::string solutionFile, std::string configuration,
                    std::string platform) {
  VcPlace place{
      std::move(projectFile), std::move(solutionFile), std::move(configuration), std::move(platform), {}, {}};
  place.environment = [](const std::string& name) -> std::optional<std::string> {
    const char* value = std::getenv(name.c_str());
    if (value == nullptr) value = std::getenv(UpperCase(name).c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
  };
  place.readSheet = [](const std::string& path) -> std::optional<std::string> {
    const std::string found = FindExisting(path);
    std::string bytes;
    if (found.empty() || !TryReadFile(found, bytes)) return std::nullopt;
    return bytes;
  };
  return place;
}

VcSettings::VcSettings(VcProject project, VcPlace place)
    : project_(std::move(project)),
      place_(std::move(place)),
      folder_(FolderPart(place_.projectFile)),
      native_(place_.environment),
      commands_(place_.environment) {
  name_ = project_.name.empty() ? Stem(place_.projectFile) : project_.name;
  const auto own = std::find_if(project_.configurations.begin(), project_.configurations.end(),
                                [&](const VcConfiguration& each) { return IsName(each, place_); });
  if (own == project_.configurations.end()) {
    throw Exception("it has no configuration \"" + place_.configuration +
                    (place_.platform.empty() ? "" : "|" + place_.platform) + "\"");
  }
  place_.configuration = own->name;
  place_.platform = own->platform;
  SetMacros();
  const std::string* sheets = ValueIn(own->values, "InheritedPropertySheets");
  std::vector<std::string> open;
  if (sheets != nullptr) ReadSheets(*sheets, folder_, open);
  layers_.push_back(*own);
  std::reverse(layers_.begin(), layers_.end());
  const std::string type = Attribute("ConfigurationType");
  const auto known = VcTypeOf(type.empty() ? "1" : type);
  if (!known) throw Exception("its ConfigurationType \"" + type + "\" is not known");
  type_ = *known;
  layers_.push_back(Defaults(type_));
  SetTarget();
}

// Sheets that are named later count more than earlier ones, and a sheet more than those it inherits itself.
// Until all are read, layers_ stands the other way round.
void VcSettings::ReadSheets(const std::string& list, const std::string& folder,
                            std::vector<std::string>& open) {
  if (open.size() >= kDeepestSheet) throw Exception("its property sheets inherit one another too deep");
  for (const std::string& written : SplitVcList(list, VcList::Folders)) {
    const std::string name = native_.Expand(written);  // one that is unknown shows in the path
    const std::string path = ExpandPath(folder, name);
    std::optional<std::string> bytes = place_.readSheet ? place_.readSheet(path) : std::nullopt;
    if (!bytes) {
      std::optional<VcConfiguration> own = OwnSheetLayer(written);
      if (!own) throw Exception("its property sheet \"" + written + "\" is not there (" + path + ")");
      layers_.push_back(std::move(*own));
      continue;
    }
    if (std::find(open.begin(), open.end(), path) != open.end()) {
      throw Exception("its property sheet \"" + written + "\" inherits itself");
    }
    if (sheets_.size() >= kMostSheets) throw Exception("it has too many property sheets");
    sheets_.push_back(path);
    VcSheet sheet;
    try {
      sheet = ReadVcSheet(*bytes);
    } catch (const Exception& error) {
      throw Exception("its property sheet " + path + " cannot be read: " + error.Message());
    }
    open.push_back(path);
    if (const std::string* inner = ValueIn(sheet.values, "InheritedPropertySheets")) {
      ReadSheets(*inner, FolderPart(path), open);
    }
    open.pop_back();
    for (const auto& [macro, value] : sheet.macros) {
      native_.Set(macro, value);
      commands_.Set(macro, value);
    }
    VcConfiguration& layer = layers_.emplace_back();
    layer.values = std::move(sheet.values);
    layer.tools = std::move(sheet.tools);
  }
}

// $(ProjectPath), $(ProjectDir), $(ProjectFileName), $(ProjectExt) and the like of a path; of the name
// without the extension too where the stem has no name of its own.
void VcSettings::SetPath(const char* stem, const std::string& path) {
  const std::string name(stem);
  const auto set = [&](const char* part, const std::string& value) {
    native_.Set(name + part, value);
    commands_.Set(name + part, ForCommands(value));
  };
  set("Path", path);
  set("Dir", FolderPart(path));
  set("FileName", FilePart(path));
  set("Ext", ExtensionOf(path));
  set("Name", Stem(path));
}

void VcSettings::SetMacros() {
  // By itself a project is its own solution, as when it is opened alone.
  const bool alone = place_.solutionFile.empty();
  SetPath("Solution", alone ? folder_ + Stem(place_.projectFile) + ".sln" : place_.solutionFile);
  SetPath("Project", place_.projectFile);
  SetPath("Input", place_.projectFile);
  for (VcMacros* macros : {&native_, &commands_}) {
    macros->Set("ProjectName", name_);
    macros->Set("InputName", name_);
    macros->Set("ConfigurationName", place_.configuration);
    macros->Set("PlatformName", place_.platform);
    macros->Set("ParentName", name_);
    macros->Set("RootNameSpace", project_.rootNamespace);
    macros->Set("Inherit", "");
    macros->Set("NoInherit", "");
  }
}

void VcSettings::SetTarget() {
  for (VcMacros* macros : {&native_, &commands_}) {
    macros->Set("IntDir", Written("IntermediateDirectory"));
    macros->Set("OutDir", Written("OutputDirectory"));
  }
  const std::string target = OutputFile();
  if (!target.empty()) SetPath("Target", target);
}

const VcConfiguration* VcSettings::SpecialOf(const VcFile& file) const {
  const auto found = std::find_if(file.configurations.begin(), file.configurations.end(),
                                  [&](const VcConfiguration& each) { return IsName(each, place_); });
  return found == file.configurations.end() ? nullptr : &*found;
}

void VcSettings::ForEachTool(std::string_view tool, const VcFile* file,
                             const std::function<bool(const VcValues&)>& visit) const {
  const std::string name(tool);
  const auto goOn = [&](const VcTools& tools) {
    const auto found = tools.find(name);
    return found == tools.end() || visit(found->second);
  };
  const VcConfiguration* special = file == nullptr ? nullptr : SpecialOf(*file);
  if (special != nullptr && !goOn(special->tools)) return;
  for (const VcConfiguration& layer : layers_) {
    if (!goOn(layer.tools)) return;
  }
}

std::string VcSettings::Written(std::string_view name) const {
  for (const VcConfiguration& layer : layers_) {
    const std::string* value = ValueIn(layer.values, name);
    if (value != nullptr && !value->empty()) return *value;
  }
  return {};
}

std::string VcSettings::Attribute(std::string_view name) const { return Expand(Written(name)); }

std::optional<std::string> VcSettings::Said(std::string_view tool, std::string_view name, const VcFile* file,
                                            VcPaths paths) const {
  std::optional<std::string> said;
  ForEachTool(tool, file, [&](const VcValues& values) {
    const std::string* value = ValueIn(values, name);
    if (value != nullptr) said = Expand(*value, file, paths);
    return value == nullptr;
  });
  return said;
}

std::string VcSettings::Text(std::string_view tool, std::string_view name, const VcFile* file) const {
  return Said(tool, name, file).value_or("");
}

std::optional<bool> VcSettings::Flag(std::string_view tool, std::string_view name, const VcFile* file) const {
  const auto said = Said(tool, name, file);
  if (!said || said->empty()) return std::nullopt;
  return SameText(*said, "true") || *said == "1" || *said == "-1";
}

std::vector<std::string> VcSettings::List(std::string_view tool, std::string_view name, VcList kind,
                                          const VcFile* file) const {
  std::vector<const std::string*> levels;  // the most special first
  ForEachTool(tool, file, [&](const VcValues& values) {
    const std::string* value = ValueIn(values, name);
    if (value != nullptr && !value->empty()) levels.push_back(value);
    return true;
  });
  std::string all;
  for (auto level = levels.rbegin(); level != levels.rend(); ++level) all = Inherit(**level, all, kind);
  return SplitVcList(Expand(all, file), kind);
}

bool VcSettings::IsExcluded(const VcFile& file) const {
  const VcConfiguration* special = SpecialOf(file);
  const std::string* said = special == nullptr ? nullptr : ValueIn(special->values, "ExcludedFromBuild");
  return said != nullptr && (SameText(*said, "true") || *said == "1" || *said == "-1");
}

bool VcSettings::IsSpecial(const VcFile& file) const {
  const VcConfiguration* special = SpecialOf(file);
  return special != nullptr && std::any_of(special->tools.begin(), special->tools.end(),
                                           [](const auto& each) { return !each.second.empty(); });
}

std::string VcSettings::ToolOf(const VcFile& file) const {
  const VcConfiguration* special = SpecialOf(file);
  if (special == nullptr) return {};
  const auto found = std::find_if(special->tools.begin(), special->tools.end(),
                                  [](const auto& each) { return each.first != kCustomTool; });
  if (found != special->tools.end()) return found->first;
  return special->tools.empty() ? std::string() : std::string(kCustomTool);
}

std::string VcSettings::Expand(std::string_view text, const VcFile* file, VcPaths paths) const {
  if (text.find("$(") == std::string_view::npos) return std::string(text);
  const VcMacros& general = paths == VcPaths::Native ? native_ : commands_;
  if (file == nullptr) return general.Expand(text, unknown_);
  VcMacros macros(&general);
  const std::string path = FullPath(file->path);
  const auto shown = [&](const std::string& part) {
    return paths == VcPaths::Native ? part : ForCommands(part);
  };
  macros.Set("InputPath", shown(path));
  macros.Set("InputDir", shown(FolderPart(path)));
  macros.Set("InputFileName", FilePart(path));
  macros.Set("InputExt", ExtensionOf(path));
  macros.Set("InputName", Stem(path));
  if (!file->filters.empty()) macros.Set("ParentName", file->filters.back());
  return macros.Expand(text, unknown_);
}

std::string VcSettings::FullPath(std::string_view text) const {
  std::string_view path = TrimView(text);
  if (path.size() >= 2 && path.front() == '"' && path.back() == '"') path = path.substr(1, path.size() - 2);
  return ExpandPath(folder_, path);
}

std::string VcSettings::OutputFolder() const { return WithTrailingDelimiter(FullPath(Expand("$(OutDir)"))); }
std::string VcSettings::IntermediateFolder() const {
  return WithTrailingDelimiter(FullPath(Expand("$(IntDir)")));
}

std::string VcSettings::OutputFile() const {
  if (type_ == VcType::Utility) return {};
  if (type_ == VcType::Makefile) {
    const std::string output = Text("VCNMakeTool", "Output");
    return output.empty() ? std::string() : FullPath(output);
  }
  const char* tool = type_ == VcType::StaticLibrary ? "VCLibrarianTool" : "VCLinkerTool";
  std::string output = Text(tool, "OutputFile");
  // An empty name, or one of unknown macros alone, is none: the type's own then counts.
  if (Trim(output).empty()) output = Expand(layers_.back().tools.at(tool).at("OutputFile"));
  return FullPath(output);
}

std::string VcSettings::ImportLibrary() const {
  if (type_ != VcType::DynamicLibrary || Flag("VCLinkerTool", "IgnoreImportLibrary").value_or(false))
    return {};
  const std::string written = Text("VCLinkerTool", "ImportLibrary");
  if (!Trim(written).empty()) return FullPath(written);
  const std::string output = OutputFile();
  return FolderPart(output) + Stem(output) + ".lib";
}

VcSettings OpenVcProject(const VcPlace& place) {
  try {
    std::string bytes = qx::ReadFile(place.projectFile);
    return VcSettings(ReadVcProject(bytes), place);
  } catch (const Exception& error) {
    const std::string& message = error.Message();
    if (message.find(place.projectFile) != std::string::npos) throw;
    throw Exception(place.projectFile + ": " + message);
  }
}

VcOutput OutputOfVcProject(const VcPlace& place) {
  VcOutput output;
  try {
    const VcSettings settings = OpenVcProject(place);
    output.path = settings.OutputFile();
    output.importLibrary = settings.ImportLibrary();
    if (output.path.empty()) output.reason = "the project makes no program or library";
    if (settings.UnknownMacros().empty()) return output;
    output = {};
    output.reason = "its path depends on $(" + *settings.UnknownMacros().begin() + "), which is not set";
  } catch (const Exception& error) {
    output = {};
    output.reason = error.Message();
  }
  return output;
}

}  // namespace qx
