// What people do to the actions and variables of a build project, and what stays around them.
#include <gtest/gtest.h>

#include "host/project/BuildProject.h"
#include "host/testing/TestFolder.h"

namespace qx {
namespace {

BuildProject Project(const std::string& actions) {
  return BuildProject::Parse(
      "<BuildProject version=\"1\">\n  <Actions>" + actions + "</Actions>\n</BuildProject>\n", "p.xml");
}

std::string ActionsOf(const BuildProject& project) {
  const std::string text = project.Text();
  const std::size_t begin = text.find("<Actions>") + 9;
  return text.substr(begin, text.find("</Actions>") - begin);
}

// Every action after an edit, and what ActionType says of each.
std::string Types(const BuildProject& project) {
  std::string types;
  for (int i = 0; i < project.ActionCount(); ++i) types += project.ActionType(i);
  return types;
}

constexpr const char* kThree =
    "\n    <!-- first of all -->\n\n"
    "    <!-- a -->\n    <Action type=\"A\"/> <!-- still a -->\n"
    "    <Mine/>\n"
    "    <!-- b1 -->\n    <!-- b2 -->\n    <Action type=\"B\"><Property name=\"P\">1</Property></Action>\n"
    "    <Action type=\"C\"/>\n"
    "    <!-- end -->\n  ";

TEST(BuildProjectEdits, DisablesAndEnablesAnAction) {
  BuildProject project = Project("<Action type='A' enabled='false'/>\n<Action type=\"B\"/>");
  EXPECT_FALSE(project.IsEnabled(0));
  EXPECT_TRUE(project.IsEnabled(1));
  project.SetEnabled(0, false);
  EXPECT_EQ(ActionsOf(project), "<Action type='A' enabled='false'/>\n<Action type=\"B\"/>");
  project.SetEnabled(0, true);
  project.SetEnabled(1, false);
  EXPECT_EQ(ActionsOf(project), "<Action type=\"A\"/>\n<Action type=\"B\" enabled=\"False\"/>");
  EXPECT_TRUE(project.IsEnabled(0));
  EXPECT_FALSE(project.IsEnabled(1));
  EXPECT_TRUE(project.Unknown([](const std::string&) { return PropertyTable(); }).empty());
}

TEST(BuildProjectEdits, RefusesToBeNeitherEnabledNorDisabled) {
  try {
    Project("\n<Action type='A' enabled='no'/>");
    FAIL();
  } catch (const Exception& fault) {
    EXPECT_EQ(fault.Message(), "p.xml(3): enabled is True or False, not \"no\"");
  }
}

TEST(BuildProjectEdits, InsertsAnActionOnALineOfItsOwn) {
  BuildProject project = Project(kThree);
  project.InsertAction(1, "N");
  EXPECT_EQ(Types(project), "ANBC");
  EXPECT_EQ(ActionsOf(project),
            "\n    <!-- first of all -->\n\n"
            "    <!-- a -->\n    <Action type=\"A\"/> <!-- still a -->\n"
            "    <Mine/>\n"
            "    <Action type=\"N\"/>\n"
            "    <!-- b1 -->\n    <!-- b2 -->\n    <Action type=\"B\"><Property "
            "name=\"P\">1</Property></Action>\n"
            "    <Action type=\"C\"/>\n"
            "    <!-- end -->\n  ");
  project.InsertAction(0, "M");
  project.InsertAction(5, "L");
  EXPECT_EQ(Types(project), "MANBCL");
  EXPECT_TRUE(ActionsOf(project).starts_with(
      "\n    <!-- first of all -->\n    <Action type=\"M\"/>\n\n    <!-- a -->\n    <Action type=\"A\"/>"));
  EXPECT_TRUE(ActionsOf(project).ends_with("    <!-- end -->\n    <Action type=\"L\"/>\n  "));
}

TEST(BuildProjectEdits, InsertsIntoAProjectWithoutActions) {
  BuildProject project = BuildProject::Empty("p.xml");
  project.InsertAction(0, "A");
  BuildProject appended = BuildProject::Empty("p.xml");
  appended.AppendAction("A");
  EXPECT_EQ(project.Text(), appended.Text());
  EXPECT_THROW(project.InsertAction(3, "B"), std::out_of_range);
  EXPECT_THROW(project.InsertAction(-1, "B"), std::out_of_range);
}

TEST(BuildProjectEdits, RemovesAnActionAndKeepsEveryComment) {
  BuildProject project = Project(kThree);
  project.RemoveAction(1);
  EXPECT_EQ(Types(project), "AC");
  EXPECT_TRUE(ActionsOf(project).ends_with(
      "    <Mine/>\n    <!-- b1 -->\n    <!-- b2 -->\n    <Action type=\"C\"/>\n    <!-- end -->\n  "));
  project.RemoveAction(0);
  project.RemoveAction(0);
  EXPECT_EQ(project.ActionCount(), 0);
  BuildProject plain = Project("\n    <Action type=\"A\"/>\n  ");
  plain.RemoveAction(0);
  EXPECT_EQ(plain.Text(), "<BuildProject version=\"1\">\n  <Actions/>\n</BuildProject>\n");
  EXPECT_THROW(plain.RemoveAction(0), std::out_of_range);
}

TEST(BuildProjectEdits, MovesAnActionWithTheCommentsThatAreAboutIt) {
  BuildProject project = Project(kThree);
  project.MoveAction(0, 2);
  EXPECT_EQ(Types(project), "BCA");
  EXPECT_EQ(ActionsOf(project),
            "\n    <!-- first of all -->\n"
            "    <Mine/>\n"
            "    <!-- b1 -->\n    <!-- b2 -->\n    <Action type=\"B\"><Property "
            "name=\"P\">1</Property></Action>\n"
            "    <Action type=\"C\"/>\n\n"
            "    <!-- a -->\n    <Action type=\"A\"/> <!-- still a -->\n"
            "    <!-- end -->\n  ");
  project.MoveAction(2, 0);
  EXPECT_EQ(Types(project), "ABC");
  project.MoveAction(1, 2);
  EXPECT_EQ(Types(project), "ACB");
  EXPECT_TRUE(ActionsOf(project).ends_with(
      "    <Action type=\"C\"/>\n    <!-- b1 -->\n    <!-- b2 -->\n"
      "    <Action type=\"B\"><Property name=\"P\">1</Property></Action>\n    <!-- end -->\n  "));
  const std::string before = project.Text();
  project.MoveAction(1, 1);
  EXPECT_EQ(project.Text(), before);
  BuildProject oneLine = Project("<Action type=\"A\"/><Action type=\"B\"/><Action type=\"C\"/>");
  oneLine.MoveAction(2, 0);
  oneLine.MoveAction(1, 2);
  EXPECT_EQ(ActionsOf(oneLine), "<Action type=\"C\"/><Action type=\"B\"/><Action type=\"A\"/>");
}

TEST(BuildProjectEdits, MovingThereAndBackGivesTheSameOrder) {
  const std::string original = Project(kThree).Text();
  for (int from = 0; from < 3; ++from) {
    for (int to = 0; to < 3; ++to) {
      BuildProject project = BuildProject::Parse(original, "p.xml");
      project.MoveAction(from, to);
      EXPECT_EQ(project.ActionType(to), std::string(1, "ABC"[from]));
      project.MoveAction(to, from);
      EXPECT_EQ(Types(project), "ABC") << from << to;
      EXPECT_EQ(BuildProject::Parse(project.Text(), "p.xml").ActionCount(), 3);
    }
  }
}

TEST(BuildProjectEdits, DuplicatesAnActionWithAllThatStandsInIt) {
  BuildProject project = Project(
      "\r\n\t<!-- a -->\r\n\t<Action type=\"A\" id=\"7\"><!-- in --><Property "
      "name=\"P\">x&#13;&amp;</Property>"
      "<Other/></Action> <!-- its -->\r\n\t<Action type=\"B\"/>\r\n");
  project.DuplicateAction(0);
  EXPECT_EQ(Types(project), "AAB");
  EXPECT_EQ(project.ReadText(1, "P"), "x\r&");
  project.WriteText(1, "P", "y", "");
  EXPECT_EQ(project.ReadText(0, "P"), "x\r&");
  EXPECT_EQ(ActionsOf(project),
            "\r\n\t<!-- a -->\r\n\t<Action type=\"A\" id=\"7\"><!-- in --><Property "
            "name=\"P\">x&#13;&amp;</Property><Other/></Action> <!-- its -->\n"
            "\t<Action type=\"A\" id=\"7\"><!-- in --><Property name=\"P\">y</Property><Other/></Action>\r\n"
            "\t<Action type=\"B\"/>\r\n");
}

using Variables = std::vector<std::pair<std::string, std::string>>;

TEST(BuildProjectEdits, SetsVariablesInOrderAndKeepsWhatIsKnownToNobody) {
  BuildProject project = BuildProject::Parse(
      "<BuildProject version=\"1\">\n  <Variables>\n    <!-- roots -->\n    <Variable name=\"A\" "
      "note=\"n\">1</Variable>\n    <Variable name=\"B\">2</Variable>\n    <Else/>\n    "
      "<Variable name=\"C\">3</Variable>\n  </Variables>\n</BuildProject>\n",
      "p.xml");
  const std::string before = project.Text();
  project.SetVariables({{"A", "1"}, {"B", "2"}, {"C", "3"}});
  EXPECT_EQ(project.Text(), before);
  const Variables wanted{{"C", "3"}, {"N", "<new>"}, {"A", "one"}};
  project.SetVariables(wanted);
  EXPECT_EQ(project.Variables(), wanted);
  EXPECT_EQ(
      project.Text(),
      "<BuildProject version=\"1\">\n  <Variables>\n    <Else/>\n    <Variable name=\"C\">3</Variable>\n"
      "    <Variable name=\"N\">&lt;new&gt;</Variable>\n    <!-- roots -->\n    <Variable name=\"A\" "
      "note=\"n\">one</Variable>\n  </Variables>\n</BuildProject>\n");
  const Variables odd{{"A", "\x01\xFF"}, {"C", ""}};
  project.SetVariables(odd);
  EXPECT_EQ(BuildProject::Parse(project.Text(), "p.xml").Variables(), odd);
}

TEST(BuildProjectEdits, AddsAndTakesOutAllVariables) {
  BuildProject project = BuildProject::Empty("p.xml");
  project.SetVariables({{"A", "1"}, {"B", ""}});
  EXPECT_NE(project.Text().find("  <Variables>\n    <Variable name=\"A\">1</Variable>\n    <Variable "
                                "name=\"B\"/>\n  </Variables>\n"),
            std::string::npos)
      << project.Text();
  project.SetVariables({});
  EXPECT_EQ(project.Text(), BuildProject::Empty("p.xml").Text());
  BuildProject bare =
      BuildProject::Parse("<BuildProject version=\"1\">\n  <Actions/>\n</BuildProject>\n", "p.xml");
  bare.SetVariables({{"A", "1"}});
  EXPECT_EQ(bare.Text(),
            "<BuildProject version=\"1\">\n  <Variables>\n    <Variable name=\"A\">1</Variable>\n  "
            "</Variables>\n  <Actions/>\n</BuildProject>\n");
}

TEST(BuildProjectEdits, RefusesVariablesThatNobodyCouldName) {
  BuildProject project = BuildProject::Empty("p.xml");
  const std::string before = project.Text();
  const auto refusal = [&](const Variables& variables) {
    return MessageOf([&] { project.SetVariables(variables); });
  };
  EXPECT_EQ(refusal({{"", "1"}}), "A variable needs a name");
  EXPECT_EQ(refusal({{"A%", "1"}}), "The name of the variable \"A%\" holds a percent sign or a line end");
  EXPECT_EQ(refusal({{"Root", "1"}, {"ROOT", "2"}}), "The variable \"ROOT\" stands twice");
  EXPECT_EQ(project.Text(), before);
}

}  // namespace
}  // namespace qx
