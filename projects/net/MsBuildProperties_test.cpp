#include "projects/net/MsBuildProperties.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

TEST(MsBuildProperties, ExpandsNamesOfAnyCase) {
  MsBuildProperties properties("/p/");
  properties.Set("Name", "x");
  properties.Set("Twice", "$(NAME)$(name)");
  EXPECT_EQ(properties.Get("twice").value, "xx");
  EXPECT_EQ(properties.Expand("[$(None)]").value, "[]");
  EXPECT_EQ(properties.Expand("a%28b%29 50%").value, "a(b) 50%");
}

TEST(MsBuildProperties, KeepsWhatWasGivenFromOutside) {
  MsBuildProperties properties("/p/");
  properties.Fix("A", "outside");
  properties.Set("a", "file");
  EXPECT_EQ(properties.Get("A").value, "outside");
}

TEST(MsBuildProperties, HandsADoubtOn) {
  MsBuildProperties properties("/p/");
  properties.Set("A", "a");
  properties.DoubtAll("who knows");
  properties.Set("B", "$(A)b");
  properties.Set("C", "certain");
  EXPECT_EQ(properties.Get("A").doubt, "who knows");
  EXPECT_EQ(properties.Get("B").doubt, "who knows");
  EXPECT_EQ(properties.Get("Never").doubt, "who knows");
  EXPECT_EQ(properties.Get("C").doubt, "");
  EXPECT_EQ(properties.Expand("@(Compile)").doubt, "\"@(Compile)\" is known to the build alone");
  EXPECT_NE(properties.Expand("$([System.DateTime]::Now)").doubt, "");
}

TEST(MsBuildProperties, IsCertainWhereAnUndecidedConditionChangesNothing) {
  MsBuildProperties properties("/p/");
  properties.Set("A", "same");
  properties.Set("A", "same", "undecided");
  EXPECT_EQ(properties.Get("A").doubt, "");
  properties.Set("A", "other", "undecided");
  EXPECT_EQ(properties.Get("A").doubt, "undecided");
}

TEST(MsBuildProperties, StaysSmallWhateverIsDoubled) {
  MsBuildProperties properties("/p/");
  properties.Set("A", "xxxxxxxx");
  for (int i = 0; i < 100000; ++i)
    properties.Set("A" + std::to_string(i % 1000), "$(A)$(A)$(A" + std::to_string(i % 7) + ")");
  EXPECT_LT(properties.Get("A5").value.size(), 200000u);
}

struct Condition {
  const char* text;
  Truth truth;
};
class MsBuildCondition : public testing::TestWithParam<Condition> {};

TEST_P(MsBuildCondition, IsDecided) {
  const TestFolder folder;
  folder.Write("There.txt", "");
  MsBuildProperties properties(folder.Path());
  properties.Set("Configuration", "Release");
  properties.Set("Platform", "AnyCPU");
  properties.Doubt("OS", "depends");
  std::string doubt;
  EXPECT_EQ(properties.Decide(GetParam().text, doubt), GetParam().truth) << doubt;
  EXPECT_EQ(doubt.empty(), GetParam().truth != Truth::Unknown);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, MsBuildCondition,
    testing::Values(Condition{"", Truth::Yes}, Condition{" '$(Configuration)' == '' ", Truth::No},
                    Condition{" '$(Configuration)|$(Platform)' == 'release|anycpu' ", Truth::Yes},
                    Condition{"'$(Configuration)'!='Debug'", Truth::Yes},
                    Condition{"$(Configuration) == Release", Truth::Yes},
                    Condition{"!('a' == 'b') and ('a'=='a' or 'a'=='b')", Truth::Yes},
                    Condition{"'a'=='b' or 'a'=='a' and 'b'=='a'", Truth::No},
                    Condition{"Exists('there.TXT')", Truth::Yes},
                    Condition{"!Exists('gone.txt')", Truth::Yes},
                    Condition{"HasTrailingSlash('a\\')", Truth::Yes}, Condition{"'1.0' == '1'", Truth::Yes},
                    Condition{"2 > 10", Truth::No}, Condition{"true", Truth::Yes},
                    Condition{"'off'", Truth::No}, Condition{"'$(OS)' == 'Unix'", Truth::Unknown},
                    Condition{"'$(OS)' == 'Unix' and 'a' == 'b'", Truth::No},
                    Condition{"'$(OS)' == 'Unix' or 'a' == 'a'", Truth::Yes},
                    Condition{"'a' == 'a", Truth::Unknown}, Condition{"('a' == 'a'", Truth::Unknown},
                    Condition{"What('a')", Truth::Unknown}, Condition{"'a' == 'a' nonsense", Truth::Unknown},
                    Condition{"'a'", Truth::Unknown}, Condition{"@(Items) == ''", Truth::Unknown}));

TEST(MsBuildCondition, NamesTheConditionThatCannotBeDecided) {
  MsBuildProperties properties("/p/");
  properties.Doubt("OS", "$(OS) depends on where it is built");
  std::string doubt;
  properties.Decide(" '$(OS)' == 'Unix' ", doubt);
  EXPECT_EQ(doubt,
            "the condition \"'$(OS)' == 'Unix'\" cannot be decided: $(OS) depends on where it is built");
}

TEST(MsBuildCondition, SurvivesDeepNesting) {
  MsBuildProperties properties("/p/");
  std::string doubt;
  EXPECT_EQ(properties.Decide(std::string(100000, '('), doubt), Truth::Unknown);
  EXPECT_EQ(properties.Decide(std::string(100000, '!') + "true", doubt), Truth::Unknown);
}

}  // namespace
}  // namespace qx
