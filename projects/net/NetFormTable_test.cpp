#include "projects/net/NetFormTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

namespace qx {
namespace {

TEST(NetFormTable, HoldsEachNameOnce) {
  std::set<std::string> names;
  for (const NetFormEntry& entry : NetFormTable()) {
    EXPECT_TRUE(names.insert(std::to_string(static_cast<int>(entry.form)) + entry.name).second) << entry.name;
    EXPECT_NE(std::string(entry.what), "") << entry.name;
  }
}

TEST(NetFormTable, FindsNamesAndPatterns) {
  const auto what = [](NetForm form, const char* name) {
    const NetFormEntry* entry = FindNetFormEntry(form, name);
    return entry == nullptr ? std::string("none") : std::string(entry->name);
  };
  EXPECT_EQ(what(NetForm::Attributes, "VisualBasic@ProjectGuid"), "CSHARP@ProjectGuid");
  EXPECT_EQ(what(NetForm::Attributes, "Config@Colour"), "none");
  EXPECT_EQ(what(NetForm::MsBuild, "Page/SubType"), "*/SubType");
  EXPECT_EQ(what(NetForm::MsBuild, "WebReferenceUrl/RelPath"), "WebReferenceUrl/*");
  EXPECT_EQ(what(NetForm::MsBuild, "Config@Name"), "none");
}

// The page is made from the table: a row that is changed here has to be copied there.
TEST(NetFormTable, StandsInThePage) {
  std::ifstream in(QX_SOURCE_DIR "/docs/engine-dotnet.md", std::ios::binary);
  const std::string page(std::istreambuf_iterator<char>(in), {});
  EXPECT_NE(page.find(NetFormTableText()), std::string::npos) << "docs/engine-dotnet.md lacks this text:\n"
                                                              << NetFormTableText();
}

}  // namespace
}  // namespace qx
