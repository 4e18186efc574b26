// Reads the map of real solutions that nobody of this house wrote and compares it with counts by plain text.
// The solutions lie in ../shared/corpus beside the source, or in $QX_CORPUS.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

#include "platform/Texts.h"
#include "projects/BuildOrder.h"
#include "projects/SolutionMap.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> Solutions() {
  const char* named = std::getenv("QX_CORPUS");
  const fs::path corpus = named != nullptr ? fs::path(named) : fs::path(QX_SOURCE_DIR) / "../shared/corpus";
  std::vector<fs::path> found;
  std::error_code missing;
  for (const auto& entry : fs::recursive_directory_iterator(corpus, missing)) {
    if (entry.path().extension() == ".sln") found.push_back(entry.path());
  }
  std::sort(found.begin(), found.end());
  return found;
}

std::string Bytes(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(in), {});
  return text.starts_with("\xEF\xBB\xBF") ? text.substr(3) : text;
}

struct Counts {
  std::size_t projects = 0, active = 0, built = 0, needs = 0;
  friend bool operator==(const Counts&, const Counts&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Counts& c) {
    return out << c.projects << " projects, " << c.active << " active, " << c.built << " built, " << c.needs
               << " needs";
  }
};

// Mappings of projects that the solution does not have are left over by editing and do not count.
Counts CountSimply(const std::string& text) {
  static const std::regex project("^Project\\(\".*\"(\\{.{36}\\})\"\\s*$");
  static const std::regex mapping("^\\s*(\\{.{36}\\})(\\..*\\.(ActiveCfg|Build\\.0)) = .*$");
  static const std::regex need("^\\s*(\\{.{36}\\})(\\.\\d+)? = (\\{.{36}\\})\\s*$");
  std::multiset<std::string> known;
  std::set<std::string> seen;
  Counts counts;
  std::string section, current;
  for (const std::string& line : SplitLines(text)) {
    std::smatch match;
    if (std::regex_match(line, match, project)) {
      ++counts.projects;
      known.insert(LowerCase(match[1].str()));
    } else if (line.find("Section(") != std::string::npos) {
      section = line;
    } else if (std::regex_match(line, match, mapping)) {
      const std::string guid = LowerCase(match[1].str());
      if (!seen.insert(LowerCase(guid + match[2].str())).second) continue;
      (match[3] == "ActiveCfg" ? counts.active : counts.built) += known.count(guid);
    } else if (section.find("ProjectDependencies") != std::string::npos &&
               std::regex_match(line, match, need)) {
      counts.needs +=
          section.find("GlobalSection") == std::string::npos ? 1 : known.count(LowerCase(match[1].str()));
    }
  }
  return counts;
}

Counts CountInMap(const SolutionMap& map) {
  Counts counts;
  counts.projects = map.projects.size();
  for (const MappedProject& project : map.projects) {
    counts.needs += project.needs.size();
    for (const auto& [name, mapping] : project.mappings) {
      counts.active += !mapping.configuration.empty();
      counts.built += mapping.isBuilt;
    }
  }
  return counts;
}

TEST(SolutionMapCorpus, HoldsEveryMappingAndNeedOfRealSolutions) {
  const std::vector<fs::path> solutions = Solutions();
  if (solutions.empty()) GTEST_SKIP() << "no real solutions beside the source: set QX_CORPUS";
  Counts total;
  for (const fs::path& file : solutions) {
    const std::string text = Bytes(file);
    const SolutionMap map = ReadSolutionMap(text);
    const Counts counts = CountInMap(map);
    EXPECT_EQ(counts, CountSimply(text)) << file;
    EXPECT_NE(map.format, SolutionFormat::Unknown) << file;
    total.projects += counts.projects;
    total.active += counts.active;
    total.built += counts.built;
    total.needs += counts.needs;
  }
  std::cout << solutions.size() << " solutions: " << total << "\n";
  EXPECT_GT(total.built, 0U);
}

}  // namespace
}  // namespace qx
