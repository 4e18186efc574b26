#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

#include "host/actions/Variables.h"

namespace qx {
namespace {

std::optional<std::string> SmallEnvironment(const std::string& name) {
  if (name == "HOME") return "/home/me";
  if (name == "BOTH") return "environment";
  return std::nullopt;
}

std::string RaisedBy(const Variables& variables, std::string_view text, bool nested = true) {
  try {
    return "expanded to " + variables.Expand(text, nested);
  } catch (const Exception& failure) {
    return failure.Message();
  }
}

TEST(Variables, ReplacesNamesInTheText) {
  Variables variables(nullptr);
  variables.SetProject("ROOT", "src");
  EXPECT_EQ(variables.Expand("%ROOT%\\App.sln and %ROOT%", false), "src\\App.sln and src");
  EXPECT_EQ(variables.Expand("", true), "");
}

TEST(Variables, LooksInOverridesThenProjectThenEnvironment) {
  Variables variables(SmallEnvironment);
  EXPECT_EQ(variables.Expand("%BOTH%", true), "environment");
  variables.SetProject("BOTH", "project");
  EXPECT_EQ(variables.Expand("%BOTH%", true), "project");
  variables.SetOverride("both", "set");
  EXPECT_EQ(variables.Expand("%BOTH%", true), "set");
  EXPECT_EQ(variables.Expand("%HOME%", true), "/home/me");
}

TEST(Variables, DisregardsLetterCase) {
  Variables variables(nullptr);
  variables.SetProject("Root", "src");
  EXPECT_EQ(variables.Expand("%rOOT%", false), "src");
}

TEST(Variables, LastSettingOfANameHolds) {
  Variables variables(nullptr);
  variables.SetOverride("A", "1");
  variables.SetOverride("a", "2");
  EXPECT_EQ(variables.Expand("%A%", false), "2");
}

TEST(Variables, DoubledPercentIsOnePercent) {
  Variables variables(nullptr);
  variables.SetProject("A", "x");
  EXPECT_EQ(variables.Expand("100%% of %%A%%, %A%%%", true), "100% of %A%, x%");
}

TEST(Variables, LonePercentStays) {
  const Variables variables(nullptr);
  EXPECT_EQ(variables.Expand("100%", true), "100%");
  EXPECT_EQ(variables.Expand("50% of it", true), "50% of it");
  EXPECT_EQ(variables.Expand("%", true), "%");
  EXPECT_EQ(variables.Expand("50%\r\n60%", true), "50%\r\n60%");
}

TEST(Variables, UndefinedNameIsRaised) {
  const Variables variables(nullptr);
  EXPECT_EQ(RaisedBy(variables, "a %NoSuch% b"), "Undefined variable : NoSuch");
  EXPECT_EQ(RaisedBy(variables, "a %NoSuch% b", false), "Undefined variable : NoSuch");
}

TEST(Variables, NestedExpandsWhatWasPutIn) {
  Variables variables(nullptr);
  variables.SetProject("A", "<%B%>");
  variables.SetProject("B", "[%C%|%C%]");
  variables.SetProject("C", "100%%");
  EXPECT_EQ(variables.Expand("%A%", true), "<[100%|100%]>");
  EXPECT_EQ(variables.Expand("%A%", false), "<%B%>");
  EXPECT_EQ(variables.Expand("%C%", false), "100%%");
}

TEST(Variables, APercentThatWasWrittenDoubledBeginsNoName) {
  Variables variables(nullptr);
  variables.SetProject("A", "%%B%%");
  variables.SetProject("B", "wrong");
  EXPECT_EQ(variables.Expand("%A%", true), "%B%");
}

TEST(Variables, RefusesAVariableThatContainsItself) {
  Variables variables(nullptr);
  variables.SetProject("A", "x%a%");
  EXPECT_EQ(RaisedBy(variables, "%A%"), "Variable contains itself : A -> a");
  variables.SetProject("B", "%C%");
  variables.SetProject("C", "%D%");
  variables.SetProject("D", "%C%");
  EXPECT_EQ(RaisedBy(variables, "%B%"), "Variable contains itself : C -> D -> C");
  EXPECT_EQ(variables.Expand("%A%", false), "x%a%");
}

TEST(Variables, RefusesATextThatGrowsBeyondBounds) {
  Variables variables(nullptr);
  variables.SetProject("L0", std::string(1000, 'x'));
  for (int i = 1; i < 10; ++i) {
    const std::string below = "%L" + std::to_string(i - 1) + "%";
    std::string value;
    for (int j = 0; j < 10; ++j) value += below;
    variables.SetProject("L" + std::to_string(i), value);
  }
  EXPECT_EQ(RaisedBy(variables, "%L9%"), "The expanded text is longer than 16777216 bytes");
}

TEST(Variables, RefusesTooManyReplacementsOfNothing) {
  Variables variables(nullptr);
  variables.SetProject("L0", "");
  for (int i = 1; i < 60; ++i) {
    const std::string below = "%L" + std::to_string(i - 1) + "%";
    variables.SetProject("L" + std::to_string(i), below + below);
  }
  EXPECT_EQ(RaisedBy(variables, "%L59%"), "Expanding %L59% takes more than 100000 replacements");
}

TEST(Variables, TellsOverridesThatNothingUses) {
  Variables variables([](const std::string& name) {
    return name == "ENV" ? std::optional<std::string>("%Deep%") : std::nullopt;
  });
  for (const char* name : {"Plain", "Nested", "Deep", "Doubled", "Unused"})
    variables.SetOverride(name, "%Plain%");
  variables.SetProject("P", "[%NESTED%]");
  EXPECT_EQ(variables.UnusedOverrides({"%plain% 100%\r\n%%Doubled%%", "%P%%ENV%"}),
            (std::vector<std::string>{"Doubled", "Unused"}));
}

TEST(Variables, RefusesTooDeepNesting) {
  Variables variables(nullptr);
  variables.SetProject("D0", "end");
  for (int i = 1; i <= 300; ++i) {
    variables.SetProject("D" + std::to_string(i), "%D" + std::to_string(i - 1) + "%");
  }
  EXPECT_EQ(variables.Expand("%D199%", true), "end");
  EXPECT_EQ(RaisedBy(variables, "%D300%"), "Variables are nested more than 200 levels deep : D300");
}

TEST(Variables, ReadsTheEnvironmentOfTheProcessInAnyCase) {
  const Variables variables;
  // PATH is set wherever tests run, "Path" nowhere but on Windows, where it is the same.
  EXPECT_FALSE(variables.Expand("%PATH%", false).empty());
  EXPECT_EQ(variables.Expand("%pAtH%", false), variables.Expand("%PATH%", false));
  EXPECT_EQ(RaisedBy(variables, "%QX_NO_SUCH_VARIABLE%"), "Undefined variable : QX_NO_SUCH_VARIABLE");
}

// Some generate their projects. Each name looked for among all of them took a minute.
TEST(Variables, TensOfThousandsTakeNoTime) {
  const auto begin = std::chrono::steady_clock::now();
  Variables variables(nullptr);
  constexpr int kMany = 80'000;
  for (int i = 0; i < kMany; ++i) variables.SetProject("Name" + std::to_string(i), std::to_string(i));
  for (int i = 0; i < kMany; ++i) ASSERT_EQ(variables.Find("NAME" + std::to_string(i)), std::to_string(i));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

}  // namespace
}  // namespace qx
