#include "engine/dotnet/CompilePlan.h"

#include <algorithm>
#include <set>

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "projects/net/NetOutput.h"
#include "projects/net/NetResources.h"
#include "projects/net/NetSource.h"

namespace qx {
namespace {

// Where sources are neither UTF-8 nor marked they are in the code page of the machine they were written on;
// this was the most common one.
constexpr const char* kUsualCodePage = "1252";

// Names that a copy of the old framework's libraries in a tree must not stand in for.
constexpr const char* kFrameworkPrefixes[] = {"System", "mscorlib", "Microsoft.", "Accessibility", "Mono."};

bool IsFrameworkName(std::string_view name) {
  return std::ranges::any_of(kFrameworkPrefixes, [&](std::string_view prefix) {
    return SameText(name.substr(0, prefix.size()), prefix);
  });
}

bool IsAssemblyFile(const std::string& file) {
  return HasExtension(file, ".dll") || HasExtension(file, ".exe");
}

// The name as one part of a path: what a project file calls a configuration or a resource must not lead elsewhere.
std::string AsFileName(std::string name) {
  std::replace_if(
      name.begin(), name.end(), [](char c) { return IsDelimiter(c) || c == '\0'; }, '_');
  return name == "." || name == ".." ? "_" : name;
}

std::string WithoutExtension(const std::string& file) {
  return file.substr(0, file.size() - ExtensionOf(file).size());
}

const BuiltProject* FindNeed(const ProjectTask& task, const NetReference& reference) {
  for (const BuiltProject* need : task.needs) {
    if (!reference.projectGuid.empty() && SameText(need->guid, reference.projectGuid)) return need;
  }
  for (const BuiltProject* need : task.needs) {
    if (SameText(need->name, reference.name)) return need;
  }
  return nullptr;
}

bool IsUnicode(std::string_view bytes) {
  const bool isMarked =
      bytes.starts_with("\xEF\xBB\xBF") || bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
  return isMarked || IsValidUtf8(bytes);
}

class Planner {
 public:
  Planner(const NetProject& project, const ProjectTask& task, const AssemblyFolders& folders)
      : project_(project), task_(task), folders_(folders) {}

  CompilePlan Make() {
    plan_.folder = FolderPart(project_.file);
    const NetOutput output = WhereOutputLies(project_);
    if (output.path.empty()) {
      Error(project_.file, "CS2021", output.reason);
      return std::move(plan_);
    }
    plan_.output = output.path;
    plan_.fileName = FilePart(plan_.output);
    plan_.name = WithoutExtension(plan_.fileName);
    if (plan_.output.size() > 1 && plan_.output[1] == ':') {
      Error(project_.file, "CS2021",
            "the output would go to a drive of Windows: " + project_.outputPath.value);
    }
    const std::string configuration = AsFileName(task_.configuration);
    plan_.intermediate = WithTrailingDelimiter(NetPath(project_, "obj/" + configuration));
    plan_.intermediateFile = plan_.intermediate + plan_.fileName;
    AddSources();
    AddResources();
    AddReferences();
    AddSettings();
    return std::move(plan_);
  }

 private:
  void Error(const std::string& file, const char* code, std::string text) {
    plan_.problems.push_back({true, file, code, std::move(text)});
  }
  void Warning(const std::string& file, const char* code, std::string text) {
    plan_.problems.push_back({false, file, code, std::move(text)});
  }

  // The file's path; empty, and a problem, when it is not there.
  std::string Existing(const std::string& written) {
    std::string path = NetPath(project_, written);
    if (FileExists(path)) return path;
    missing_.push_back(written);
    return {};
  }

  void AddSources() {
    std::set<std::string> seen;
    bool isUnicode = true;
    for (const NetFile& file : project_.files) {
      if (!SameText(file.action, "Compile")) continue;
      const std::string path = Existing(file.path);
      if (path.empty() || !seen.insert(path).second) continue;
      plan_.sources.push_back(path);
      std::string bytes;
      if (!TryReadFile(path, bytes)) continue;  // the compiler will say why
      isUnicode = isUnicode && IsUnicode(bytes);
      if (bytes.find("AssemblyKeyFile") == std::string::npos) continue;
      if (const auto key = KeyFileAttribute(project_.language, bytes, project_.defines)) {
        keyAttribute_ = *key;
        keySource_ = path;
      }
    }
    if (!isUnicode) plan_.codePage = kUsualCodePage;
    if (missing_.empty()) return;
    std::string text = "Source file '" + missing_[0] + "' could not be found";
    if (missing_.size() > 1) text += ", and " + std::to_string(missing_.size() - 1) + " more";
    Error(project_.file, "CS2001", std::move(text));
  }

  void AddResources() {
    for (const NetFile& file : project_.files) {
      if (!SameText(file.action, "EmbeddedResource")) continue;
      if (HasExtension(file.place, ".licx")) {
        plan_.notes.push_back(
            file.path +
            " is left out: neither the components that it licenses nor the tool that reads it are here");
        continue;
      }
      missing_.clear();
      PlannedResource resource;
      resource.source = Existing(file.path);
      if (resource.source.empty()) {
        Error(project_.file, "CS1566", "Resource file '" + file.path + "' could not be found");
        continue;
      }
      NetResourceName name = NameOfResource(project_, file, ClassOf(file));
      resource.name = std::move(name.name);
      resource.culture = std::move(name.culture);
      if (resource.name.find(',') != std::string::npos) {
        Error(project_.file, "CS1566",
              "The resource '" + file.path + "' has a comma in its name, which mcs cannot embed");
        continue;
      }
      const bool isCompiled = HasExtension(resource.source, ".resx");
      resource.embedded = isCompiled ? plan_.intermediate + AsFileName(resource.name) : resource.source;
      plan_.resources.push_back(std::move(resource));
    }
  }

  // Of the source that a resource depends on, which lies in the same folder of the project.
  std::string ClassOf(const NetFile& resource) {
    if (resource.dependsOn.empty()) return {};
    const std::string place = FolderPart(resource.place) + resource.dependsOn;
    const auto found = std::ranges::find_if(project_.files,
                                            [&](const NetFile& file) { return SameText(file.place, place); });
    const std::string path = NetPath(project_, found == project_.files.end() ? place : found->path);
    std::string bytes;
    return TryReadFile(path, bytes) ? FirstClass(project_.language, bytes) : std::string();
  }

  void AddReferences() {
    std::set<std::string> seen;
    for (const NetReference& reference : project_.references) {
      if (SameText(reference.name, "mscorlib")) continue;  // the compiler's own
      bool isLocal = false;
      const std::string file = ResolveReference(project_, reference, task_, folders_, isLocal);
      if (file.empty()) {
        Warning(project_.file, "MSB3245",
                "The referenced " +
                    std::string(reference.IsProject()       ? "project"
                                : reference.comGuid.empty() ? "component"
                                                            : "type library's wrapper") +
                    " '" + reference.name + "' could not be found");
        continue;
      }
      if (!seen.insert(file).second) continue;
      plan_.references.push_back({file, reference.copyLocal.value_or(isLocal) && !IsOfFramework(file)});
    }
  }

  bool IsOfFramework(const std::string& file) const { return file.starts_with(folders_.framework); }

  void AddSettings() {
    if (!project_.icon.empty()) {
      plan_.icon = NetPath(project_, project_.icon);
      if (!FileExists(plan_.icon))
        Error(project_.file, "CS1566", "the icon '" + project_.icon + "' is not there");
    }
    if (!project_.documentationFile.empty()) {
      plan_.documentationFile = NetPath(project_, project_.documentationFile);
    }
    for (const NetFile& file : project_.files) {
      if (!SameText(file.place, "app.config")) continue;
      const std::string path = NetPath(project_, file.path);
      if (FileExists(path)) plan_.applicationConfig = path;
    }
    AddKey();
  }

  // The compiler of those years looked for the attribute's file from where it wrote to, which was obj\CONFIGURATION.
  void AddKey() {
    if (!project_.keyContainer.empty()) {
      Warning(project_.file, "CS1548",
              "there are no key containers here; '" + project_.keyContainer + "' is not used");
    }
    if (keyAttribute_.empty()) return AddSettingsKey();
    const std::string first = ExpandPath(plan_.intermediate, keyAttribute_);
    for (const std::string& folder : {plan_.intermediate, plan_.folder, plan_.OutputFolder()}) {
      const std::string path = FindExisting(ExpandPath(folder, keyAttribute_));
      if (path.empty() || !FileExists(path)) continue;
      plan_.keyFile = path;
      return;
    }
    Error(keySource_, "CS1548",
          "The key file '" + keyAttribute_ + "' is not there. Keys are often not published: put it at " +
              first + ", or make one there with: sn -k");
  }

  // In these projects the setting is for wrappers of type libraries first of all: none of its own is required.
  void AddSettingsKey() {
    if (project_.keyFile.empty()) return;
    const std::string path = NetPath(project_, project_.keyFile);
    if (FileExists(path)) {
      plan_.keyFile = path;
    } else {
      Warning(project_.file, "CS1548", "the key file '" + project_.keyFile + "' is not there");
    }
  }

  const NetProject& project_;
  const ProjectTask& task_;
  const AssemblyFolders& folders_;
  CompilePlan plan_;
  std::vector<std::string> missing_;
  std::string keyAttribute_, keySource_;
};

}  // namespace

std::string ResolveReference(const NetProject& project, const NetReference& reference,
                             const ProjectTask& task, const AssemblyFolders& folders, bool& isLocal) {
  isLocal = true;
  if (reference.IsProject()) {
    const BuiltProject* need = FindNeed(task, reference);
    return need != nullptr && IsAssemblyFile(need->output) ? need->output : std::string();
  }
  const std::string framework = FindFrameworkAssembly(folders, reference.name);
  if (!framework.empty() && IsFrameworkName(reference.name)) {
    isLocal = false;
    return framework;
  }
  std::string hint = reference.hintPath;
  if (hint.empty() && !reference.comGuid.empty()) hint = "obj\\Interop." + reference.name + ".dll";
  if (!hint.empty()) {
    const std::string path = NetPath(project, hint);
    if (FileExists(path)) return path;
  }
  for (const BuiltProject* need : task.needs) {
    if (IsAssemblyFile(need->output) && SameText(WithoutExtension(FilePart(need->output)), reference.name)) {
      return need->output;
    }
  }
  isLocal = false;
  if (!framework.empty()) return framework;
  if (std::string cached = FindCachedAssembly(folders, reference.name); !cached.empty()) return cached;
  isLocal = true;
  return FindPackagedAssembly(folders, reference.name);
}

std::string CodePageOfSources(const NetProject& project) {
  std::string bytes;
  for (const NetFile& file : project.files) {
    if (!SameText(file.action, "Compile") || !TryReadFile(NetPath(project, file.path), bytes)) continue;
    if (!IsUnicode(bytes)) return kUsualCodePage;
  }
  return {};
}

CompilePlan MakeCompilePlan(const NetProject& project, const ProjectTask& task,
                            const AssemblyFolders& folders) {
  return Planner(project, task, folders).Make();
}

bool CompilePlan::CanBeCompiled() const {
  return std::ranges::none_of(problems, [](const PlanProblem& problem) { return problem.isError; });
}

std::string CompilePlan::OutputFolder() const { return FolderPart(output); }

std::vector<const PlannedResource*> CompilePlan::ResourcesOf(const std::string& culture) const {
  std::vector<const PlannedResource*> all;
  for (const PlannedResource& resource : resources) {
    if (SameText(resource.culture, culture)) all.push_back(&resource);
  }
  return all;
}

std::vector<std::string> CompilePlan::Cultures() const {
  std::set<std::string> cultures;
  for (const PlannedResource& resource : resources) cultures.insert(resource.culture);
  cultures.erase("");
  return {cultures.begin(), cultures.end()};
}

std::string CompilePlan::SatelliteName(const std::string& culture) const {
  return culture + "/" + name + ".resources.dll";
}

}  // namespace qx
