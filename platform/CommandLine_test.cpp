#include "platform/CommandLine.h"

#include <gtest/gtest.h>

#include <random>

namespace qx {
namespace {

using Arguments = std::vector<std::string>;

TEST(SplitCommandLine, GivesNothingForBlanks) {
  EXPECT_EQ(SplitCommandLine(""), Arguments{});
  EXPECT_EQ(SplitCommandLine(" \t  "), Arguments{});
}

TEST(SplitCommandLine, SeparatesAtBlanksAndTabsOnly) {
  EXPECT_EQ(SplitCommandLine("  a\tb  c\n d "), (Arguments{"a", "b", "c\n", "d"}));
}

TEST(SplitCommandLine, QuotesInsideAnArgumentGroupAndVanish) {
  EXPECT_EQ(SplitCommandLine(R"("C:\src\App.sln" /t:Rebuild /p:Configuration="Release";Platform="Any CPU")"),
            (Arguments{R"(C:\src\App.sln)", "/t:Rebuild", "/p:Configuration=Release;Platform=Any CPU"}));
  EXPECT_EQ(SplitCommandLine(R"(/p:Platform="Any CPU";OutputPath="bin\Release")"),
            Arguments{R"(/p:Platform=Any CPU;OutputPath=bin\Release)"});
}

TEST(SplitCommandLine, BackslashesAwayFromQuotesAreText) {
  EXPECT_EQ(SplitCommandLine(R"(\\server\share a\\b c\ d)"),
            (Arguments{R"(\\server\share)", R"(a\\b)", R"(c\)", "d"}));
}

TEST(SplitCommandLine, BackslashesBeforeAQuoteAreHalved) {
  EXPECT_EQ(SplitCommandLine(R"("a\\" b)"), (Arguments{R"(a\)", "b"}));
  EXPECT_EQ(SplitCommandLine(R"(a\"b "c \" d")"), (Arguments{"a\"b", "c \" d"}));
  EXPECT_EQ(SplitCommandLine(R"(a\\\"b)"), Arguments{R"(a\"b)"});
  EXPECT_EQ(SplitCommandLine(R"(a\\\\"b c")"), Arguments{R"(a\\b c)"});
}

TEST(SplitCommandLine, AFolderWithItsDelimiterEatsTheClosingQuote) {
  EXPECT_EQ(SplitCommandLine(R"("C:\out\" next)"), Arguments{R"(C:\out" next)"});
}

TEST(SplitCommandLine, DoubledQuoteInsideQuotesStandsForOne) {
  EXPECT_EQ(SplitCommandLine(R"("a""b c" d)"), (Arguments{"a\"b c", "d"}));
  EXPECT_EQ(SplitCommandLine(R"("""" x)"), (Arguments{"\"", "x"}));
}

TEST(SplitCommandLine, EmptyQuotesAreAnEmptyArgument) {
  EXPECT_EQ(SplitCommandLine(R"("" a "")"), (Arguments{"", "a", ""}));
  EXPECT_EQ(SplitCommandLine(R"(a""b)"), Arguments{"ab"});
}

TEST(SplitCommandLine, AMissingLastQuoteIsNoError) {
  EXPECT_EQ(SplitCommandLine(R"(a "b c)"), (Arguments{"a", "b c"}));
  EXPECT_EQ(SplitCommandLine("\""), Arguments{""});
}

TEST(SplitCommandLine, OtherBytesPassUnchanged) {
  EXPECT_EQ(SplitCommandLine("\xff\xc3\xa4 'x y' $HOME *"),
            (Arguments{"\xff\xc3\xa4", "'x", "y'", "$HOME", "*"}));
}

TEST(QuoteArgument, QuotesOnlyWhereNeeded) {
  EXPECT_EQ(QuoteArgument("/t:Build"), "/t:Build");
  EXPECT_EQ(QuoteArgument(R"(C:\dir\)"), R"(C:\dir\)");
  EXPECT_EQ(QuoteArgument(""), R"("")");
  EXPECT_EQ(QuoteArgument(R"(C:\a b\)"), R"("C:\a b\\")");
  EXPECT_EQ(QuoteArgument(R"(a\"b)"), R"(a\\\"b)");
}

TEST(QuoteArgument, IsUndoneBySplitting) {
  std::mt19937 random(20050907);
  const std::string alphabet = "\\\\\\\"\"\" \tab;=\n\xe4";
  for (int round = 0; round < 20000; ++round) {
    Arguments arguments(random() % 4);
    std::string line;
    for (std::string& argument : arguments) {
      for (auto left = random() % 9; left > 0; --left) argument += alphabet[random() % alphabet.size()];
      line.append(line.empty() ? "" : " ").append(QuoteArgument(argument));
    }
    ASSERT_EQ(SplitCommandLine(line), arguments) << line;
  }
}

}  // namespace
}  // namespace qx
