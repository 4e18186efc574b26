// A project with its actions alive: new ones among them, the text that would be saved, its warnings.
#include "host/project/OpenProject.h"

#include <gtest/gtest.h>

#include "host/testing/SampleAction.h"
#include "host/testing/TestFolder.h"

namespace qx {
namespace {

OpenProject Open(const std::string& text, const std::string& file = "p.xml") {
  const auto find = [](const std::string& name) { return name == "Sample" ? &SampleActionClass() : nullptr; };
  return OpenProject(BuildProject::Parse(text, file), find, {});
}

const std::string kEmpty = BuildProject::Empty("p.xml").Text();

TEST(OpenProject, InsertsNewActionsAndNumbersTheOthersAnew) {
  OpenProject project = Open(kEmpty);
  dynamic_cast<SampleAction&>(project.Append("Sample")).title = "one";
  dynamic_cast<SampleAction&>(project.Append("Sample")).title = "two";
  TQXAction* const second = project.Action(1);
  dynamic_cast<SampleAction&>(project.Insert("Sample", 1)).title = "between";
  ASSERT_EQ(project.ActionCount(), 3);
  EXPECT_EQ(project.Action(2), second);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(project.Action(i)->Host().surroundings.number, i + 1);
  const OpenProject again = Open(project.TextToSave());
  EXPECT_EQ(dynamic_cast<SampleAction&>(*again.Action(1)).title, "between");
  EXPECT_EQ(dynamic_cast<SampleAction&>(*again.Action(2)).title, "two");
}

TEST(OpenProject, RefusesAnActionThatNoPackageHasAndStaysAsItIs) {
  OpenProject project = Open(kEmpty);
  EXPECT_EQ(MessageOf([&] { project.Insert("Other", 0); }), "No loaded package has the action \"Other\"");
  EXPECT_EQ(project.ActionCount(), 0);
  EXPECT_EQ(project.TextToSave(), kEmpty);
}

TEST(OpenProject, TellsTheTextThatItWouldSave) {
  const TestFolder folder;
  const std::string file = folder.Write("p.xml", kEmpty);
  OpenProject project = Open(kEmpty, file);
  dynamic_cast<SampleAction&>(project.Append("Sample")).title = "t";
  const std::string text = project.TextToSave();
  EXPECT_EQ(folder.Read("p.xml"), kEmpty);
  EXPECT_TRUE(project.Save().empty());
  EXPECT_EQ(folder.Read("p.xml"), text);
  OpenProject again = Open(text, file);
  EXPECT_EQ(again.TextToSave(), text);
}

TEST(OpenProject, WarnsOfAClearTextThatItTookOutOnce) {
  const TestFolder folder;
  const std::string text =
      "<BuildProject version=\"1\"><!-- c --><Actions><Action type=\"Sample\">"
      "<Property name=\"Secret\">hush</Property></Action></Actions></BuildProject>";
  const std::string file = folder.Write("p.xml", text);
  OpenProject project = Open(text, file);
  EXPECT_EQ(project.TextToSave().find("hush"), std::string::npos);
  const std::vector<std::string> both{
      file + " holds what this host does not know and only keeps: 1 comment",
      file + ": a secret stood there in clear text; only its encrypted form was kept"};
  EXPECT_EQ(project.Warnings(), both);
  EXPECT_EQ(project.Save(), both);
  EXPECT_EQ(project.Save().size(), 1u);
}

TEST(OpenProject, SavesUnderAnotherName) {
  const TestFolder folder;
  OpenProject project = Open(kEmpty);
  project.SetFile(folder / "q.xml");
  EXPECT_EQ(project.File(), folder / "q.xml");
  project.Save();
  EXPECT_EQ(folder.Read("q.xml"), kEmpty);
}

}  // namespace
}  // namespace qx
