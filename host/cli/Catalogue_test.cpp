// actions, package, options, help, and the command line itself.
#include <nlohmann/json.hpp>

#include "host/cli/testdata/CliFixture.h"

namespace qx::cli {
namespace {

using CatalogueCommands = CliTest;

TEST_F(CatalogueCommands, ActionsListsTheCatalogue) {
  EXPECT_EQ(Host({"actions"}).out, "Testing\n    Tiny Task\n");
  const auto actions = nlohmann::json::parse(Host({"actions", "--json"}).out);
  ASSERT_EQ(actions.size(), 1u);
  EXPECT_EQ(actions[0]["name"], "Tiny Task");
  EXPECT_EQ(actions[0]["class"], "TTinyAction");
  EXPECT_EQ(actions[0]["properties"][8]["storage"], "secret");
}

TEST_F(CatalogueCommands, PackageShowsUnitsAndCallsInOrder) {
  const auto packages = nlohmann::json::parse(Host({"package", "--json"}).out);
  ASSERT_EQ(packages.size(), 1u);
  EXPECT_EQ(packages[0]["state"], "registered");
  EXPECT_EQ(packages[0]["units"].dump(),
            "[{\"name\":\"TinyAction\",\"startCount\":1},{\"name\":\"TinyPackage\",\"startCount\":1}]");
  std::string calls;
  for (const auto& call : packages[0]["registrations"]) calls += call["call"].get<std::string>() + " ";
  EXPECT_EQ(calls,
            "RegisterAction RegisterOptions RegisterFunction RegisterFunction RegisterFunction "
            "RegisterEnumeration RegisterPropertyEditor RegisterPropertyPages RegisterOptionsPage ");
  const auto plain = nlohmann::json::parse(Host({"package", "--json", "--no-design"}).out);
  EXPECT_EQ(plain[0]["registrations"].size(), 6u);
}

TEST_F(CatalogueCommands, APackageKeepsTheRungItReachedAndSaysWhoIsToBlame) {
  Write("text.so", "no library");
  struct Rung {
    const char* package;
    const char* state;
    const char* complaint;
  };
  for (const Rung& rung :
       {Rung{"nowhere", "named", "there is no such file"},
        Rung{"tiny_no_register", "opened", "it does not export QXRegister, so it is no package"},
        Rung{"tiny_load_fails", "resolved",
             "QXPackageLoad failed: the tiny units will not start (the package's fault)"},
        Rung{"tiny_register_fails", "started",
             "QXRegister failed: the tiny catalogue is full (the package's fault)"}}) {
    const auto result = HostWith(rung.package, {"package", "--json"});
    EXPECT_EQ(result.code, 2) << rung.package;
    EXPECT_TRUE(Holds(result.err, rung.complaint)) << result.err;
    EXPECT_TRUE(Holds(result.err, rung.package)) << result.err;
    EXPECT_EQ(nlohmann::json::parse(result.out)[0]["state"], rung.state);
    EXPECT_EQ(HostWith(rung.package, {"actions"}).code, 2);
  }
  const auto text = test::RunProgram(
      ProgramFile("qxhost"), {"--package", "text.so", "--options", "o.xml", "package"}, folder_.string());
  EXPECT_EQ(text.code, 2);
  EXPECT_TRUE(Holds(text.err, "text.so: it cannot be loaded as a library: ")) << text.err;
  EXPECT_TRUE(Holds(text.out, "State: found")) << text.out;
}

TEST_F(CatalogueCommands, OptionsAreChangedSavedAndShown) {
  EXPECT_EQ(Host({"options"}).out, "Testing / Tiny\n    Greeting=hi\n    Level=3\n\nHost\n");
  EXPECT_FALSE(Exists("options.xml"));
  Write("r.reg", "REGEDIT4\r\n");
  ASSERT_EQ(Host({"options", "greeting=moin", "Framework.v2.0=/opt/x", "Registry=r.reg"}).code, 0);
  const auto shown = nlohmann::json::parse(Host({"options", "Registry=", "--json"}).out);
  EXPECT_EQ(shown["objects"][0]["properties"]["Greeting"], "moin");
  EXPECT_EQ(shown["objects"][0]["properties"]["Level"], 3);
  EXPECT_EQ(shown["host"].dump(), "{\"Framework.v2.0\":\"/opt/x\"}");
}

TEST_F(CatalogueCommands, OptionsAreAllOrNone) {
  for (const Words& words : std::vector<Words>{{"options", "Greeting=x", "Level=high"},
                                               {"options", "Greeting=x", "Nothing=1"},
                                               {"options", "Greeting=x", "Framework.two=1"},
                                               {"options", "Greeting=x", "WebDavTimeout=soon"},
                                               {"options", "Greeting=x", "Level"}}) {
    const auto result = Host(words);
    EXPECT_EQ(result.code, 2) << words.back();
    EXPECT_NE(result.err, "");
    EXPECT_FALSE(Exists("options.xml")) << words.back();
  }
}

TEST_F(CatalogueCommands, ABrokenOptionsStoreIsNamedAndKept) {
  Write("options.xml", "<Options version=\"1\">\n<");
  const auto result = Host({"options", "Greeting=x"});
  EXPECT_EQ(result.code, 2);
  EXPECT_TRUE(Holds(result.err, "options.xml(2): malformed XML")) << result.err;
  EXPECT_EQ(Content("options.xml"), "<Options version=\"1\">\n<");
}

TEST_F(CatalogueCommands, UsageErrorsExitWithTwo) {
  for (const Words& words : std::vector<Words>{{},
                                               {"run"},
                                               {"run", "a", "b"},
                                               {"new"},
                                               {"set", "p.xml"},
                                               {"add", "p.xml"},
                                               {"run", "--timeout", "0", "p.xml"},
                                               {"run", "--timeout"},
                                               {"run", "--timeout", "5s", "p.xml"},
                                               {"run", "--json", "p.xml"},
                                               {"show", "--json=yes", "p.xml"},
                                               {"run", "--set", "novalue", "p.xml"},
                                               {"--color", "blue", "actions"},
                                               {"-x", "actions"},
                                               {"help", "nothing"},
                                               {"run", "--log", "text", "--log", "json", "p.xml"}}) {
    const auto result = Host(words);
    EXPECT_EQ(result.code, 2) << (words.empty() ? "" : words.back());
    EXPECT_TRUE(result.err.starts_with("qxhost: ")) << result.err;
    EXPECT_EQ(result.out, "");
  }
}

TEST_F(CatalogueCommands, EveryCommandHasHelpWithAnExample) {
  const auto help = Host({"--help"});
  EXPECT_EQ(help.code, 0);
  for (const char* command : {"run", "validate", "new", "add", "set", "show", "edit", "actions", "package",
                              "options", "expand", "drive", "script"}) {
    EXPECT_TRUE(Holds(help.out, "\n  " + std::string(command) + " ")) << command;
    const auto own = Host({"help", command});
    EXPECT_EQ(own.code, 0);
    EXPECT_TRUE(own.out.starts_with("usage: qxhost " + std::string(command))) << own.out;
    EXPECT_TRUE(Holds(own.out, "Example:\n  qxhost ")) << own.out;
    EXPECT_EQ(Host({command, "--help"}).out, own.out);
  }
  EXPECT_TRUE(Host({"--version"}).out.starts_with("qxhost "));
}

TEST_F(CatalogueCommands, CompletionAndManPageKnowEveryCommandAndOption) {
  const auto run = [&](const Words& words) {
    return test::RunProgram(ProgramFile("qxhost"), words, folder_.string()).out;
  };
  for (const std::string& text :
       {run({"--print-completion", "bash"}), run({"--print-completion", "zsh"}), run({"--print-man"})}) {
    for (const char* word : {"validate", "expand", "package", "timeout"})
      EXPECT_TRUE(Holds(text, word)) << word;
  }
}

}  // namespace
}  // namespace qx::cli
