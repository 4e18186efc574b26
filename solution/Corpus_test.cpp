// Opens real solutions that nobody of this house wrote, and compares what the reader sees with a second, simple
// reading by regular expressions. The solutions lie in ../shared/corpus beside the source, or in $QX_CORPUS.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <regex>

#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

namespace fs = std::filesystem;
using Items = std::vector<std::string>;

fs::path CorpusFolder() {
  const char* named = std::getenv("QX_CORPUS");
  return named != nullptr ? fs::path(named) : fs::path(QX_SOURCE_DIR) / "../shared/corpus";
}

std::vector<fs::path> Solutions() {
  std::vector<fs::path> found;
  std::error_code missing;
  for (const auto& entry : fs::recursive_directory_iterator(CorpusFolder(), missing)) {
    if (entry.path().extension() == ".sln") found.push_back(entry.path());
  }
  std::sort(found.begin(), found.end());
  return found;
}

std::string Bytes(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

struct Reading {
  std::optional<std::string> error;
  std::vector<Items> projects;  // name, path, identifier, then the dependencies
  std::optional<Items> configurations;
};

// The simple reading: lines by getline, projects by one regular expression, a file's existence through the
// path finder. Real files are well-formed, so it knows nothing of the odd cases.
Reading ReadSimply(const fs::path& file) {
  std::string text = Bytes(file);
  if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
  std::erase(text, '\r');
  static const std::regex projectLine(
      "\\s*Project\\(\"(.{38})\"\\) = \"([^\"]*)\", \"([^\"]*)\", \"([^\"]*)\"\\s*");
  static const std::regex row("\\s*(.*?)\\s*=\\s*(.*?)\\s*");
  static const std::regex blanks("^\\s+|\\s+$");
  Reading reading;
  std::string section;
  std::istringstream in(text);
  bool begun = false;
  for (std::string line; std::getline(in, line);) {
    if (!begun && line.empty()) continue;
    if (!begun && line.find("Microsoft Visual Studio Solution File") == std::string::npos) {
      reading.error = "Invalid Solution File Format : " + line;
      return reading;
    }
    begun = true;
    std::smatch match;
    if (std::regex_match(line, match, projectLine)) {
      const std::string path = match[3];
      const bool web =
          path.find("http://") != std::string::npos || path.find("https://") != std::string::npos;
      const std::string found = FindExisting(ExpandPath(file.parent_path().string(), path));
      if (web || (!found.empty() && !fs::is_directory(found)))
        reading.projects.push_back({match[2], path, match[4]});
      continue;
    }
    const std::string trimmed = std::regex_replace(line, blanks, "");
    if (trimmed.starts_with("GlobalSection(")) section = trimmed.substr(14, trimmed.find(')') - 14);
    if (trimmed == "EndGlobalSection") section.clear();
    const bool configurations =
        section == "SolutionConfiguration" || section == "SolutionConfigurationPlatforms";
    if (configurations && !reading.configurations) reading.configurations.emplace();
    if (trimmed.starts_with("GlobalSection(") || !std::regex_match(line, match, row)) continue;
    if (configurations && match[1] != "Description") reading.configurations->push_back(match[2]);
    if (section == "ProjectDependencies") {
      for (Items& project : reading.projects) {
        if (project[2] != match[1].str().substr(0, 38)) continue;
        project.push_back(match[2]);
        break;
      }
    }
  }
  return reading;
}

Reading ReadByModel(const fs::path& file) {
  Reading reading;
  try {
    const auto solution = OpenSolution(file.string());
    const auto projects = solution->GetProjects();
    for (int i = 0; i < projects->GetCount(); ++i) {
      const auto project = projects->GetItem(i);
      Items fields{project->GetName(), project->GetPath(), project->GetGUID()};
      const Items& dependencies = project->GetDependencies()->GetList().Items();
      fields.insert(fields.end(), dependencies.begin(), dependencies.end());
      reading.projects.push_back(fields);
    }
    if (const auto configurations = solution->GetConfigurations()) {
      reading.configurations.emplace();
      for (int i = 0; i < configurations->GetCount(); ++i) {
        reading.configurations->push_back(configurations->GetItem(i)->GetName());
      }
    }
  } catch (const Exception& error) {
    reading.error = error.Message();
  }
  return reading;
}

TEST(Corpus, EverySolutionReadsAsASimpleReadingSeesIt) {
  const std::vector<fs::path> solutions = Solutions();
  if (solutions.empty()) GTEST_SKIP() << "no real solutions at " << CorpusFolder() << ": set QX_CORPUS";
  int opened = 0, projects = 0;
  for (const fs::path& file : solutions) {
    const Reading simple = ReadSimply(file);
    const Reading model = ReadByModel(file);
    EXPECT_EQ(model.error.value_or(""), simple.error.value_or("")) << file;
    EXPECT_EQ(model.projects, simple.projects) << file;
    EXPECT_EQ(model.configurations, simple.configurations) << file;
    opened += !model.error;
    projects += static_cast<int>(model.projects.size());
  }
  std::cout << opened << " of " << solutions.size() << " solutions opened, " << projects
            << " projects kept\n";
  EXPECT_GT(opened, 0);
}

// What the scan finds, by a second reading of the project files as text.
TEST(Corpus, EveryResourceScriptIsOneThatTheProjectNames) {
  if (Solutions().empty()) GTEST_SKIP() << "no real solutions at " << CorpusFolder() << ": set QX_CORPUS";
  int scripts = 0, versioned = 0;
  for (const fs::path& file : Solutions()) {
    InterfacePtr<IVSDotNetSolution> solution;
    try {
      solution = OpenSolution(file.string());
    } catch (const Exception&) {
      continue;  // the other test compares the refusal
    }
    for (int i = 0; i < solution->GetProjects()->GetCount(); ++i) {
      const auto project = solution->GetProjects()->GetItem(i);
      const Items& listed = project->GetRCFiles().Items();
      scripts += static_cast<int>(listed.size());
      std::string first;
      for (const std::string& script : listed) {
        if (first.empty() && Bytes(script).find("VERSIONINFO") != std::string::npos) first = script;
      }
      versioned += !first.empty();
      EXPECT_EQ(project->GetVersionInfoFile(), first) << file;
      EXPECT_TRUE(listed.empty() || project->IsVCProject()) << file;
    }
  }
  std::cout << scripts << " resource scripts, " << versioned << " projects with a version resource\n";
  EXPECT_GT(scripts, 0);
}

}  // namespace
}  // namespace qx
