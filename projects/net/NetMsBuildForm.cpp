// Project files of Visual Studio 2005: MSBuild's, evaluated as MSBuild does: first all properties from top to
// bottom through the imports, then the items. Targets are not run.
#include <algorithm>
#include <map>
#include <memory>
#include <set>

#include "platform/Texts.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"
#include "projects/net/MsBuildProperties.h"
#include "projects/net/NetForms.h"
#include "projects/net/NetOutput.h"

namespace qx {
namespace {

constexpr int kDeepest = 16;            // imports, and Choose elements, inside each other
constexpr std::size_t kMostFiles = 64;  // that one project imports
constexpr int kMostImports = 1000;

// The product's own rules. What they set besides is none of an output's place.
constexpr const char* kProductTargets[] = {
    "microsoft.csharp.targets",
    "microsoft.visualbasic.targets",
    "microsoft.visualjsharp.targets",
    "microsoft.webapplication.targets",
    "microsoft.compactframework.csharp.targets",
    "microsoft.compactframework.visualbasic.targets",
};
constexpr const char* kProductFolders[] = {"$(msbuildbinpath)", "$(msbuildtoolspath)",
                                           "$(msbuildextensionspath)"};

bool IsProductTargets(const std::string& written) {
  const std::string lower = LowerCase(written);
  return std::ranges::any_of(kProductFolders,
                             [&](const char* folder) { return lower.starts_with(folder); }) &&
         std::ranges::any_of(kProductTargets, [&](const char* name) { return FilePart(lower) == name; });
}

using Texts = std::string NetProject::*;
using Flags = bool NetProject::*;
template <class Member>
struct Setting {
  const char* property;
  Member member;
};
constexpr Setting<Texts> kTexts[] = {{"ProjectGuid", &NetProject::guid},
                                     {"ProductVersion", &NetProject::productVersion},
                                     {"RootNamespace", &NetProject::rootNamespace},
                                     {"StartupObject", &NetProject::startupObject},
                                     {"ApplicationIcon", &NetProject::icon},
                                     {"DocumentationFile", &NetProject::documentationFile},
                                     {"PlatformTarget", &NetProject::platformTarget},
                                     {"AssemblyOriginatorKeyFile", &NetProject::keyFile},
                                     {"KeyContainerName", &NetProject::keyContainer},
                                     {"PreBuildEvent", &NetProject::preBuildEvent},
                                     {"PostBuildEvent", &NetProject::postBuildEvent},
                                     {"RunPostBuildEvent", &NetProject::runPostBuildEvent},
                                     {"DefineConstants", &NetProject::defines},
                                     {"NoWarn", &NetProject::noWarn},
                                     {"OptionStrict", &NetProject::optionStrict},
                                     {"OptionExplicit", &NetProject::optionExplicit},
                                     {"OptionCompare", &NetProject::optionCompare},
                                     {"CodePage", &NetProject::codePage}};
constexpr Setting<Flags> kFlags[] = {{"DebugSymbols", &NetProject::debug},
                                     {"Optimize", &NetProject::optimise},
                                     {"AllowUnsafeBlocks", &NetProject::allowUnsafe},
                                     {"CheckForOverflowUnderflow", &NetProject::checkOverflow},
                                     {"NoStdLib", &NetProject::noStandardLibrary},
                                     {"TreatWarningsAsErrors", &NetProject::warningsAsErrors},
                                     {"DelaySign", &NetProject::delaySign},
                                     {"SignAssembly", &NetProject::sign}};

constexpr const char* kFileItems[] = {"Compile", "EmbeddedResource", "Content", "None"};

// What events may name that only the build knows, or that is another path there: these stay as they are written.
constexpr const char* kEventMacros[] = {
    "TargetPath",   "TargetDir",       "ProjectDir",       "ProjectPath",       "SolutionDir",
    "SolutionPath", "SolutionName",    "SolutionFileName", "SolutionExt",       "DevEnvDir",
    "ProjectName",  "ProjectFileName", "ProjectExt",       "ConfigurationName", "PlatformName"};

bool IsEvent(std::string_view property) {
  return SameText(property, "PreBuildEvent") || SameText(property, "PostBuildEvent");
}

// "%24" is a "$" that nothing is looked for behind.
std::string WithEventMacrosKept(const std::string& text) {
  std::string out;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::string_view rest = std::string_view(text).substr(at);
    const std::size_t end = rest.starts_with("$(") ? rest.find(')') : std::string_view::npos;
    const bool isKept =
        end != std::string_view::npos && std::ranges::any_of(kEventMacros, [&](const char* macro) {
          return SameText(macro, rest.substr(2, end - 2));
        });
    out += isKept ? std::string("%24") : std::string(1, text[at]);
  }
  return out;
}

class MsBuildReader {
 public:
  MsBuildReader(const NetSelection& selection, const ReadNetFile& read, NetProject& project)
      : selection_(selection), read_(read), project_(project), properties_(FolderPart(project.file)) {}

  void Read(const XmlElement& root) {
    FixProperties();
    Walk(root, project_.file, Pass::Properties, 0);
    if (!sawProductTargets_) properties_.DoubtAll("it imports no targets of the product");
    Walk(root, project_.file, Pass::Items, 0);
    TakeSettings();
  }

 private:
  enum class Pass { Properties, Items };
  struct Imported {
    std::string bytes;
    XmlDocument document;
  };

  void FixProperties() {
    const std::string file = FilePart(project_.file);
    const std::string folder = FolderPart(project_.file);
    const std::string extension = ExtensionOf(file);
    properties_.Fix("MSBuildProjectFile", file);
    properties_.Fix("MSBuildProjectExtension", extension);
    properties_.Fix("MSBuildProjectName", std::string_view(file).substr(0, file.size() - extension.size()));
    properties_.Fix("MSBuildProjectFullPath", project_.file);
    properties_.Fix("MSBuildProjectDirectory",
                    std::string_view(folder).substr(0, folder.empty() ? 0 : folder.size() - 1));
    for (const char* name :
         {"OS", "ProgramFiles", "MSBuildBinPath", "MSBuildToolsPath", "MSBuildExtensionsPath",
          "MSBuildToolsVersion", "SolutionDir", "SolutionPath", "SolutionName", "DevEnvDir"}) {
      properties_.Doubt(name, "$(" + std::string(name) + ") depends on where it is built");
    }
    if (!selection_.solutionFile.empty()) {
      properties_.Fix("SolutionDir", FolderPart(selection_.solutionFile));
      properties_.Fix("SolutionPath", selection_.solutionFile);
    }
    for (const auto& [name, value] : selection_.properties) properties_.Fix(name, value);
    if (!selection_.configuration.empty()) properties_.Fix("Configuration", selection_.configuration);
    if (!selection_.platform.empty()) properties_.Fix("Platform", NetPlatformName(selection_.platform));
  }

  // Decides an element's condition. Unknown counts as met, with the doubt.
  bool IsMet(const XmlElement& element, std::string& doubt) {
    const std::string condition = element.Attribute("Condition");
    if (pass_ == Pass::Properties) NoteConfiguration(condition);
    return properties_.Decide(condition, doubt) != Truth::No;
  }

  // " '$(Configuration)|$(Platform)' == 'Debug|AnyCPU' " names a configuration.
  void NoteConfiguration(const std::string& condition) {
    const std::string lower = LowerCase(condition);
    const std::size_t left = lower.find("'$(configuration)|$(platform)'");
    const std::size_t equals = lower.find("==", left == std::string::npos ? lower.size() : left);
    const std::size_t begin = condition.find('\'', std::min(equals, lower.size()));
    if (begin == std::string::npos) return;
    const std::size_t end = condition.find('\'', begin + 1);
    if (end == std::string::npos) return;
    std::string name = condition.substr(begin + 1, end - begin - 1);
    const auto same = [&name](const std::string& known) { return SameText(known, name); };
    if (std::ranges::none_of(project_.configurations, same))
      project_.configurations.push_back(std::move(name));
  }

  void Walk(const XmlElement& root, const std::string& file, Pass pass, int depth) {
    pass_ = pass;
    for (XmlElement at = root.FirstChild(); at; at = at.NextSibling()) {
      const std::string name = at.Name();
      if (name == "Import") {
        Import(at, file, depth);
      } else {
        Take(at, name, "", 0);
      }
    }
  }

  void Take(const XmlElement& element, const std::string& name, const std::string& doubtAbove, int depth) {
    if (name == "Choose") return Choose(element, doubtAbove, depth);
    if (name == "PropertyGroup" && pass_ == Pass::Properties) return TakeProperties(element, doubtAbove);
    if (name == "ItemGroup" && pass_ == Pass::Items) return TakeItems(element);
    if (pass_ == Pass::Properties) NoteIfUnfamiliar(project_, name);
  }

  void Choose(const XmlElement& choose, const std::string& doubtAbove, int depth) {
    if (depth >= kDeepest) {
      return properties_.DoubtAll("its Choose elements are nested too deeply");
    }
    std::string doubts = doubtAbove;
    for (XmlElement branch = choose.FirstChild(); branch; branch = branch.NextSibling()) {
      const std::string name = branch.Name();
      std::string doubt;
      if (name != "Otherwise" && (name != "When" || !IsMet(branch, doubt))) continue;
      if (doubts.empty()) doubts = doubt;
      for (XmlElement at = branch.FirstChild(); at; at = at.NextSibling())
        Take(at, at.Name(), doubts, depth + 1);
      if (doubt.empty()) return;  // the first branch that is met for certain is the last that may be taken
    }
  }

  void TakeProperties(const XmlElement& group, const std::string& doubtAbove) {
    std::string doubt;
    if (!IsMet(group, doubt)) return;
    if (doubt.empty()) doubt = doubtAbove;
    for (XmlElement at = group.FirstChild(); at; at = at.NextSibling()) {
      NoteIfUnfamiliar(project_, at.Name());
      std::string ownDoubt;
      if (!IsMet(at, ownDoubt)) continue;
      const std::string text = IsEvent(at.Name()) ? WithEventMacrosKept(at.Text()) : at.Text();
      properties_.Set(at.Name(), text, ownDoubt.empty() ? doubt : ownDoubt);
    }
  }

  void Import(const XmlElement& element, const std::string& file, int depth) {
    const std::string written = element.Attribute("Project");
    std::string doubt;
    if (!IsMet(element, doubt)) return;
    if (IsProductTargets(written)) {
      if (pass_ == Pass::Properties) ApplyProductTargets();
      return;
    }
    const NetText path = properties_.Expand(written);
    if (doubt.empty()) doubt = path.doubt;
    if (depth >= kDeepest || ++imports_ > kMostImports) doubt = "imports are nested too deeply";
    Imported* imported = doubt.empty() ? Open(ExpandPath(FolderPart(file), path.value)) : nullptr;
    if (imported == nullptr) {
      const std::string why = doubt.empty() ? "it cannot be read" : doubt;
      return properties_.DoubtAll("the import of \"" + written + "\" may set it: " + why);
    }
    const Pass pass = pass_;
    Walk(imported->document.Root(), ExpandPath(FolderPart(file), path.value), pass, depth + 1);
  }

  // Each file is read once; null: it cannot be.
  Imported* Open(const std::string& path) {
    const auto known = imported_.find(path);
    if (known != imported_.end()) return known->second.get();
    if (imported_.size() >= kMostFiles) return nullptr;
    std::unique_ptr<Imported>& place = imported_[path];
    std::optional<std::string> bytes = read_(path);
    if (!bytes) return nullptr;
    auto file = std::make_unique<Imported>();
    file->bytes = std::move(*bytes);
    try {
      file->document.Parse(file->bytes, XmlTexts::Kept);
    } catch (const Exception&) {
      return nullptr;
    }
    place = std::move(file);
    return place.get();
  }

  // What Microsoft.Common.targets makes of the properties of an output's place; what stands behind the import
  // in the project file comes too late to change it.
  void ApplyProductTargets() {
    if (sawProductTargets_) return;
    sawProductTargets_ = true;
    SetDefault("AssemblyName", "$(MSBuildProjectName)");
    SetDefault("OutputType", "Exe");
    SetDefault("OutDir", "$(OutputPath)");
    const NetText type = properties_.Get("OutputType");
    if (type.doubt.empty()) SetDefault("TargetExt", NetOutputExtension(type.value));
    SetDefault("TargetName", "$(AssemblyName)");
    SetDefault("TargetFileName", "$(TargetName)$(TargetExt)");
    outDir_ = properties_.Get("OutDir");
    fileName_ = properties_.Get("TargetFileName");
    if (!type.doubt.empty()) fileName_.doubt = type.doubt;
  }

  void SetDefault(std::string_view name, std::string_view text) {
    const NetText before = properties_.Get(name);
    if (!before.value.empty()) return;
    properties_.Set(name, text, before.doubt);
  }

  void TakeItems(const XmlElement& group) {
    std::string doubt;
    if (!IsMet(group, doubt)) return;
    for (XmlElement at = group.FirstChild(); at; at = at.NextSibling()) {
      if (!IsMet(at, doubt)) continue;
      const std::string kind = at.Name();
      NoteIfUnfamiliar(project_, kind + "@Include");
      for (XmlElement data = at.FirstChild(); data; data = data.NextSibling()) {
        NoteIfUnfamiliar(project_, kind + "/" + data.Name());
      }
      ForEachInclude(at, [&](std::string include) { TakeItem(at, kind, std::move(include)); });
    }
  }

  template <class Visitor>
  void ForEachInclude(const XmlElement& item, Visitor&& visit) {
    std::string includes = properties_.Expand(item.Attribute("Include")).value;
    for (std::size_t begin = 0; begin <= includes.size();) {
      const std::size_t end = std::min(includes.find(';', begin), includes.size());
      std::string include = Trim(std::string_view(includes).substr(begin, end - begin));
      if (!include.empty()) visit(std::move(include));
      begin = end + 1;
    }
  }

  std::string Metadata(const XmlElement& item, const char* name) {
    return properties_.Expand(item.FirstChild(name).Text()).value;
  }

  void TakeItem(const XmlElement& item, const std::string& kind, std::string include) {
    if (kind == "Import") {
      if (!project_.imports.empty()) project_.imports += ',';
      project_.imports += include;
    } else if (kind == "Reference" || kind == "ProjectReference" || kind == "COMReference") {
      project_.references.push_back(TakeReference(item, kind, include));
    } else if (std::ranges::find(kFileItems, kind) != std::end(kFileItems)) {
      NetFile file;
      file.place = Metadata(item, "Link");
      if (file.place.empty()) file.place = include;
      file.path = std::move(include);
      file.action = kind;
      file.dependsOn = Metadata(item, "DependentUpon");
      file.logicalName = Metadata(item, "LogicalName");
      project_.files.push_back(std::move(file));
    }
  }

  NetReference TakeReference(const XmlElement& item, const std::string& kind, const std::string& include) {
    NetReference reference;
    const std::string copyLocal = Metadata(item, "Private");
    if (!copyLocal.empty()) reference.copyLocal = SameText(copyLocal, kTrue);
    if (kind == "ProjectReference") {
      reference.name = Metadata(item, "Name");
      reference.projectGuid = Metadata(item, "Project");
      reference.projectFile = include;
    } else if (kind == "COMReference") {
      reference.name = include;
      reference.comGuid = Metadata(item, "Guid");
    } else {
      reference.name =
          Trim(std::string_view(include).substr(0, include.find(',')));  // ", Version=1.2.0.0 ..."
      reference.hintPath = Metadata(item, "HintPath");
    }
    return reference;
  }

  void TakeSettings() {
    for (const auto& [property, member] : kTexts) project_.*member = properties_.Get(property).value;
    for (const auto& [property, member] : kFlags) {
      project_.*member = SameText(properties_.Get(property).value, kTrue);
    }
    project_.warningLevel = ToInteger(properties_.Get("WarningLevel").value).value_or(project_.warningLevel);
    project_.assemblyName = properties_.Get("AssemblyName");
    project_.outputType = properties_.Get("OutputType");
    project_.outputPath = sawProductTargets_ ? outDir_ : properties_.Get("OutDir");
    project_.fileName = sawProductTargets_ ? fileName_ : properties_.Get("TargetFileName");
    const std::string chosen =
        properties_.Get("Configuration").value + "|" + properties_.Get("Platform").value;
    const auto same = [&chosen](const std::string& known) { return SameText(known, chosen); };
    project_.hasConfiguration =
        project_.configurations.empty() || std::ranges::any_of(project_.configurations, same);
  }

  const NetSelection& selection_;
  const ReadNetFile& read_;
  NetProject& project_;
  MsBuildProperties properties_;
  std::map<std::string, std::unique_ptr<Imported>> imported_;
  int imports_ = 0;
  Pass pass_ = Pass::Properties;
  bool sawProductTargets_ = false;
  NetText outDir_, fileName_;  // as the product's targets make them
};

}  // namespace

void ReadMsBuildForm(const XmlElement& root, const NetSelection& selection, const ReadNetFile& read,
                     NetProject& project) {
  project.form = NetForm::MsBuild;
  MsBuildReader(selection, read, project).Read(root);
}

}  // namespace qx
