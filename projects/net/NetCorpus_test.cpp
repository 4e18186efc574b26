// Reads every real C# and Visual Basic project there is. They lie in ../shared/corpus beside the source, or
// in $QX_CORPUS.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>

#include "plugin/Qxtypes.h"
#include "projects/net/NetOutput.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> Projects() {
  const char* named = std::getenv("QX_CORPUS");
  const fs::path folder = named != nullptr ? fs::path(named) : fs::path(QX_SOURCE_DIR) / "../shared/corpus";
  std::vector<std::string> found;
  std::error_code missing;
  for (const auto& entry : fs::recursive_directory_iterator(folder, missing)) {
    const std::string path = entry.path().string();
    if (NetLanguageOf(path)) found.push_back(path);
  }
  std::sort(found.begin(), found.end());
  return found;
}

TEST(NetCorpus, EveryProjectIsReadInEachOfItsConfigurations) {
  const std::vector<std::string> projects = Projects();
  if (projects.empty()) GTEST_SKIP() << "no real projects: set QX_CORPUS";
  int old = 0, configurations = 0, placed = 0;
  std::set<std::string> unfamiliar;
  for (const std::string& file : projects) {
    SCOPED_TRACE(file);
    const NetProject first = ReadNetProject(file, {});
    old += first.form == NetForm::Attributes;
    EXPECT_FALSE(first.configurations.empty());
    EXPECT_FALSE(first.files.empty());
    EXPECT_NE(first.guid, "");
    for (const std::string& name : first.configurations) {
      NetSelection selection;
      selection.configuration = name.substr(0, name.find('|'));
      if (name.find('|') != std::string::npos) selection.platform = name.substr(name.find('|') + 1);
      const NetProject project = ReadNetProject(file, selection);
      EXPECT_TRUE(project.hasConfiguration) << name;
      const NetOutput output = WhereOutputLies(project);
      EXPECT_EQ(output.path.empty(), !output.reason.empty());
      ++configurations;
      placed += !output.path.empty();
      unfamiliar.insert(project.unfamiliar.begin(), project.unfamiliar.end());
    }
  }
  std::cout << projects.size() << " projects, " << old << " of 2002 and 2003; the output's place is known in "
            << placed << " of " << configurations << " configurations\n";
  for (const std::string& name : unfamiliar) ADD_FAILURE() << "unfamiliar: " << name;
  EXPECT_EQ(placed, configurations);
}

}  // namespace
}  // namespace qx
