// Reads every #include of the tree and compares it with docs/layers.txt, so that arrows keep running one way.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Layers = std::map<std::string, std::set<std::string>>;

Layers ReadLayers(const fs::path& file) {
  Layers layers;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    const auto colon = line.find(':');
    std::istringstream allowed(line.substr(colon + 1));
    auto& rooms = layers[line.substr(0, colon)];
    for (std::string room; allowed >> room;) rooms.insert(room);
  }
  return layers;
}

// The room a path relative to the root lies in: the longest listed folder that leads it, empty when none
// does.
std::string RoomOf(const std::string& path, const Layers& layers) {
  std::string best;
  for (const auto& [room, allowed] : layers) {
    if (path.starts_with(room + "/") && room.size() > best.size()) best = room;
  }
  return best;
}

std::vector<std::string> QuotedIncludes(const fs::path& file) {
  std::vector<std::string> names;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (!line.starts_with("#include \"")) continue;
    names.push_back(line.substr(10, line.find('"', 10) - 10));
  }
  return names;
}

bool IsTest(const std::string& name) {
  return name.find("_test.") != std::string::npos || name.find("_fuzz.") != std::string::npos ||
         name.find("testdata/") != std::string::npos || name.find("Fixture.") != std::string::npos;
}

bool IsSource(const fs::path& path) { return path.extension() == ".h" || path.extension() == ".cpp"; }

TEST(Layers, EveryIncludeFollowsAnArrowOfTheHouse) {
  const fs::path root = QX_SOURCE_DIR;
  const Layers layers = ReadLayers(root / "docs/layers.txt");
  ASSERT_FALSE(layers.empty());
  int seen = 0;
  for (const auto& [room, allowed] : layers) {
    if (!fs::exists(root / room)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root / room)) {
      const std::string path = fs::relative(entry.path(), root).generic_string();
      if (!IsSource(entry.path()) || IsTest(path) || RoomOf(path, layers) != room) continue;
      for (const std::string& name : QuotedIncludes(entry.path())) {
        const std::string target = RoomOf(name, layers);
        ++seen;
        EXPECT_TRUE(target == room || allowed.contains(target))
            << path << " includes " << name << ", but " << room << " may not include "
            << (target.empty() ? "anything outside the rooms" : target);
      }
    }
  }
  EXPECT_GT(seen, 50) << "the test lost its way: too few includes were read";
}

TEST(Layers, NoFolderOfSourcesIsMissingFromTheList) {
  const fs::path root = QX_SOURCE_DIR;
  const Layers layers = ReadLayers(root / "docs/layers.txt");
  const std::set<std::string> outside{"build", "tests", "bench", "examples",
                                      ".git",  "docs",  "cmake", "scripts"};
  for (const auto& folder : fs::directory_iterator(root)) {
    if (!folder.is_directory() || outside.contains(folder.path().filename().string())) continue;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
      const std::string path = fs::relative(entry.path(), root).generic_string();
      if (IsSource(entry.path())) {
        EXPECT_NE(RoomOf(path, layers), "") << path << " lies in no listed room";
      }
    }
  }
}

}  // namespace
