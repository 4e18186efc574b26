// What the documents say of the tree is so: the tests and files that docs/deliberate.md names, and the files that
// docs/architecture.md sends a newcomer to.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <regex>

#include "tests/support/SourceTree.h"

namespace qx::house {
namespace {

const fs::path kRoot = QX_SOURCE_DIR;
constexpr const char* kOddities = "docs/deliberate.md";

using Words = std::set<std::string>;

std::string TextOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// The cells of each row of a document's tables, their headings left out. A bar behind a backslash is text.
std::vector<std::vector<std::string>> TableRows(const std::string& document) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream in(TextOf(kRoot / document));
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("| ---")) rows.pop_back();
    if (!line.starts_with("| ") || line.starts_with("| ---")) continue;
    std::vector<std::string> cells(1);
    for (std::size_t i = 1; i < line.size(); ++i) {
      if (line[i] == '|' && line[i - 1] != '\\')
        cells.emplace_back();
      else
        cells.back() += line[i];
    }
    cells.pop_back();  // behind the last bar
    rows.push_back(std::move(cells));
  }
  return rows;
}

// What stands between backquotes.
Words NamesIn(const std::string& cell) {
  static const std::regex quoted("`([^`]+)`");
  Words names;
  for (std::sregex_iterator at(cell.begin(), cell.end(), quoted), end; at != end; ++at)
    names.insert((*at)[1]);
  return names;
}

// "Suite.Name" of every test in the tree.
Words Tests() {
  static const std::regex test(R"(\bTEST(?:_[FP])?\(\s*(\w+),\s*(\w+)\))");
  Words tests;
  for (const std::string& path : SourcesOf(kRoot)) {
    if (path.find("_test.") == std::string::npos) continue;
    const std::string text = TextOf(kRoot / path);
    for (std::sregex_iterator at(text.begin(), text.end(), test), end; at != end; ++at)
      tests.insert((*at)[1].str() + "." + (*at)[2].str());
  }
  return tests;
}

TEST(Documents, EveryOddityHasTheTestThatIsNamed) {
  const Words tests = Tests();
  const auto rows = TableRows(kOddities);
  EXPECT_GT(rows.size(), 100u) << "the test lost its way: too few rows were read";
  for (const auto& row : rows) {
    ASSERT_EQ(row.size(), 5u) << row.front();
    EXPECT_FALSE(NamesIn(row.back()).empty()) << row.front() << "has no test";
    for (const std::string& name : NamesIn(row.back()))
      EXPECT_TRUE(tests.contains(name)) << row.front() << "is pinned by no test called " << name;
  }
}

// Whoever reads the code is sent to the page, and whoever reads the page to the code: to a unit, whose header may
// speak of it too.
TEST(Documents, TheFilesOfTheOdditiesAreThoseThatNameTheirPage) {
  Words naming;
  for (const std::string& path : SourcesOf(kRoot)) {
    if (!path.starts_with("tests/") && TextOf(kRoot / path).find(kOddities) != std::string::npos)
      naming.insert(fs::path(path).filename().string());
  }
  Words named;
  for (const auto& row : TableRows(kOddities)) {
    ASSERT_EQ(row.size(), 5u) << row.front();
    EXPECT_FALSE(NamesIn(row[3]).empty()) << row.front() << "names no file";
    for (const std::string& name : NamesIn(row[3])) {
      EXPECT_TRUE(naming.contains(name)) << name << " does not name " << kOddities;
      named.insert(fs::path(name).stem().string());
    }
  }
  for (const std::string& name : naming)
    EXPECT_TRUE(named.contains(fs::path(name).stem().string())) << kOddities << " does not name " << name;
}

TEST(Documents, PicturesOfTheReadmeAreThereAndSmall) {
  static const std::regex picture(R"(docs/pictures/[\w-]+\.(?:png|svg))");
  const std::string readme = TextOf(kRoot / "README.md");
  int count = 0;
  for (std::sregex_iterator at(readme.begin(), readme.end(), picture), end; at != end; ++at) {
    const fs::path file = kRoot / at->str();
    ASSERT_TRUE(fs::exists(file)) << file;
    EXPECT_LT(fs::file_size(file), 1'000'000u) << file;
    ++count;
  }
  EXPECT_GT(count, 10) << "the test lost its way: too few pictures were found";
}

// The terminals' pictures end with what was read back from the programs.
TEST(Documents, PicturesOfTerminalsEndWithTheVersionsThatWereReadBack) {
  const std::string played = TextOf(kRoot / "docs/pictures/two-commands.svg");
  const std::string still = TextOf(kRoot / "docs/pictures/log.svg");
  for (const char* typed : {">$ qxhost init Tally.sln --stamp<", ">$ qxhost run Tally.build.xml<"})
    EXPECT_NE(played.find(typed), std::string::npos) << typed;
  EXPECT_NE(played.find(">assembly version  1.0.1.0</text>\n</svg>"), std::string::npos);
  EXPECT_NE(still.find("Tally/bin/Release/Tally.exe "), std::string::npos);
  EXPECT_NE(still.find(">This is version 1.2.1.0.</text>\n</svg>"), std::string::npos);
}

TEST(Documents, NewcomersAreSentToFilesThatExist) {
  int count = 0;
  for (const auto& row : TableRows("docs/architecture.md")) {
    for (const std::string& name : NamesIn(row.back())) {
      if (!name.ends_with(".cpp") && !name.ends_with(".h")) continue;
      if (name.find('*') != std::string::npos) continue;
      ++count;
      EXPECT_TRUE(fs::exists(kRoot / name)) << row.front() << "is not in " << name;
    }
  }
  EXPECT_GT(count, 40) << "the test lost its way: too few names were read";
}

}  // namespace
}  // namespace qx::house
