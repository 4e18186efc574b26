// new, add, set, show, expand: what they do, and what they refuse without writing anything.
#include <nlohmann/json.hpp>

#include "host/cli/testdata/CliFixture.h"

namespace qx::cli {
namespace {

using ProjectCommands = CliTest;

TEST_F(ProjectCommands, TakeASecretFromAFile) {
  Project("p.xml", {{"Loud=True"}});
  Write("secret.txt", "from-a-file\r\n");
  ASSERT_EQ(Host({"set", "p.xml", "Password=@secret.txt"}).code, 0);
  EXPECT_EQ(Content("p.xml").find("from-a-file"), std::string::npos);
  EXPECT_TRUE(Holds(Host({"run", "p.xml"}).out, "The password is ***"));
  EXPECT_EQ(Host({"set", "p.xml", "Password=@missing.txt"}).code, 2);
  ASSERT_EQ(Host({"set", "p.xml", "Text=@secret.txt"}).code, 0) << "only a secret is read from a file";
  EXPECT_TRUE(Holds(Host({"show", "p.xml"}).out, "Text=@secret.txt"));
}

TEST_F(ProjectCommands, NewWritesAnEmptyProjectAndNeverOverwrites) {
  EXPECT_EQ(Host({"new", "p.xml"}).code, 0);
  EXPECT_TRUE(Holds(Content("p.xml"), "<BuildProject version=\"1\">"));
  Write("p.xml", "mine");
  const auto again = Host({"new", "p.xml"});
  EXPECT_EQ(again.code, 2);
  EXPECT_TRUE(Holds(again.err, "p.xml exists already and is not overwritten")) << again.err;
  EXPECT_EQ(Content("p.xml"), "mine");
}

TEST_F(ProjectCommands, AddWritesStoredPropertiesInTheOrderOfDeclaration) {
  Project("p.xml", {{"Lines=a;b", "Loud=true"}});
  EXPECT_EQ(
      Content("p.xml"),
      "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<BuildProject version=\"1\">\n  <Variables/>\n  "
      "<Actions>\n"
      "    <Action type=\"Tiny Task\">\n"
      "      <Property name=\"Text\">hello</Property>\n"
      "      <Property name=\"Count\">0</Property>\n"
      "      <Property name=\"Seconds\">60</Property>\n"
      "      <Property name=\"Deed\">tdSucceed</Property>\n"
      "      <Property name=\"Verdict\">tvValid</Property>\n"
      "      <Property name=\"Loud\">True</Property>\n"
      "      <Property name=\"Lines\">\n        <Item>a</Item>\n        <Item>b</Item>\n      </Property>\n"
      "      <Property name=\"_Password\"/>\n"
      "    </Action>\n  </Actions>\n</BuildProject>\n");
}

TEST_F(ProjectCommands, SetGoesThroughTheSettersInTheOrderGiven) {
  Project("p.xml", {{}, {}});
  ASSERT_EQ(Host({"set", "p.xml", "--action", "2", "Text=one two", "FirstWord=three", "Count=5"}).code, 0);
  const auto shown = nlohmann::json::parse(Host({"show", "p.xml", "--json"}).out);
  EXPECT_EQ(shown["actions"][0]["properties"]["Text"], "hello");
  EXPECT_EQ(shown["actions"][1]["properties"]["Text"], "three two");
  EXPECT_EQ(shown["actions"][1]["properties"]["Count"], 5);
}

TEST_F(ProjectCommands, SetIsAllOrNone) {
  Project("p.xml", {{}});
  const std::string before = Content("p.xml");
  for (const Words& words : std::vector<Words>{{"set", "p.xml", "Text=new", "Count=many"},
                                               {"set", "p.xml", "Text=new", "Deed=tdFial"},
                                               {"set", "p.xml", "Text=new", "Count=-1"},
                                               {"set", "p.xml", "Text=new", "Txet=x"},
                                               {"set", "p.xml", "Text=new", "word"},
                                               {"set", "p.xml", "--action", "2", "Text=new"},
                                               {"add", "p.xml", "Tiny Task", "Loud=maybe"}}) {
    const auto result = Host(words);
    EXPECT_EQ(result.code, 2) << words.back();
    EXPECT_NE(result.err, "");
    EXPECT_EQ(Content("p.xml"), before) << words.back();
  }
}

TEST_F(ProjectCommands, RefusalsNameTheNearestValidWord) {
  Project("p.xml", {{}});
  const auto complaint = [&](Words words) { return Host(std::move(words)).err; };
  EXPECT_TRUE(Holds(complaint({"set", "p.xml", "Txet=x"}), "nearest: Text"));
  EXPECT_TRUE(Holds(complaint({"set", "p.xml", "Deed=tdFial"}), "nearest: tdFail"));
  EXPECT_TRUE(Holds(complaint({"set", "p.xml", "Loud=Flase"}), "nearest: False"));
  EXPECT_TRUE(
      Holds(complaint({"set", "p.xml", "--action", "7", "Text=x"}), "p.xml has no action 7 (nearest: 1)"));
  EXPECT_TRUE(Holds(complaint({"add", "p.xml", "Tiny Tsk"}), "nearest: Tiny Task"));
  EXPECT_TRUE(Holds(complaint({"valdate", "p.xml"}), "nearest: validate"));
  EXPECT_TRUE(Holds(complaint({"run", "--tiemout", "3", "p.xml"}), "nearest: --timeout"));
  EXPECT_TRUE(Holds(complaint({"run", "--log", "jsn", "p.xml"}), "nearest: json"));
  EXPECT_TRUE(Holds(complaint({"options", "Greting=x"}), "nearest: Greeting"));
}

TEST_F(ProjectCommands, ShowHidesWhatIsHiddenAndMasksSecrets) {
  Project("p.xml", {{"Password=hush", "Lines=a;b"}});
  const auto text = Host({"show", "p.xml"});
  EXPECT_EQ(text.out,
            "1 Tiny Task\n    Text=hello\n    FirstWord=hello\n    Count=0\n    Deed=tdSucceed\n    "
            "Verdict=tvValid\n"
            "    Loud=False\n    Lines=a;b\n    Password=***\n");
  EXPECT_TRUE(Holds(Host({"show", "p.xml", "--all"}).out, "    Seconds=60\n"));
  for (const Words& words :
       std::vector<Words>{{"show", "p.xml", "--all"}, {"show", "p.xml", "--all", "--json"}}) {
    EXPECT_FALSE(Holds(Host(words).out, "hush"));
  }
  EXPECT_FALSE(Holds(Content("p.xml"), "hush"));
  EXPECT_TRUE(Holds(Content("p.xml"), "<Property name=\"_Password\">qx"));
}

TEST_F(ProjectCommands, ShowTellsOfAHiddenPropertyThatWasSet) {
  Project("p.xml", {{"Seconds=7"}, {"Seconds=60", "Password=hush"}});
  const std::string shown = Host({"show", "p.xml"}).out;
  EXPECT_TRUE(Holds(shown, "    Count=0\n    Seconds=7\n    Deed=tdSucceed\n")) << shown;
  EXPECT_FALSE(Holds(shown, "Seconds=60")) << shown;
  EXPECT_FALSE(Holds(shown, "_Password")) << shown;
}

TEST_F(ProjectCommands, ShowAsJsonHasTypesOrderAndDynamicProperties) {
  Project("p.xml", {{"Password=hush", "Lines=a;b"}});
  const auto shown = nlohmann::ordered_json::parse(Host({"show", "p.xml", "--json", "--all"}).out);
  const auto& action = shown["actions"][0];
  EXPECT_EQ(action["type"], "Tiny Task");
  EXPECT_EQ(action["dynamicProperties"].dump(), "[\"Count\"]");
  const auto& properties = action["properties"];
  EXPECT_EQ(properties["Lines"].dump(), "[\"a\",\"b\"]");
  EXPECT_EQ(properties["Loud"], false);
  EXPECT_EQ(properties["Deed"], "tdSucceed");
  EXPECT_EQ(properties["Password"], "***");
  Words names;
  for (const auto& [name, value] : properties.items()) names.push_back(name);
  EXPECT_EQ(names, (Words{"Text", "FirstWord", "Count", "Seconds", "Deed", "Verdict", "Loud", "Lines",
                          "Password", "_Password"}));
}

TEST_F(ProjectCommands, KeepsWhatItDoesNotKnowAndWarns) {
  Write("p.xml",
        "<BuildProject version=\"1\">\n<!-- why --><Future/>\n<Actions><Action type=\"Tiny Task\">\n"
        "<Property name=\"Colour\">red</Property></Action>\n<Action type=\"Other\"><Property "
        "name=\"A\">1</Property></Action>"
        "</Actions></BuildProject>");
  const auto result = Host({"set", "p.xml", "Text=x"});
  EXPECT_EQ(result.code, 0);
  for (const char* part : {"<Future>", "\"Colour\"", "\"Other\"", "1 comment", "p.xml"}) {
    EXPECT_TRUE(Holds(result.err, part)) << result.err;
  }
  const std::string now = Content("p.xml");
  for (const char* part : {"<!-- why --><Future/>", "<Property name=\"Colour\">red</Property>",
                           "<Action type=\"Other\"><Property name=\"A\">1</Property></Action>",
                           "<Property name=\"Text\">x</Property>"}) {
    EXPECT_TRUE(Holds(now, part)) << now;
  }
}

TEST_F(ProjectCommands, TakesOutASecretThatStandsThereInClearText) {
  Write("p.xml",
        "<BuildProject version=\"1\"><Actions><Action type=\"Tiny Task\">"
        "<Property name=\"Password\">hush</Property></Action></Actions></BuildProject>");
  const auto result = Host({"set", "p.xml", "Loud=False"});
  EXPECT_EQ(result.code, 0);
  EXPECT_TRUE(Holds(result.err, "clear text"));
  EXPECT_FALSE(Holds(Content("p.xml"), "hush"));
  EXPECT_TRUE(Holds(Host({"show", "p.xml"}).out, "Password=***"));
}

TEST_F(ProjectCommands, RefusesBrokenFilesWithNameAndLine) {
  Write("p.xml", "<BuildProject version=\"1\">\n<Actions>\n</BuildProject>");
  Write("v.xml", "<BuildProject version=\"2\"/>");
  for (const char* command : {"run", "show", "validate"}) {
    const auto result = Host({command, "p.xml"});
    EXPECT_EQ(result.code, 2);
    EXPECT_TRUE(Holds(result.err, "p.xml(3): malformed XML")) << result.err;
    EXPECT_EQ(Host({command, "v.xml"}).code, 2);
    EXPECT_EQ(Host({command, "none.xml"}).code, 2);
    EXPECT_TRUE(Holds(Host({command, "none.xml"}).err, "none.xml"));
  }
}

TEST_F(ProjectCommands, ExpandsBySetThenProjectThenEnvironment) {
  Write("p.xml",
        "<BuildProject version=\"1\"><Variables><Variable name=\"A\">project</Variable>"
        "<Variable name=\"B\">[%A%]</Variable></Variables></BuildProject>");
  EXPECT_EQ(Host({"expand", "%A% %B% 100%%", "--project", "p.xml"}).out, "project [project] 100%\n");
  EXPECT_EQ(Host({"expand", "%B%", "--project", "p.xml", "--set", "A=set"}).out, "[set]\n");
  const auto undefined = Host({"expand", "%NO_SUCH_NAME_HERE%"});
  EXPECT_EQ(undefined.code, 2);
  EXPECT_EQ(undefined.err, "qxhost: Undefined variable : NO_SUCH_NAME_HERE\n");
}

}  // namespace
}  // namespace qx::cli
