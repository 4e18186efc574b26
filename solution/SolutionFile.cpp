#include "solution/SolutionFile.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>
#include <unordered_map>

#include "platform/Texts.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"
#include "platform/files/TextSearch.h"
#include "plugin/Qxtypes.h"
#include "solution/ProjectLine.h"
#include "solution/VcprojScan.h"

namespace qx {
namespace {

constexpr std::string_view kHeader = "Microsoft Visual Studio Solution File, Format Version";
constexpr std::size_t kGuidSize = 38;  // braces included; what stands there is not examined
constexpr std::string_view kVersionInfo = "VERSIONINFO";

// Exact beginnings of section heads. The first of a pair does not match the second: its last character differs.
constexpr std::array<std::string_view, 2> kConfigurationSections = {
    "GlobalSection(SolutionConfiguration)", "GlobalSection(SolutionConfigurationPlatforms)"};
constexpr std::array<std::string_view, 2> kProjectConfigurationSections = {
    "GlobalSection(ProjectConfiguration)", "GlobalSection(ProjectConfigurationPlatforms)"};
constexpr std::array<std::string_view, 1> kDependencySections = {"GlobalSection(ProjectDependencies)"};

template <class Heads>
bool StartsWithOneOf(std::string_view line, const Heads& heads) {
  return std::any_of(heads.begin(), heads.end(),
                     [&](std::string_view head) { return line.starts_with(head); });
}

// What stands before the first "=" of a line; empty when there is none.
std::string_view NamePart(std::string_view line) {
  const std::size_t equals = line.find('=');
  return equals == std::string_view::npos ? std::string_view() : line.substr(0, equals);
}

class Reader {
 public:
  Reader(const std::string& fileName, std::string_view text, SolutionFiles& files)
      : files_(files), folder_(WithTrailingDelimiter(ExpandPath(FolderPart(fileName), ""))) {
    lines_.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
    ForEachLine(text, [this](std::string_view line) {
      // Empty lines before the first go. Only those of length 0: a blank is not empty (docs/deliberate.md).
      if (!lines_.empty() || !line.empty()) lines_.push_back(line);
    });
  }

  SolutionModel Read() {
    CheckHeader();
    cursor_ = 1;
    ReadProjects();
    ReadGlobal();
    if (configurationNames_) model_.configurations = LookUpConfigurations();
    return std::move(model_);
  }

 private:
  // Raises the line list's own error when the file ends here: an empty file, or one without an end
  // (docs/deliberate.md).
  std::string_view Line() const {
    if (cursor_ >= lines_.size()) TStringList().Get(static_cast<int>(cursor_));
    return lines_[cursor_];
  }
  std::string_view TrimmedLine() const { return TrimView(Line()); }

  void CheckHeader() const {
    if (LowerCase(Line()).find(LowerCase(kHeader)) == std::string::npos) {
      throw Exception("Invalid Solution File Format : " + std::string(Line()));
    }
  }

  // "Global" counts untrimmed only: with a blank before it the list runs on to the end of the file. Other
  // lines are passed over, those of a 2005 project's dependencies too (docs/deliberate.md).
  void ReadProjects() {
    for (; Line() != "Global"; ++cursor_) {
      const std::string_view line = TrimmedLine();
      if (IsProjectLine(line)) ReadProject(ReadProjectLine(line));
    }
  }

  void ReadProject(ProjectLine line) {
    SolutionProject project;
    project.name = std::move(line.name);
    project.path = std::move(line.path);
    project.typeGuid = std::move(line.typeGuid);
    project.guid = std::move(line.guid);
    // Web projects are known by their URL, in lower case and wherever it stands in the path; their files are
    // not looked for. What has no file is left out without a word (docs/deliberate.md).
    const bool web = project.path.find("http://") != std::string::npos ||
                     project.path.find("https://") != std::string::npos;
    const bool cpp = HasExtension(project.path, ".vcproj");
    if (!web || cpp) {
      std::string file = ExpandPath(folder_, project.path);
      const bool exists = files_.FindFile(file);
      if (!exists && !web) return;
      if (exists && cpp) ScanResources(file, project);
    }
    model_.projects.push_back(std::move(project));
  }

  void ScanResources(const std::string& file, SolutionProject& project) {
    // One malformed project fails the whole solution (docs/deliberate.md).
    std::string reason;
    if (!files_.Read(file, buffer_, reason)) throw Exception("Error parsing project file : " + reason);
    const std::string folder = FolderPart(file);
    for (const std::string& listed : ListedResourceScripts(buffer_, document_)) {
      std::string script = ExpandPath(folder, listed);
      const bool sought = project.versionInfoFile.empty();
      // Reading it also tells that it exists under this very name; what is not read is looked up.
      if (!sought) {
        files_.FindFile(script);
      } else if (HoldsVersionInfo(script)) {
        project.versionInfoFile = script;
      }
      project.resourceScripts.Add(std::move(script));
    }
  }

  // The path becomes the one that the script has on disk. One that cannot be read is passed over silently.
  bool HoldsVersionInfo(std::string& path) {
    TextSearch search(kVersionInfo);
    const auto take = [&search](std::string_view part) { return search.Take(part); };
    const bool isRead =
        files_.ReadParts(path, take) || (files_.FindFile(path) && files_.ReadParts(path, take));
    return isRead && search.Found();
  }

  // The cursor is on "Global".
  void ReadGlobal() {
    for (++cursor_; TrimmedLine() != "EndGlobal"; ++cursor_) {
      const std::string_view line = TrimmedLine();
      if (StartsWithOneOf(line, kConfigurationSections)) {
        ReadConfigurations();
      } else if (StartsWithOneOf(line, kProjectConfigurationSections)) {
        // Configurations of projects are not part of the model: the section is only walked past.
        ForEachSectionLine([](std::string_view) {});
      } else if (StartsWithOneOf(line, kDependencySections)) {
        ReadDependencies();
      }
    }
  }

  // From the line behind a section's head to its end, where the cursor stays.
  template <class Visitor>
  void ForEachSectionLine(Visitor&& visit) {
    for (++cursor_; TrimmedLine() != "EndGlobalSection"; ++cursor_) visit(Line());
  }

  // A later section takes the place of an earlier one. Names stay untrimmed, a line without "=" has an empty
  // one, and only "Description" in these letters is passed over (docs/deliberate.md).
  void ReadConfigurations() {
    configurationNames_.emplace();
    ForEachSectionLine([this](std::string_view line) {
      const std::string_view name = NamePart(line);
      if (TrimView(name) != "Description") configurationNames_->push_back(name);
    });
  }

  // A configuration is called by the value, not the name, and the value is that of the first line in the
  // whole file whose name part is the same but for letter case: saved projects hold the names found so
  // (docs/deliberate.md). One pass over the lines serves all names.
  std::vector<std::string> LookUpConfigurations() const {
    std::unordered_map<std::string, std::optional<std::string_view>> values;
    std::vector<bool> sizes;  // of names; letters keep their size when their case is folded
    for (const std::string_view name : *configurationNames_) {
      values.try_emplace(FoldCase(name));
      if (sizes.size() <= name.size()) sizes.resize(name.size() + 1);
      sizes[name.size()] = true;
    }
    for (const std::string_view line : lines_) {
      const std::size_t equals = line.find('=');
      if (equals >= sizes.size() || !sizes[equals]) continue;
      const auto value = values.find(FoldCase(line.substr(0, equals)));
      if (value != values.end() && !value->second) value->second = line.substr(equals + 1);
    }
    std::vector<std::string> configurations;
    for (const std::string_view name : *configurationNames_) {
      configurations.push_back(Trim(values[FoldCase(name)].value_or("")));
    }
    return configurations;
  }

  void ReadDependencies() {
    // By identifier; the first project of one counts.
    std::unordered_map<std::string_view, std::size_t> first;
    for (std::size_t i = 0; i < model_.projects.size(); ++i) first.try_emplace(model_.projects[i].guid, i);
    ForEachSectionLine([&](std::string_view line) {
      line = TrimView(line);
      const auto project = first.find(line.substr(0, kGuidSize));
      const std::size_t equals = line.find('=');
      if (project == first.end() || equals == std::string_view::npos) return;
      model_.projects[project->second].dependencies.Add(Trim(line.substr(equals + 1)));
    });
  }

  std::vector<std::string_view> lines_;
  SolutionFiles& files_;
  const std::string folder_;
  std::size_t cursor_ = 0;
  SolutionModel model_;
  // Of the last section; they lie in the text.
  std::optional<std::vector<std::string_view>> configurationNames_;
  XmlDocument document_;
  std::string buffer_;
};

}  // namespace

SolutionModel ReadSolution(const std::string& fileName, std::string_view text, SolutionFiles& files) {
  return Reader(fileName, text, files).Read();
}

}  // namespace qx
