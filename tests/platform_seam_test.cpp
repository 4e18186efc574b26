// System differences live behind seams: `_WIN32` is asked for in platform/ and in files named for their
// system only.
#include <gtest/gtest.h>

#include "tests/support/SourceTree.h"

namespace qx {
namespace {

bool MayAskForTheSystem(const std::string& path) {
  return path.starts_with("platform/") || path.ends_with("Windows.cpp") || path.ends_with("Posix.cpp");
}

TEST(PlatformSeam, OnlySeamFilesAskWhichSystemThisIs) {
  const std::filesystem::path root = QX_SOURCE_DIR;
  const std::string question = std::string("_WIN") + "32";  // in two pieces, or this file would find itself
  int read = 0;
  for (const std::string& path : house::SourcesOf(root)) {
    if (path.starts_with("examples/")) continue;
    std::stringstream text;
    text << std::ifstream(root / path).rdbuf();
    ++read;
    if (MayAskForTheSystem(path)) continue;
    EXPECT_EQ(text.str().find(question + ")"), std::string::npos) << path;
    EXPECT_EQ(text.str().find("ifdef " + question), std::string::npos) << path;
    EXPECT_EQ(text.str().find("ifndef " + question), std::string::npos) << path;
  }
  EXPECT_GT(read, 400);
}

}  // namespace
}  // namespace qx
