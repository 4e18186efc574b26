// What keeps rooms and files readable: how many files a folder holds, how many lines a file has. The length
// of functions is clang-tidy's to watch (.clang-tidy).
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/SourceTree.h"

namespace qx::house {
namespace {

const fs::path kRoot = QX_SOURCE_DIR;
constexpr int kFilesInAFolder = 40;
constexpr long kLinesOfAFile = 500;

long LinesOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::count(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>(), '\n');
}

TEST(Limits, NoFolderHoldsMoreFilesThanOneCanLookThrough) {
  std::map<std::string, int> files;
  for (const std::string& path : SourcesOf(kRoot)) {
    if (path.starts_with("tests/")) continue;
    ++files[fs::path(path).parent_path().generic_string()];
  }
  EXPECT_GT(files.size(), 20u) << "the test lost its way: too few folders were read";
  for (const auto& [folder, count] : files) {
    EXPECT_LE(count, kFilesInAFolder)
        << folder << " holds too much: give one of its subjects a room of its own";
  }
}

TEST(Limits, NoFileIsLongerThanOneCanRead) {
  for (const std::string& path : SourcesOf(kRoot)) {
    EXPECT_LE(LinesOf(kRoot / path), kLinesOfAFile) << path << " is too long: split it by its subjects";
  }
}

// A reader who opens a header learns from its first lines what it is for.
TEST(Limits, EveryHeaderBeginsByTellingWhatItIsFor) {
  for (const std::string& path : SourcesOf(kRoot)) {
    if (!path.ends_with(".h") || path.starts_with("examples/")) continue;
    std::ifstream in(kRoot / path);
    std::string first;
    std::getline(in, first);
    EXPECT_TRUE(first.starts_with("// ") && first.size() > 20) << path << " begins with: " << first;
  }
}

}  // namespace
}  // namespace qx::house
