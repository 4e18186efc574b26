#include "platform/commandline/Invocation.h"

#include <gtest/gtest.h>

#include <array>

namespace qx::cli {
namespace {

using Words = std::vector<std::string>;

constexpr std::array<std::string_view, 2> kColours{"red", "green"};
constexpr std::array kOptions{OptionRow{"--load", "PATH", ValueKind::File, {}, true, ""}, kHelpOption,
                              kVersionOption};
constexpr std::array kPaintOptions{
    OptionRow{"--colour", "WHEN", ValueKind::Choice, kColours, false, ""},
    OptionRow{"--coats", "N", ValueKind::Number, {}, false, ""},
    OptionRow{"--dry", "SECONDS", ValueKind::Seconds, {}, false, ""},
    OptionRow{"--set", "NAME=VALUE", ValueKind::Assignment, {}, true, ""},
    OptionRow{"--gloss", "", ValueKind::None, {}, false, ""},
};
constexpr std::array kPaintOperands{OperandRow{"WALL", ValueKind::Text, 1, 1},
                                    OperandRow{"MORE", ValueKind::Text, 0, 1}};
constexpr std::array kCommands{CommandRow{"paint", kPaintOperands, kPaintOptions, "", "", "", "", nullptr},
                               CommandRow{"wash", {}, {}, "", "", "", "", nullptr}};
constexpr ProgramRow kHouse{"house", kOptions, kCommands, {}};

constexpr std::array kOpenOperands{OperandRow{"DOOR", ValueKind::File, 0, 1}};
constexpr ProgramRow kKey{"key", kOptions, {}, kOpenOperands};

// What is wrong with a command line; empty: nothing.
std::string FaultOf(const ProgramRow& program, const Words& words) {
  try {
    ParseArguments(program, words);
    return "";
  } catch (const Exception& fault) {
    return fault.Message();
  }
}

TEST(Invocation, TakesOptionsOfProgramAndCommandAnywhere) {
  const Invocation found = ParseArguments(
      kHouse, {"--load", "a", "--gloss", "paint", "--coats=2", "north", "--load=b=c", "--", "--east"});
  EXPECT_EQ(found.command, FindCommand(kHouse, "paint"));
  EXPECT_EQ(found.operands, (Words{"north", "--east"}));
  EXPECT_EQ(found.Values("--load"), (Words{"a", "b=c"}));
  EXPECT_TRUE(found.Has("--gloss"));
  EXPECT_FALSE(found.Has("--colour"));
  EXPECT_EQ(found.Number("--coats", 1), 2);
  EXPECT_EQ(found.Number("--dry", 7), 7);
  EXPECT_EQ(found.Value("--set"), std::nullopt);
}

TEST(Invocation, ServesProgramsWithoutCommands) {
  const Invocation found = ParseArguments(kKey, {"front", "--load=x"});
  EXPECT_EQ(found.command, nullptr);
  EXPECT_EQ(found.operands, Words{"front"});
  EXPECT_EQ(found.Value("--load"), "x");
  EXPECT_EQ(FaultOf(kKey, {}), "");
  EXPECT_EQ(FaultOf(kKey, {"front", "back"}), "key does not take \"back\"; see key --help");
  EXPECT_EQ(
      FaultOf(kKey, {"--lod", "x"}),
      "Unknown option \"--lod\"; supported: --load, --help, --version (nearest: --load); see key --help");
}

TEST(Invocation, NamesWhatIsWrongAndWhereHelpIs) {
  const std::vector<std::pair<Words, std::string>> cases{
      {{"pain"}, "Unknown command \"pain\"; supported: paint, wash (nearest: paint); see house --help"},
      {{"paint", "a", "--glos"},
       "Unknown option \"--glos\"; supported: --load, --help, --version, --colour, --coats, --dry, --set, "
       "--gloss (nearest: --gloss); see house help paint"},
      {{"--gloss", "wash"},
       "house wash has no option \"--gloss\"; supported: --load, --help, --version; see house help wash"},
      {{"paint"}, "house paint needs WALL; see house help paint"},
      {{"paint", "a", "b", "c"}, "house paint does not take \"c\"; see house help paint"},
      {{"paint", "a", "--gloss=1"}, "--gloss takes no value"},
      {{"paint", "a", "--coats"}, "--coats needs a value: --coats N"},
      {{"paint", "a", "--coats", "0"}, "--coats takes a whole number from 1 on, not \"0\""},
      {{"paint", "a", "--dry", "-1"}, "--dry takes a number of seconds above 0, not \"-1\""},
      {{"paint", "a", "--colour", "gren"},
       "--colour cannot be \"gren\"; supported: red, green (nearest: green)"},
      {{"paint", "a", "--coats", "1", "--coats", "2"}, "--coats is given twice"},
      {{"paint", "a", "--set", "=x"}, "\"=x\" is not of the form NAME=VALUE"},
      {{"--load", "", "wash"}, "--load needs the name of a file"},
  };
  for (const auto& [words, message] : cases) EXPECT_EQ(FaultOf(kHouse, words), message);
}

TEST(Invocation, TellsAFaultByItsKind) {
  const auto kindOf = [](const Words& words) -> std::pair<UsageFault::Kind, std::string> {
    try {
      ParseArguments(kHouse, words);
    } catch (const UsageFault& fault) {
      return {fault.kind, fault.word};
    }
    return {UsageFault::Kind::WrongValue, "no fault"};
  };
  using enum UsageFault::Kind;
  EXPECT_EQ(kindOf({"pain"}), std::pair(UnknownCommand, std::string("pain")));
  EXPECT_EQ(kindOf({"paint", "a", "--glos=1"}), std::pair(UnknownOption, std::string("--glos")));
  EXPECT_EQ(kindOf({"--gloss", "wash"}), std::pair(UnknownOption, std::string("--gloss")));
  EXPECT_EQ(kindOf({"paint"}), std::pair(WrongOperands, std::string()));
}

TEST(Invocation, AsksForNoOperandsWhereHelpIsWanted) {
  for (const char* word : {"--help", "-h"}) {
    EXPECT_TRUE(ParseArguments(kHouse, {"paint", word}).Has("--help")) << word;
    EXPECT_TRUE(ParseArguments(kKey, {word}).Has("--help")) << word;
  }
  EXPECT_TRUE(ParseArguments(kHouse, {"--version"}).Has("--version"));
}

}  // namespace
}  // namespace qx::cli
