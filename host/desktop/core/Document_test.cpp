#include "host/desktop/core/Document.h"

#include "host/desktop/testdata/DesktopFixture.h"

namespace qx::desktop {
namespace {

using Variables = std::vector<std::pair<std::string, std::string>>;

using DocumentTest = DesktopTest;

class DocumentOfThePackage : public DesktopTest {
 protected:
  DocumentOfThePackage() : DesktopTest("vsdotnet") {}
};

TEST_F(DocumentTest, BeginsUntitledAndUnmodified) {
  EXPECT_EQ(Doc().File(), "");
  EXPECT_EQ(Doc().ActionCount(), 0);
  EXPECT_FALSE(Doc().IsModified());
  EXPECT_FALSE(Doc().CanUndo());
  EXPECT_FALSE(Doc().CanRedo());
  EXPECT_EQ(Doc().UndoName() + Doc().RedoName(), "");
  EXPECT_EQ(Doc().Undo(), -1);
  EXPECT_EQ(Doc().Redo(), -1);
  EXPECT_EQ(MessageOf([&] { Doc().Save(); }), "The project has no file yet: save it under a name");
  EXPECT_EQ(MessageOf([&] { Doc().Remove(0); }), "Untitled has no action 1");
  EXPECT_EQ(MessageOf([&] { Doc().Add("Tiny Task", 1); }), "An action cannot be added there");
  EXPECT_NE(MessageOf([&] { Doc().Add("Tiny Tsk", 0); }).find("Tiny Task"), std::string::npos);
}

TEST_F(DocumentTest, SavesTheBytesThatTheCommandLineWrites) {
  QxHost({"new", "cli.xml"});
  QxHost({"add", "cli.xml", "Tiny Task"});
  QxHost({"add", "cli.xml", "Tiny Task", "Text=<two> & \"more\"", "Lines=a;b"});
  QxHost({"set", "cli.xml", "--action", "1", "FirstWord=bye", "Deed=tdFail", "Loud=True", "Count=7"});

  Doc().Add("tiny task", 0);
  Doc().Add("Tiny Task", 1);
  Set(1, "Text", "<two> & \"more\"");
  Set(1, "Lines", "a;b");
  Set(0, "FirstWord", "bye");
  Set(0, "Deed", "tdFail");
  Set(0, "Loud", "True");
  Set(0, "Count", "7");
  EXPECT_TRUE(Doc().SaveAs(folder_ / "desktop.xml").empty());
  EXPECT_EQ(folder_.Read("desktop.xml"), folder_.Read("cli.xml"));

  Doc().Open(folder_ / "cli.xml");
  Doc().Save();
  EXPECT_EQ(folder_.Read("desktop.xml"), folder_.Read("cli.xml"));
}

TEST_F(DocumentOfThePackage, SavesTheBytesThatTheCommandLineWrites) {
  const std::vector<std::pair<std::string, std::string>> values{
      {"Solution", "%ROOT%\\App.sln"}, {"UpdateAssemblyInfo", "True"}, {"VStudioVersion", "vs2003"}};
  Words words{"set", "cli.xml"};
  for (const auto& [name, value] : values) words.push_back(name + "=" + value);
  QxHost({"new", "cli.xml"});
  QxHost({"add", "cli.xml", "Build VS.Net Solution"});
  QxHost({"add", "cli.xml", "Run MSTest"});
  QxHost(words);

  Doc().Add("Run MSTest", 0);
  Doc().Add("Build VS.Net Solution", 0);
  for (const auto& [name, value] : values) Set(0, name, value);
  Doc().Remove(0);
  Doc().Undo();
  Doc().Duplicate(1);
  Doc().Move(2, 0);
  Doc().Remove(0);
  Doc().SaveAs(folder_ / "desktop.xml");
  EXPECT_EQ(folder_.Read("desktop.xml"), folder_.Read("cli.xml"));
  EXPECT_NE(folder_.Read("cli.xml").find("vs2003"), std::string::npos);
}

// Whoever shows all properties makes no edit.
TEST_F(DocumentOfThePackage, LooksAtPropertiesWithoutAnEdit) {
  Doc().Add("Build VS.Net Solution", 0);
  Doc().Add("Run MSTest", 1);
  Set(0, "Solution", "none.sln");
  for (int i = 0; i < Doc().ActionCount(); ++i) {
    TQXAction& action = *Doc().Action(i);
    for (const PublishedProperty& property : action.GetActionClass()->properties)
      PropertyToText(property, property.get(action));
    EXPECT_FALSE(Doc().TakeEdit("Look", i));
  }
  EXPECT_EQ(Doc().UndoName(), "Change Solution");
}

// What a hand wrote, with an old mark, comments and half of the properties, comes out as the command line has it.
TEST_F(DocumentTest, SavesAHandwrittenFileAsTheCommandLineDoes) {
  const std::string hand =
      "<BuildProject version='1'>\r\n<!-- why --><Actions>\r\n  <Action type='Tiny Task'>\r\n    <Property "
      "name='Count'>3</Property><!-- c -->\r\n  </Action>\r\n  <Action type='Other' x='1'/>\r\n"
      "</Actions></BuildProject>\r\n";
  folder_.Write("cli.xml", hand);
  folder_.Write("desktop.xml", hand);
  Doc().Open(folder_ / "desktop.xml");
  EXPECT_FALSE(Doc().IsModified());
  Set(0, "Text", "x");
  const std::vector<std::string> warnings = Doc().Save();
  QxHost({"set", "cli.xml", "Text=x"});
  EXPECT_EQ(folder_.Read("desktop.xml"), folder_.Read("cli.xml"));
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_NE(warnings[0].find("\"Other\", which no loaded package has"), std::string::npos) << warnings[0];
}

TEST_F(DocumentTest, UndoesAndRedoesEveryKindOfEdit) {
  std::vector<std::string> texts{Text()};
  std::vector<std::string> names;
  const auto edit = [&](const std::string& name, const std::function<void()>& change) {
    change();
    EXPECT_EQ(Doc().UndoName(), name);
    EXPECT_NE(Text(), texts.back()) << name;
    names.push_back(name);
    texts.push_back(Text());
  };
  edit("Add Tiny Task", [&] { Doc().Add("Tiny Task", 0); });
  edit("Add Probe", [&] { Doc().Add("Probe", 1); });
  edit("Change Text", [&] { Set(0, "Text", "a\r\n<b>"); });
  edit("Change Name", [&] { Set(1, "Name", "four"); });
  edit("Move Probe", [&] { Doc().Move(1, 0); });
  edit("Duplicate Tiny Task", [&] { Doc().Duplicate(1); });
  edit("Remove Probe", [&] { Doc().Remove(0); });
  edit("Change variables", [&] { Doc().SetVariables({{"ROOT", "src"}}); });
  edit("Edit pages", [&] {
    TQXAction& action = *Doc().Action(0);
    action.GetActionClass()->properties[0].set(action, std::string("page"));
    EXPECT_TRUE(Doc().TakeEdit("Edit pages", 0));
    EXPECT_FALSE(Doc().TakeEdit("Edit pages", 0));
  });
  const std::vector<int> wantedUndo{0, -1, 0, 1, 1, 1, 0, 0, -1};
  for (std::size_t i = names.size(); i-- > 0;) {
    EXPECT_EQ(Doc().UndoName(), names[i]);
    EXPECT_EQ(Doc().Undo(), wantedUndo[names.size() - 1 - i]) << names[i];
    EXPECT_EQ(Text(), texts[i]) << names[i];
  }
  EXPECT_FALSE(Doc().CanUndo());
  EXPECT_FALSE(Doc().IsModified());
  const std::vector<int> wantedRedo{0, 1, 0, 1, 0, 2, 0, -1, 0};
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(Doc().RedoName(), names[i]);
    EXPECT_EQ(Doc().Redo(), wantedRedo[i]) << names[i];
    EXPECT_EQ(Text(), texts[i + 1]) << names[i];
  }
  EXPECT_FALSE(Doc().CanRedo());
  EXPECT_EQ(Doc().Variables(), (Variables{{"ROOT", "src"}}));
}

TEST_F(DocumentTest, DropsWhatCouldBeRedoneWithANewEdit) {
  Doc().Add("Tiny Task", 0);
  Set(0, "Count", "1");
  Set(0, "Count", "2");
  Doc().Undo();
  EXPECT_TRUE(Doc().CanRedo());
  Set(0, "Count", "1");  // changes nothing
  EXPECT_TRUE(Doc().CanRedo());
  Set(0, "Count", "3");
  EXPECT_FALSE(Doc().CanRedo());
  Doc().Undo();
  EXPECT_EQ(Get(0, "Count"), "1");
}

TEST_F(DocumentTest, IsModifiedWhenItLeftWhatWasSaved) {
  Doc().Add("Tiny Task", 0);
  Set(0, "Count", "1");
  EXPECT_TRUE(Doc().IsModified());
  Doc().SaveAs(folder_ / "p.xml");
  EXPECT_FALSE(Doc().IsModified());
  Doc().Undo();
  EXPECT_TRUE(Doc().IsModified());
  Doc().Redo();
  EXPECT_FALSE(Doc().IsModified());
  Set(0, "Count", "2");
  EXPECT_TRUE(Doc().IsModified());
  Set(0, "Count", "1");
  EXPECT_FALSE(Doc().IsModified());
  Doc().New();
  EXPECT_FALSE(Doc().IsModified());
  EXPECT_FALSE(Doc().CanUndo());
  EXPECT_EQ(Doc().File(), "");
}

TEST_F(DocumentTest, KeepsABoundedHistory) {
  Doc().Add("Tiny Task", 0);
  for (int i = 1; i <= 600; ++i) Set(0, "Count", std::to_string(i));
  std::size_t steps = 0;
  while (Doc().CanUndo()) {
    Doc().Undo();
    ++steps;
  }
  EXPECT_EQ(steps, HistoryLimits().steps);
  EXPECT_EQ(Get(0, "Count"), "100");
}

TEST_F(DocumentTest, KeepsAHistoryOfBoundedSize) {
  constexpr std::size_t kSize = 10'000;
  document_.emplace(*host_, *log_, HistoryLimits{500, 8 * kSize});
  Doc().Add("Tiny Task", 0);
  for (char c = 'a'; c < 'a' + 12; ++c) Set(0, "Text", std::string(kSize, c));
  int steps = 0;
  for (; Doc().CanUndo(); ++steps) Doc().Undo();
  EXPECT_EQ(steps, 7);  // the rest of each text makes eight too many
  EXPECT_EQ(Get(0, "Text")[0], 'e');
  while (Doc().CanRedo()) Doc().Redo();
  EXPECT_EQ(Get(0, "Text")[0], 'l');
  Set(0, "Text", std::string(20 * kSize, 'x'));
  EXPECT_TRUE(Doc().CanUndo());
  Doc().Undo();
  EXPECT_FALSE(Doc().CanUndo());
}

TEST_F(DocumentTest, NeverOverwritesUnseenWhatSomebodyElseWrote) {
  Doc().Add("Tiny Task", 0);
  Doc().SaveAs(folder_ / "p.xml");
  Set(0, "Count", "1");
  EXPECT_FALSE(Doc().IsChangedOnDisk());
  QxHost({"set", "p.xml", "Count=5"});
  EXPECT_TRUE(Doc().IsChangedOnDisk());
  const std::string theirs = folder_.Read("p.xml");
  EXPECT_THROW(Doc().Save(), Document::ChangedOnDisk);
  EXPECT_NE(MessageOf([&] { Doc().Save(); }).find("p.xml was changed by somebody else"), std::string::npos);
  EXPECT_EQ(folder_.Read("p.xml"), theirs);
  EXPECT_TRUE(Doc().IsModified());
  Doc().Save(Document::Overwrite::Yes);
  EXPECT_NE(folder_.Read("p.xml"), theirs);
  EXPECT_FALSE(Doc().IsChangedOnDisk());
  EXPECT_FALSE(Doc().IsModified());
  std::filesystem::remove(folder_ / "p.xml");
  EXPECT_FALSE(Doc().IsChangedOnDisk());
  Doc().Save();
  EXPECT_TRUE(folder_.Has("p.xml"));
}

TEST_F(DocumentTest, DoesNotSaveWhatSomebodyElseHolds) {
  Doc().Add("Tiny Task", 0);
  Doc().SaveAs(folder_ / "p.xml");
  const std::string before = folder_.Read("p.xml");
  Set(0, "Count", "1");
  {
    const FileLock lock(folder_ / "p.xml");
    EXPECT_NE(MessageOf([&] { Doc().Save(); }).find("p.xml is in use by process"), std::string::npos);
    EXPECT_NE(MessageOf([&] { Doc().SaveAs(folder_ / "p.xml"); }).find("p.xml is in use"), std::string::npos);
    EXPECT_EQ(folder_.Read("p.xml"), before);
    EXPECT_TRUE(Doc().IsModified());
    Doc().SaveLocked(lock);
  }
  EXPECT_NE(folder_.Read("p.xml"), before);
  EXPECT_EQ(folder_.Names(), "p.xml");
}

TEST_F(DocumentTest, WorksInTheFolderOfItsFile) {
  const auto current = [] { return std::filesystem::canonical(std::filesystem::current_path()); };
  std::filesystem::create_directories(folder_ / "inner");
  Doc().SaveAs(folder_ / "inner/p.xml");
  EXPECT_EQ(current(), std::filesystem::canonical(folder_ / "inner"));
  EXPECT_EQ(Doc().Project().File(), Doc().File());
  Doc().SaveAs("../q.xml");
  EXPECT_EQ(Doc().File(), folder_ / "q.xml");
  EXPECT_EQ(current(), std::filesystem::canonical(folder_.Path()));
  Doc().Open("inner/p.xml");
  EXPECT_EQ(current(), std::filesystem::canonical(folder_ / "inner"));
  EXPECT_EQ(Doc().File(), ExpandPath("", folder_ / "inner/p.xml"));
  const std::string refused = MessageOf([&] { Doc().SaveAs(folder_ / "none/p.xml"); });
  EXPECT_NE(refused.find("none"), std::string::npos) << refused;
  EXPECT_EQ(Doc().File(), ExpandPath("", folder_ / "inner/p.xml"));
}

TEST_F(DocumentTest, StaysAsItWasWhenAFileCannotBeOpened) {
  Doc().Add("Tiny Task", 0);
  Doc().SetVariables({{"WHO", "me"}});
  Doc().SaveAs(folder_ / "p.xml");
  Set(0, "Count", "4");
  const std::string before = Text();
  folder_.Write("broken.xml", "<BuildProject version=\"1\">\n<Actions>\n</BuildProject>");
  folder_.Write("value.xml",
                "<BuildProject version=\"1\"><Variables><Variable name=\"WHO\">other</Variable></Variables>\n"
                "<Actions><Action type=\"Tiny Task\"><Property name=\"Count\">many</Property></Action>"
                "</Actions></BuildProject>");
  for (const char* name : {"broken.xml", "value.xml", "none.xml"}) {
    const std::string told = MessageOf([&] { Doc().Open(folder_ / name); });
    EXPECT_NE(told.find(name), std::string::npos) << told;
    EXPECT_EQ(Doc().File(), folder_ / "p.xml");
    EXPECT_EQ(Text(), before);
    EXPECT_EQ(Doc().UndoName(), "Change Count");
    EXPECT_TRUE(Doc().IsModified());
    EXPECT_EQ(host_->Variables().Expand("%WHO%", false), "me");
  }
}

TEST_F(DocumentTest, PutsItsVariablesInForce) {
  const auto who = [&] { return host_->Variables().Find("QX_WHO").value_or("nobody"); };
  Doc().SetVariables({{"QX_WHO", "one"}});
  EXPECT_EQ(who(), "one");
  EXPECT_EQ(MessageOf([&] {
              Doc().SetVariables({{"QX_WHO", "two"}, {"qx_who", "three"}});
            }),
            "The variable \"qx_who\" stands twice");
  EXPECT_EQ(who(), "one");
  Doc().Undo();
  EXPECT_EQ(who(), "nobody");
  Doc().Redo();
  EXPECT_EQ(who(), "one");
  Doc().New();
  EXPECT_EQ(who(), "nobody");
}

TEST_F(DocumentTest, KeepsActionsThatNoPackageHas) {
  folder_.Write("p.xml",
                "<BuildProject version=\"1\">\n  <Actions>\n    <Action type=\"Other\"><Property "
                "name=\"Secret\">x</Property></Action>\n    <Action type=\"Tiny Task\"/>\n  "
                "</Actions>\n</BuildProject>\n");
  Doc().Open(folder_ / "p.xml");
  EXPECT_EQ(Doc().Action(0), nullptr);
  EXPECT_NE(MessageOf([&] {
              Doc().SetProperty(0, ProbeClass().properties[0], std::string("x"));
            }).find("No loaded package has the action \"Other\""),
            std::string::npos);
  Doc().Move(0, 1);
  EXPECT_EQ(Types(), "Tiny Task,Other");
  Doc().Duplicate(1);
  EXPECT_EQ(Types(), "Tiny Task,Other,Other");
  Doc().Save();
  const std::string saved = folder_.Read("p.xml");
  const std::string other = "<Action type=\"Other\"><Property name=\"Secret\">x</Property></Action>\n    ";
  EXPECT_NE(saved.find(other + other.substr(0, other.size() - 5)), std::string::npos) << saved;
  Doc().Remove(1);
  Doc().Remove(1);
  EXPECT_EQ(Types(), "Tiny Task");
  Doc().Undo();
  EXPECT_EQ(Types(), "Tiny Task,Other");
}

TEST_F(DocumentTest, ASetterAndWhatItDoesToItsNeighboursIsOneStep) {
  Doc().Add("Probe", 0);
  Set(0, "Name", "three");
  EXPECT_EQ(Get(0, "Length"), "5");
  EXPECT_EQ(Get(0, "Updates"), "1");
  Doc().Undo();
  EXPECT_EQ(Get(0, "Name") + Get(0, "Length") + Get(0, "Updates"), "00");
  Doc().Redo();
  EXPECT_EQ(Get(0, "Name") + Get(0, "Length") + Get(0, "Updates"), "three51");
}

TEST_F(DocumentTest, ASetterThatRaisesChangesNothing) {
  Doc().Add("Probe", 0);
  Set(0, "Name", "three");
  const std::string before = Text();
  EXPECT_EQ(MessageOf([&] { Set(0, "Name", "half"); }), "No half names");  // it has set it by then
  EXPECT_EQ(Text(), before);
  EXPECT_EQ(Get(0, "Name"), "three");
  EXPECT_EQ(Doc().UndoName(), "Change Name");
  Doc().Undo();
  EXPECT_EQ(Get(0, "Name"), "");
  Doc().Add("Tiny Task", 0);
  TQXAction* const action = Doc().Action(0);
  EXPECT_EQ(MessageOf([&] { Set(0, "Count", "-1"); }), "Count cannot be negative");
  EXPECT_EQ(Doc().Action(0), action);
}

TEST_F(DocumentTest, TakesWhatWasDoneFromOutsideBeforeTheNextEdit) {
  Doc().Add("Probe", 0);
  dynamic_cast<Probe&>(*Doc().Action(0)).SetLength(9);
  Doc().Add("Tiny Task", 1);
  EXPECT_EQ(Get(0, "Length"), "9");
  Doc().Undo();
  EXPECT_EQ(Doc().UndoName(), "Change");
  EXPECT_EQ(Get(0, "Length"), "9");
  dynamic_cast<Probe&>(*Doc().Action(0)).SetLength(10);
  Doc().SaveAs(folder_ / "p.xml");
  EXPECT_NE(folder_.Read("p.xml").find("<Property name=\"Length\">10<"), std::string::npos);
  EXPECT_FALSE(Doc().IsModified());
}

TEST_F(DocumentTest, DropsWhatWasDoneFromOutsideWhenItIsAskedTo) {
  Doc().Add("Probe", 0);
  Set(0, "Name", "three");
  const std::string before = Text();
  dynamic_cast<Probe&>(*Doc().Action(0)).SetLength(9);
  Doc().DropOutsideEdits();
  EXPECT_EQ(Text(), before);
  EXPECT_EQ(Get(0, "Length"), "5");
  EXPECT_FALSE(Doc().TakeEdit("Change"));
  EXPECT_EQ(Doc().UndoName(), "Change Name");
  TQXAction* const action = Doc().Action(0);
  Doc().DropOutsideEdits();  // nothing
  EXPECT_EQ(Doc().Action(0), action);
}

TEST_F(DocumentTest, NeverWritesASecretInClear) {
  folder_.Write("p.xml",
                "<BuildProject version=\"1\"><Actions><Action type=\"Tiny Task\">"
                "<Property name=\"Password\">hush-one</Property></Action></Actions></BuildProject>");
  Doc().Open(folder_ / "p.xml");
  EXPECT_EQ(Get(0, "Password"), "hush-one");
  Set(0, "Password", "hush-two");
  Set(0, "Count", "1");
  Doc().Duplicate(0);
  const std::vector<std::string> warnings = Doc().Save();
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_NE(warnings[0].find("only its encrypted form was kept"), std::string::npos);
  EXPECT_TRUE(Doc().Save().empty());
  const auto expectHidden = [&] {
    EXPECT_EQ(Text().find("hush"), std::string::npos);
    EXPECT_EQ(folder_.Read("p.xml").find("hush"), std::string::npos);
  };
  expectHidden();
  EXPECT_EQ(Get(1, "Password"), "hush-two");
  while (Doc().CanUndo()) {
    Doc().Undo();
    Doc().Save();
    expectHidden();
  }
  EXPECT_EQ(Get(0, "Password"), "hush-one");
  log_->AddMessage(1, "hush-one hush-two");
  EXPECT_EQ(memory_->Lines().back(), "*** ***");
}

TEST_F(DocumentTest, CopiesAreTheirOwn) {
  Doc().Add("Tiny Task", 0);
  Set(0, "Count", "3");
  ActionLog log;
  const std::unique_ptr<OpenProject> copy = Doc().Copy(log);
  ASSERT_EQ(copy->ActionCount(), 1);
  EXPECT_NE(copy->Action(0), Doc().Action(0));
  EXPECT_EQ(copy->TextToSave(), Text());
  copy->Action(0)->Execute();
  EXPECT_NE(copy->TextToSave(), Text());
  EXPECT_EQ(Get(0, "Count"), "3");
}

}  // namespace
}  // namespace qx::desktop
