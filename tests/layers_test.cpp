// Reads every #include of the tree, and what the build links, and compares both with docs/layers.txt, so that
// arrows keep running one way.
#include <gtest/gtest.h>

#include "tests/support/SourceTree.h"

namespace qx::house {
namespace {

const fs::path kRoot = QX_SOURCE_DIR;

void Write(const fs::path& file, const std::string& text) {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << text;
}

TEST(Layers, EveryIncludeFollowsAnArrowOfTheHouse) {
  const Layers layers = ReadLayers(kRoot / "docs/layers.txt");
  ASSERT_FALSE(layers.empty());
  int seen = 0;
  for (const std::string& fault : IncludesAgainstAnArrow(kRoot, layers, seen)) ADD_FAILURE() << fault;
  EXPECT_GT(seen, 50) << "the test lost its way: too few includes were read";
}

TEST(Layers, AnIncludeAgainstAnArrowIsFound) {
  const fs::path root = fs::path(testing::TempDir()) / "qx_layers_test";
  fs::remove_all(root);
  Write(root / "docs/layers.txt", "# a comment\n\nground:\nground/cellar: ground\nroof: ground\n");
  Write(root / "ground/Ground.h", "#include <string>\n");
  Write(root / "ground/cellar/Cellar.cpp", "#include \"ground/Ground.h\"\n");
  Write(root / "ground/Ground_test.cpp", "#include \"roof/Roof.h\"\n");  // tests may
  Write(root / "roof/Roof.cpp", "#include \"roof/Roof.h\"\n#include \"ground/Ground.h\"\n");
  const Layers layers = ReadLayers(root / "docs/layers.txt");
  int seen = 0;
  EXPECT_EQ(IncludesAgainstAnArrow(root, layers, seen), std::vector<std::string>{});
  EXPECT_EQ(seen, 3);

  Write(root / "ground/Ground.h", "#include \"roof/Roof.h\"\n");
  Write(root / "roof/Roof.h", "#include \"ground/cellar/Cellar.h\"\n");
  Write(root / "roof/Stray.h", "#include \"garden/Shed.h\"\n");
  const std::vector<std::string> faults{
      "ground/Ground.h includes roof/Roof.h, but ground may not include roof",
      "roof/Roof.h includes ground/cellar/Cellar.h, but roof may not include ground/cellar",
      "roof/Stray.h includes garden/Shed.h, but roof may not include anything outside the rooms"};
  EXPECT_EQ(IncludesAgainstAnArrow(root, layers, seen), faults);
  fs::remove_all(root);
}

TEST(Layers, NoFolderOfSourcesIsMissingFromTheList) {
  const Layers layers = ReadLayers(kRoot / "docs/layers.txt");
  const std::set<std::string> outside{"tests", "bench", "examples"};
  for (const std::string& path : SourcesOf(kRoot)) {
    if (outside.contains(path.substr(0, path.find('/')))) continue;
    EXPECT_NE(RoomOf(path, layers), "") << path << " lies in no listed room";
  }
}

// The build lists its rooms: a line has a target, its folder, and what it links. host/base defines what
// plugin/ declares, so whoever may include the one may link the other.
TEST(Layers, RoomsLinkOnlyWhatTheyMayInclude) {
  const Layers layers = ReadLayers(kRoot / "docs/layers.txt");
  std::map<std::string, std::string> folders{{"qx_contract", "plugin"}};
  std::map<std::string, std::vector<std::string>> links;
  std::ifstream in(QX_ROOMS_FILE);
  for (std::string line; std::getline(in, line);) {
    std::istringstream words(line);
    std::string target;
    words >> target >> folders[target];
    for (std::string link; words >> link;) links[target].push_back(link);
  }
  EXPECT_GT(folders.size(), 20u) << "the test lost its way: too few rooms were read";
  for (const auto& [target, linked] : links) {
    const std::string& room = folders[target];
    ASSERT_TRUE(layers.contains(room)) << target << " is built in " << room << ", which is not listed";
    for (const std::string& link : linked) {
      if (!folders.contains(link)) continue;  // a library from outside
      const std::string needed = folders[link] == "host/base" ? "plugin" : folders[link];
      EXPECT_TRUE(layers.at(room).contains(needed))
          << room << " links " << link << ", but may not include " << folders[link];
    }
  }
}

}  // namespace
}  // namespace qx::house
