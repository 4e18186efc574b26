// System differences live behind seams: `_WIN32` is asked for in platform/ and in files named for their
// system only.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

bool MayAskForTheSystem(const std::string& path) {
  return path.starts_with("platform/") || path.ends_with("Windows.cpp") || path.ends_with("Posix.cpp");
}

TEST(PlatformSeam, OnlySeamFilesAskWhichSystemThisIs) {
  const fs::path root = QX_SOURCE_DIR;
  const std::string question = std::string("_WIN") + "32";  // in two pieces, or this file would find itself
  int read = 0;
  for (const char* folder : {"plugin", "platform", "host", "options", "solution", "versioning", "weblocation",
                             "actions", "pages", "registration", "tools", "tests", "bench"}) {
    if (!fs::exists(root / folder)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
      const std::string path = fs::relative(entry.path(), root).generic_string();
      if (!path.ends_with(".h") && !path.ends_with(".cpp")) continue;
      std::stringstream text;
      text << std::ifstream(entry.path()).rdbuf();
      ++read;
      if (MayAskForTheSystem(path)) continue;
      EXPECT_EQ(text.str().find(question + ")"), std::string::npos) << path;
      EXPECT_EQ(text.str().find("ifdef " + question), std::string::npos) << path;
      EXPECT_EQ(text.str().find("ifndef " + question), std::string::npos) << path;
    }
  }
  EXPECT_GT(read, 20);
}

}  // namespace
