#include "projects/vc/VcMacros.h"

#include "host/testing/TestFolder.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using Items = std::vector<std::string>;

VcMacros WithEnvironment() {
  return VcMacros([](const std::string& name) -> std::optional<std::string> {
    return name == "FROM_OUTSIDE" ? std::optional<std::string>("outside $(OutDir)") : std::nullopt;
  });
}

TEST(VcMacros, StandForTheirValueWhateverTheLetterCase) {
  VcMacros macros = WithEnvironment();
  macros.Set("OutDir", "$(ConfigurationName)\\bin");
  macros.Set("ConfigurationName", "Release");
  EXPECT_EQ(macros.Expand("a $(outdir) b"), "a Release\\bin b");
  EXPECT_EQ(macros.Expand("$(OutDir"), "$(OutDir");
  EXPECT_EQ(macros.Expand("cost $5 (net)"), "cost $5 (net)");
}

TEST(VcMacros, OfTheEnvironmentComeAsTheyAre) {
  EXPECT_EQ(WithEnvironment().Expand("<$(FROM_OUTSIDE)>"), "<outside $(OutDir)>");
}

TEST(VcMacros, NameThoseThatNobodyKnows) {
  std::set<std::string> unknown;
  EXPECT_EQ(WithEnvironment().Expand("[$(Nobody)$(Knows)]", unknown), "[]");
  EXPECT_EQ(unknown, (std::set<std::string>{"Knows", "Nobody"}));
}

TEST(VcMacros, OfAFileStandBeforeThoseOfTheProject) {
  VcMacros project = WithEnvironment(), file(&project);
  project.Set("InputName", "project");
  project.Set("Object", "$(InputName).obj");
  file.Set("InputName", "a");
  EXPECT_EQ(file.Expand("$(Object)"), "a.obj");
  EXPECT_EQ(project.Expand("$(Object)"), "project.obj");
}

TEST(VcMacros, RefuseACircleAndEndlessGrowth) {
  VcMacros macros = WithEnvironment();
  macros.Set("A", "$(B)");
  macros.Set("B", "$(A)");
  EXPECT_EQ(MessageOf([&] { macros.Expand("$(A)"); }), "its macros hold one another without end");
  macros.Set("L0", std::string(1000, 'x'));
  for (int level = 1; level < 8; ++level) {
    std::string value;
    for (int copy = 0; copy < 20; ++copy) value += "$(L" + std::to_string(level - 1) + ")";
    macros.Set("L" + std::to_string(level), value);
  }
  EXPECT_EQ(MessageOf([&] { macros.Expand("$(L7)"); }), "its macros make a text of over a megabyte");
}

TEST(VcLists, OfDefinesKeepQuotesBehindABackslash) {
  EXPECT_EQ(SplitVcList("WIN32;NDEBUG,A=1", VcList::Defines), (Items{"WIN32", "NDEBUG", "A=1"}));
  EXPECT_EQ(SplitVcList(R"(CONFIG="\"config.h\"";B)", VcList::Defines), (Items{R"(CONFIG="config.h")", "B"}));
  EXPECT_EQ(SplitVcList(R"(T=\"a b\";"U=1;2")", VcList::Defines), (Items{R"(T="a b")", "U=1;2"}));
  EXPECT_EQ(SplitVcList("A=x&y", VcList::Defines), (Items{"A=x&y"}));
}

TEST(VcLists, OfFoldersAreDividedBySemicolonsAndCommas) {
  EXPECT_EQ(SplitVcList(R"("..\a b\";.\h, ..\c)", VcList::Folders), (Items{"..\\a b\\", ".\\h", "..\\c"}));
}

TEST(VcLists, OfFilesAreDividedByBlanks) {
  EXPECT_EQ(SplitVcList("a.lib  \"..\\my libs\\b.lib\"\r\nc.obj", VcList::Files),
            (Items{"a.lib", "..\\my libs\\b.lib", "c.obj"}));
}

}  // namespace
}  // namespace qx
