#include "host/project/BuildProject.h"

#include <gtest/gtest.h>

#include "host/testing/SampleAction.h"
#include "host/testing/TestHost.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using Items = std::vector<std::string>;

constexpr const char* kProject =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<BuildProject version=\"1\">\n"
    "  <Variables>\n"
    "    <Variable name=\"ROOT\">src</Variable>\n"
    "    <Variable name=\"A&amp;B\"> &lt;x&gt; </Variable>\n"
    "  </Variables>\n"
    "  <Actions>\n"
    "    <!-- the one that matters -->\n"
    "    <Action type=\"Sample\">\n"
    "      <Property name=\"Title\">%ROOT%\\App.sln</Property>\n"
    "      <Property name=\"Parts\"><Item>{A}</Item><Item>a;b</Item></Property>\n"
    "      <Property name=\"Wanted\">True</Property>\n"
    "    </Action>\n"
    "  </Actions>\n"
    "</BuildProject>\n";

std::string Fault(const std::string& text) {
  try {
    BuildProject::Parse(text, "p.xml");
  } catch (const Exception& fault) {
    return fault.Message();
  }
  return "accepted";
}

std::string Wrap(const std::string& properties) {
  return "<BuildProject version=\"1\"><Actions><Action type=\"Sample\">" + properties +
         "</Action></Actions></BuildProject>";
}

std::string FaultOfReading(const std::string& properties) {
  const BuildProject project = BuildProject::Parse(Wrap(properties), "p.xml");
  TestHost host;
  const auto action = host.Make(SampleActionClass());
  try {
    project.ReadAction(0, *action);
  } catch (const Exception& fault) {
    return fault.Message();
  }
  return "accepted";
}

BuildProject::KnownActions KnowsSample() {
  return [](const std::string& type) -> std::optional<PropertyTable> {
    if (type != "Sample") return std::nullopt;
    return SampleActionClass().properties;
  };
}

TEST(BuildProject, ReadsVariablesActionsTextsAndLists) {
  const BuildProject project = BuildProject::Parse(kProject, "p.xml");
  const std::vector<std::pair<std::string, std::string>> variables{{"ROOT", "src"}, {"A&B", " <x> "}};
  EXPECT_EQ(project.Variables(), variables);
  ASSERT_EQ(project.ActionCount(), 1);
  EXPECT_EQ(project.ActionType(0), "Sample");
  EXPECT_EQ(project.ReadText(0, "Title"), "%ROOT%\\App.sln");
  EXPECT_EQ(project.ReadList(0, "Parts"), (Items{"{A}", "a;b"}));
  EXPECT_EQ(project.ReadText(0, "title"), std::nullopt);  // names are exact
  EXPECT_EQ(project.Text(), kProject);
}

TEST(BuildProject, WritesAnEmptyProject) {
  EXPECT_EQ(BuildProject::Empty("p.xml").Text(),
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<BuildProject version=\"1\">\n  <Variables/>\n  "
            "<Actions/>\n"
            "</BuildProject>\n");
}

TEST(BuildProject, WritesOnePropertyALineInTheOrderGiven) {
  BuildProject project = BuildProject::Empty("p.xml");
  EXPECT_EQ(project.AppendAction("A \"quoted\" <name>"), 0);
  project.WriteText(0, "One", "1", "");
  project.WriteList(0, "Two", {"a", ""}, "One");
  project.WriteText(0, "Three", "", "Two");
  EXPECT_EQ(project.Text(),
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<BuildProject version=\"1\">\n  <Variables/>\n  "
            "<Actions>\n"
            "    <Action type=\"A &quot;quoted&quot; &lt;name&gt;\">\n"
            "      <Property name=\"One\">1</Property>\n"
            "      <Property name=\"Two\">\n        <Item>a</Item>\n        <Item/>\n      </Property>\n"
            "      <Property name=\"Three\"/>\n"
            "    </Action>\n  </Actions>\n</BuildProject>\n");
  const BuildProject again = BuildProject::Parse(project.Text(), "p.xml");
  EXPECT_EQ(again.ReadText(0, "One"), "1");
  EXPECT_EQ(again.ReadList(0, "Two"), (Items{"a", ""}));
  EXPECT_EQ(again.ReadText(0, "Three"), "");
}

TEST(BuildProject, PutsAPropertyThatStandsTooEarlyInTheOrderOfDeclaration) {
  BuildProject project = BuildProject::Parse(
      "<BuildProject version=\"1\"><Actions><Action type=\"T\">\n <Property name=\"B\">b</Property>\n"
      " <!-- of A --><Mine/>\n <Property name=\"A\">a</Property>\n</Action></Actions></BuildProject>",
      "p.xml");
  project.WriteText(0, "A", "a", "");
  project.WriteText(0, "B", "b", "A");
  EXPECT_EQ(project.Text(),
            "<BuildProject version=\"1\"><Actions><Action type=\"T\">\n <!-- of A --><Mine/>\n"
            " <Property name=\"A\">a</Property>\n <Property name=\"B\">b</Property>\n"
            "</Action></Actions></BuildProject>");
}

TEST(BuildProject, LeavesEqualValuesAsTheyAreWritten) {
  const std::string text = Wrap(
      "<Property name='Title'><![CDATA[x]]>&#121;</Property><Property name='Parts'> <Item "
      ">a</Item></Property>");
  BuildProject project = BuildProject::Parse(text, "p.xml");
  project.WriteText(0, "Title", "xy", "");
  project.WriteList(0, "Parts", {"a"}, "Title");
  EXPECT_EQ(project.Text(), text);
}

TEST(BuildProject, ChangesItemsInPlace) {
  BuildProject project = BuildProject::Parse(
      Wrap("<Property name=\"Parts\"><!--1--><Item>a</Item><!--2--><Item>b</Item></Property>"), "p.xml");
  project.WriteList(0, "Parts", {"c"}, "");
  EXPECT_EQ(project.Text(), Wrap("<Property name=\"Parts\"><!--1--><Item>c</Item><!--2--></Property>"));
}

TEST(BuildProject, ReadsAndWritesAnAction) {
  TestHost host;
  const auto action = host.Make<SampleAction>(SampleActionClass());
  const BuildProject project = BuildProject::Parse(kProject, "p.xml");
  project.ReadAction(0, *action);
  EXPECT_EQ(action->title, "%ROOT%\\App.sln");
  EXPECT_EQ(action->parts.Items(), (Items{"{A}", "a;b"}));
  EXPECT_TRUE(action->wanted);

  action->title = "a\r\n<b>&\"c\"";
  action->number = -7;
  action->secret = "hush";
  BuildProject other = BuildProject::Empty("p.xml");
  other.AppendAction("Sample");
  EXPECT_FALSE(other.WriteAction(0, *action));
  EXPECT_EQ(other.Text(),
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<BuildProject version=\"1\">\n  <Variables/>\n  "
            "<Actions>\n"
            "    <Action type=\"Sample\">\n"
            "      <Property name=\"Title\">a&#13;\n&lt;b&gt;&amp;\"c\"</Property>\n"
            "      <Property name=\"Number\">-7</Property>\n"
            "      <Property name=\"Wanted\">True</Property>\n"
            "      <Property name=\"Colour\">clRed</Property>\n"
            "      <Property name=\"Parts\">\n        <Item>{A}</Item>\n        <Item>a;b</Item>\n      "
            "</Property>\n"
            "    </Action>\n  </Actions>\n</BuildProject>\n");

  const auto copy = host.Make<SampleAction>(SampleActionClass());
  BuildProject::Parse(other.Text(), "p.xml").ReadAction(0, *copy);
  EXPECT_EQ(copy->title, action->title);
  EXPECT_EQ(copy->number, -7);
  EXPECT_EQ(copy->secret, "");
}

TEST(BuildProject, TakesAClearTextSecretOut) {
  TestHost host;
  const auto action = host.Make<SampleAction>(SampleActionClass());
  BuildProject project = BuildProject::Parse(Wrap("<Property name=\"Secret\">hush</Property>"), "p.xml");
  project.ReadAction(0, *action);
  EXPECT_EQ(action->secret, "hush");
  EXPECT_TRUE(project.WriteAction(0, *action));
  EXPECT_EQ(project.Text().find("hush"), std::string::npos);
}

TEST(BuildProject, KeepsAndNamesWhatItDoesNotKnow) {
  const std::string text =
      "<BuildProject version=\"1\" tool=\"x\">\n<!--a--><Extra>1</Extra>\n<Variables q=\"1\"><Variable "
      "name=\"V\"/></Variables>\n"
      "<Actions>\n<Action type=\"Sample\" id=\"7\">\n  <Property name=\"Titel\">lost?</Property>\n"
      "  <Property name=\"Title\" note=\"n\">t<!--b--></Property>\n  <Property "
      "name=\"Derived\">d</Property>\n</Action>\n"
      "<Action type=\"Other\"><Whatever/></Action>\n</Actions>\n</BuildProject>\n";
  BuildProject project = BuildProject::Parse(text, "p.xml");
  EXPECT_EQ(
      project.Unknown(KnowsSample()),
      (Items{"the attribute \"tool\" of <BuildProject> (line 1)", "the element <Extra> (line 2)",
             "the attribute \"q\" of <Variables> (line 3)", "the attribute \"id\" of <Action> (line 5)",
             "the property \"Titel\" of action 1 (line 6)", "the attribute \"note\" of <Property> (line 7)",
             "the value of \"Derived\" of action 1, which is not stored, (line 8)",
             "action 2, \"Other\", which no loaded package has (line 10)", "2 comments"}));
  project.WriteText(0, "Title", "u", "");
  std::string wanted = text;
  wanted.replace(wanted.find(">t<!--b"), 2, ">u");
  EXPECT_EQ(project.Text(), wanted);
  EXPECT_TRUE(BuildProject::Parse(Wrap(""), "p.xml").Unknown(KnowsSample()).empty());
}

TEST(BuildProject, RefusesWhatIsAmbiguousOrNameless) {
  EXPECT_EQ(Fault("<BuildProject version='1'>\n<Actions/>\n<Actions/></BuildProject>"),
            "p.xml(3): <Actions> stands twice");
  EXPECT_EQ(Fault("<BuildProject version='1'>\n<Actions><Action/></Actions></BuildProject>"),
            "p.xml(2): <Action> without a type");
  EXPECT_EQ(Fault("<BuildProject version='1'><Variables>\n<Variable/></Variables></BuildProject>"),
            "p.xml(2): <Variable> without a name");
  EXPECT_EQ(Fault(Wrap("<Property/>")), "p.xml(1): <Property> without a name");
  EXPECT_EQ(Fault(Wrap("<Property name='A'/>\n<Property name='A'/>")),
            "p.xml(2): the property A stands twice in its action");
  EXPECT_EQ(Fault("<BuildProject version='3'/>"),
            "p.xml(1): the version of <BuildProject> is \"3\"; this program knows version \"1\"");
}

TEST(BuildProject, RefusesAValueOfAnotherKindWithItsLine) {
  EXPECT_EQ(FaultOfReading("\n<Property name=\"Title\"><Item>a</Item></Property>"),
            "p.xml(2): Title is one text, but elements stand in it");
  EXPECT_EQ(FaultOfReading("\n<Property name=\"Parts\">a;b</Property>"),
            "p.xml(2): Parts is a list: each of its texts belongs into an <Item>");
  EXPECT_EQ(FaultOfReading("\n<Property name=\"Parts\"><Itm>a</Itm></Property>"),
            "p.xml(2): Parts is a list of <Item>s, but another element stands in it");
  EXPECT_EQ(FaultOfReading("\n<Property name=\"Wanted\">yes</Property>").rfind("p.xml(2): Wanted", 0), 0u);
  EXPECT_EQ(FaultOfReading("\n<Property name=\"Number\">99999999999</Property>").rfind("p.xml(2): Number", 0),
            0u);
}

}  // namespace
}  // namespace qx
