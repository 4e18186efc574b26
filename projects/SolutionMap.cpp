#include "projects/SolutionMap.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "platform/Texts.h"
#include "plugin/Qxtypes.h"
#include "solution/ProjectLine.h"

namespace qx {
namespace {

constexpr std::string_view kHeader = "microsoft visual studio solution file, format version";
constexpr std::string_view kMixed = "mixed platforms";
constexpr std::size_t kGuidSize = 38;

struct NumberOfFormat {
  std::string_view number;
  SolutionFormat format;
};
constexpr std::array kFormats = {NumberOfFormat{"7.", SolutionFormat::Vs2002},
                                 NumberOfFormat{"8.", SolutionFormat::Vs2003},
                                 NumberOfFormat{"9.", SolutionFormat::Vs2005}};

// What a section of the solution, or of a project's block, is for.
enum class Section { None, Configurations, Mappings, Needs, Other };

struct SectionName {
  std::string_view name;
  Section section;
};
constexpr std::array kSections = {
    SectionName{"SolutionConfiguration", Section::Configurations},
    SectionName{"SolutionConfigurationPlatforms", Section::Configurations},
    SectionName{"ProjectConfiguration", Section::Mappings},
    SectionName{"ProjectConfigurationPlatforms", Section::Mappings},
    SectionName{"ProjectDependencies", Section::Needs},
};

// "GlobalSection(NAME) = ..." with the word given.
Section SectionOf(std::string_view line, std::string_view word) {
  if (!line.starts_with(word)) return Section::None;
  line.remove_prefix(word.size());
  const std::string_view name = line.substr(0, line.find(')'));
  const auto found = std::ranges::find(kSections, name, &SectionName::name);
  return found == kSections.end() ? Section::Other : found->section;
}

struct Row {
  std::string_view name, value;
};
Row SplitRow(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return {TrimView(line), {}};
  return {TrimView(line.substr(0, equals)), TrimView(line.substr(equals + 1))};
}

class MapReader {
 public:
  void Take(std::string_view line) {
    line = TrimView(line);
    if (section_ != Section::None) {
      if (line == "EndGlobalSection" || line == "EndProjectSection") {
        section_ = Section::None;
      } else {
        TakeRow(SplitRow(line));
      }
      return;
    }
    if (IsProjectLine(line)) {
      Add(ReadProjectLine(line));
    } else if (line == "EndProject") {
      isInProject_ = false;
    } else {
      section_ = SectionOf(line, isInProject_ ? "ProjectSection(" : "GlobalSection(");
    }
  }

  // Rows of the solution's sections may stand before what they speak of, so they are given out last.
  SolutionMap Finish() {
    for (MappedProject& project : map_.projects) {
      const auto [begin, end] = rows_.equal_range(LowerCase(project.guid));
      for (auto at = begin; at != end; ++at) Apply(at->second, project);
    }
    return std::move(map_);
  }

 private:
  struct Statement {
    Section section;
    Row row;  // of mappings: the name without the identifier
  };

  void Add(ProjectLine line) {
    map_.projects.push_back(
        {std::move(line.name), std::move(line.path), std::move(line.typeGuid), std::move(line.guid), {}, {}});
    isInProject_ = true;
  }

  void TakeRow(const Row& row) {
    if (section_ == Section::Configurations) {
      AddConfiguration(row);
    } else if (isInProject_) {
      // 2003 and 2005: "{B} = {B}" in the block of the project that needs B.
      if (section_ == Section::Needs) map_.projects.back().needs.emplace_back(row.value);
    } else if (section_ != Section::Other && row.name.size() > kGuidSize && row.name[kGuidSize] == '.') {
      rows_.emplace(LowerCase(row.name.substr(0, kGuidSize)),
                    Statement{section_, {row.name.substr(kGuidSize + 1), row.value}});
    }
  }

  void AddConfiguration(const Row& row) {
    if (row.name == "Description" || row.value.empty()) return;
    map_.configurations.emplace_back(row.value);
    // 2002 numbers its configurations; mappings may be written by that key as well.
    keys_.emplace(FoldCase(row.name), FoldCase(row.value));
  }

  void Apply(const Statement& statement, MappedProject& project) const {
    if (statement.section == Section::Needs) {
      project.needs.emplace_back(statement.row.value);  // 2002: "{A}.0 = {B}"
    } else if (const auto name = WithoutEnding(".ActiveCfg", statement.row.name)) {
      project.mappings[Key(*name)].configuration = statement.row.value;
    } else if (const auto built = WithoutEnding(".Build.0", statement.row.name)) {
      project.mappings[Key(*built)].isBuilt = true;
    } else if (const auto deployed = WithoutEnding(".Deploy.0", statement.row.name)) {
      project.mappings[Key(*deployed)].isDeployed = true;
    }
  }

  static std::optional<std::string_view> WithoutEnding(std::string_view ending, std::string_view text) {
    if (!text.ends_with(ending)) return std::nullopt;
    return text.substr(0, text.size() - ending.size());
  }

  std::string Key(std::string_view configuration) const {
    const std::string folded = FoldCase(configuration);
    const auto key = keys_.find(folded);
    return key == keys_.end() ? folded : key->second;
  }

  SolutionMap map_;
  Section section_ = Section::None;
  bool isInProject_ = false;
  std::multimap<std::string, Statement> rows_;  // by identifier in lower case; in file order for each
  std::map<std::string, std::string> keys_;     // of the configurations, both folded
};

}  // namespace

std::string FormatNumberOf(std::string_view text) {
  const std::string head = LowerCase(text.substr(0, 400));
  const std::size_t at = head.find(kHeader);
  if (at == std::string::npos) return {};
  const std::string_view rest = TrimView(std::string_view(head).substr(at + kHeader.size()));
  return std::string(rest.substr(0, rest.find_first_of(" \t\r\n")));
}

SolutionFormat FormatOfSolution(std::string_view text) {
  const std::string number = FormatNumberOf(text);
  for (const NumberOfFormat& format : kFormats) {
    if (number.starts_with(format.number)) return format.format;
  }
  return SolutionFormat::Unknown;
}

SolutionMap ReadSolutionMap(std::string_view text) {
  MapReader reader;
  bool hasHeader = false;
  ForEachLine(text, [&](std::string_view line) {
    if (hasHeader) return reader.Take(line);
    if (line.empty()) return;
    if (LowerCase(line).find(kHeader) == std::string::npos) {
      throw Exception("Invalid Solution File Format : " + std::string(line));
    }
    hasHeader = true;
  });
  if (!hasHeader) throw Exception("Invalid Solution File Format : ");
  SolutionMap map = reader.Finish();
  map.format = FormatOfSolution(text);
  return map;
}

std::string FindConfiguration(const SolutionMap& map, std::string_view asked) {
  if (TrimView(asked).empty()) return map.configurations.empty() ? "" : map.configurations.front();
  for (const std::string& name : map.configurations) {
    if (SameText(name, asked)) return name;
  }
  if (asked.find('|') != std::string_view::npos) return "";
  std::string first;
  for (const std::string& name : map.configurations) {
    const ConfigurationName parts = SplitConfiguration(name);
    if (!SameText(parts.configuration, asked)) continue;
    if (SameText(parts.platform, kMixed)) return name;
    if (first.empty()) first = name;
  }
  return first;
}

const ProjectMapping* FindMapping(const MappedProject& project, std::string_view configuration) {
  const auto found = project.mappings.find(FoldCase(configuration));
  return found == project.mappings.end() ? nullptr : &found->second;
}

OwnConfiguration ConfigurationOf(const MappedProject& project, const std::string& configuration) {
  const ProjectMapping* mapping = FindMapping(project, configuration);
  const bool isNamed = mapping != nullptr && !mapping->configuration.empty();
  ConfigurationName own = SplitConfiguration(isNamed ? mapping->configuration : configuration);
  // What stands behind the bar of a C# project of 2002 and 2003 is no platform.
  if (own.platform == ".NET") own.platform.clear();
  const bool isBuilt = mapping != nullptr ? mapping->isBuilt : project.mappings.empty();
  return {std::move(own.configuration), std::move(own.platform), isBuilt,
          mapping != nullptr && mapping->isDeployed};
}

ConfigurationName SplitConfiguration(std::string_view text) {
  const std::size_t bar = text.find('|');
  if (bar == std::string_view::npos) return {Trim(text), ""};
  return {Trim(text.substr(0, bar)), Trim(text.substr(bar + 1))};
}

}  // namespace qx
