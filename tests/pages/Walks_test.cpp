// Walks through the property pages with the real program and the real package, as a user would make them, on
// the pages' models and on their widgets alike: every state against the table, and the cases of walks/*.txt.
//
// A case there:
//   [Page: what is shown]
//   set NAME=VALUE            properties of the action, before its pages are opened
//   > COMMAND                 as qxhost drive takes it
//   < {"key": value, ...}     the answer holds at least this; lists answer member by member
//   saved {"Name": value}     the action's properties, once the program has ended
// Every case runs in a folder with the solutions that the fixture below writes, and their project's file.
#include <gtest/gtest.h>

#include <fstream>
#include <ostream>

#include "tests/pages/ExpectedStates.h"
#include "tests/pages/PagesOnDisk.h"

namespace qx {
namespace {

// Every key of the expected object with an equal value; every member of an expected list likewise.
void ExpectHolds(const Json& answer, const Json& expected, const std::string& where) {
  if (expected.is_object()) {
    ASSERT_TRUE(answer.is_object()) << where << ": " << answer;
    for (const auto& [key, value] : expected.items()) {
      ASSERT_TRUE(answer.contains(key)) << where << ": no " << key << " in " << answer;
      ExpectHolds(answer[key], value, where + " " + key);
    }
  } else if (expected.is_array() && !expected.empty() && expected[0].is_object()) {
    ASSERT_EQ(answer.size(), expected.size()) << where << ": " << answer;
    for (std::size_t i = 0; i < expected.size(); ++i) ExpectHolds(answer[i], expected[i], where);
  } else {
    EXPECT_EQ(answer, expected) << where;
  }
}

class DrivenStates : public testing::TestWithParam<Driven> {};

TEST_P(DrivenStates, AreThoseOfTheTable) {
  if (const std::string missing = Missing(GetParam()); !missing.empty()) GTEST_SKIP() << missing;
  const std::pair<const char*, Words> subjects[] = {
      {kBuild, {"Solution", "Assembly Info", "Project Detection", "Version Info"}},
      {kTest, {"Settings"}},
      {kOptions, {"Visual Studio.Net"}}};
  for (const auto& [subject, pages] : subjects) {
    PagesOnDisk disk(GetParam());
    disk.Add(subject, {});
    Words commands{"pages"};
    for (const std::string& page : pages) commands.push_back("state " + page);
    const std::vector<Json> answers = disk.Drive(subject, commands);
    ASSERT_EQ(answers.size(), commands.size());
    EXPECT_EQ(answers[0], Json(pages));
    for (std::size_t i = 0; i < pages.size(); ++i)
      ExpectStates(answers[i + 1], subject == kOptions ? "" : pages[i], Moment::AfterLoading);
  }
}

std::string DrivenName(Driven driven) { return driven == Driven::Models ? "Models" : "Widgets"; }

INSTANTIATE_TEST_SUITE_P(Of, DrivenStates, testing::ValuesIn(AllDriven()),
                         [](const auto& of) { return DrivenName(of.param); });

struct Walk {
  Driven driven;
  std::string subject;
  std::string name;
  Words settings;
  std::vector<std::pair<std::string, Json>> steps;  // command, what its answer holds
  Json saved;
};
void PrintTo(const Walk& walk, std::ostream* out) { *out << walk.name; }

std::vector<Walk> ReadWalks(const char* file, const char* subject, Driven driven) {
  std::vector<Walk> walks;
  std::ifstream in(std::string(QX_SOURCE_DIR) + "/tests/pages/walks/" + file);
  for (std::string line; std::getline(in, line);) {
    const auto rest = [&line](std::size_t begin) { return line.substr(begin); };
    if (line.starts_with('['))
      walks.push_back({driven, subject, line.substr(1, line.size() - 2), {}, {}, {}});
    if (line.starts_with("set ")) walks.back().settings.push_back(rest(4));
    if (line.starts_with("> ")) walks.back().steps.emplace_back(rest(2), Json::object());
    if (line.starts_with("< ")) walks.back().steps.back().second = Json::parse(rest(2));
    if (line.starts_with("saved ")) walks.back().saved = Json::parse(rest(6));
  }
  return walks;
}

// Each walk, on everything that can be driven.
std::vector<Walk> EveryWalk(const char* file, const char* subject) {
  std::vector<Walk> walks;
  for (const Driven driven : AllDriven()) {
    const std::vector<Walk> more = ReadWalks(file, subject, driven);
    walks.insert(walks.end(), more.begin(), more.end());
  }
  return walks;
}

std::string TestName(const testing::TestParamInfo<Walk>& info) {
  std::string name;
  for (const char c : info.param.name) {
    if (c == '\'') continue;
    const bool begins = name.empty() || name.back() == '_';
    const bool letter = std::isalnum(static_cast<unsigned char>(c)) != 0;
    if (letter) name += begins ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
    if (!letter && !begins) name += '_';
  }
  std::erase(name, '_');
  return info.param.driven == Driven::Models ? name : name + "OnWidgets";
}

class Walks : public testing::TestWithParam<Walk> {};

TEST_P(Walks, GoAsWritten) {
  const Walk& walk = GetParam();
  if (const std::string missing = Missing(walk.driven); !missing.empty()) GTEST_SKIP() << missing;
  PagesOnDisk disk(walk.driven);
  ASSERT_NO_FATAL_FAILURE(disk.Add(walk.subject, walk.settings));
  Words commands;
  for (const auto& [command, expected] : walk.steps) commands.push_back(command);
  const std::vector<Json> answers = disk.Drive(walk.subject, commands);
  ASSERT_EQ(answers.size(), commands.size());
  for (std::size_t i = 0; i < answers.size(); ++i) {
    const Json& expected = walk.steps[i].second;
    ExpectHolds(answers[i], expected, commands[i]);
    if (expected.is_object() && !expected.contains("error")) {
      EXPECT_FALSE(answers[i].is_object() && answers[i].contains("error")) << commands[i] << answers[i];
    }
  }
  if (!walk.saved.is_null()) ExpectHolds(disk.Saved(walk.subject), walk.saved, "saved");
}

INSTANTIATE_TEST_SUITE_P(Solution, Walks, testing::ValuesIn(EveryWalk("solution.txt", kBuild)), TestName);
INSTANTIATE_TEST_SUITE_P(Assembly, Walks, testing::ValuesIn(EveryWalk("assembly.txt", kBuild)), TestName);
INSTANTIATE_TEST_SUITE_P(Detection, Walks, testing::ValuesIn(EveryWalk("detection.txt", kBuild)), TestName);
INSTANTIATE_TEST_SUITE_P(Version, Walks, testing::ValuesIn(EveryWalk("version.txt", kBuild)), TestName);
INSTANTIATE_TEST_SUITE_P(Settings, Walks, testing::ValuesIn(EveryWalk("settings.txt", kTest)), TestName);
INSTANTIATE_TEST_SUITE_P(Options, Walks, testing::ValuesIn(EveryWalk("options.txt", kOptions)), TestName);

}  // namespace
}  // namespace qx
