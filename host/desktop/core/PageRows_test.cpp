// Rows, columns, order and names, from control trees alone.
#include "host/desktop/core/PageRows.h"

#include <gtest/gtest.h>

#include <sstream>

#include "plugin/Qxframe.h"

namespace qx::desktop {
namespace {

class Frame : public TFrame {
 public:
  using TFrame::Add;
  std::string PageName() const override { return "Page"; }
  template <class Control>
  Control& Beside(const std::string& name, const std::string& caption = {}) {
    Control& control = Add<Control>(name, caption);
    control.sameRow = true;
    return control;
  }
  TLabel& Heading(const std::string& name, const std::string& caption) {
    TLabel& label = Add<TLabel>(name, caption);
    label.heading = true;
    return label;
  }
};

// "heading COLUMNS: KIND@FIRST name name; KIND ..." a section.
std::string Drawn(const TControl& container) {
  const char kinds[] = {'s', 'f', 'c', 'w'};
  std::ostringstream out;
  for (const PageSection& section : SectionsOf(container)) {
    out << (section.heading == nullptr ? "-" : section.heading->name) << " " << section.columns << ":";
    for (const PageRow& row : section.rows) {
      out << " " << (row.indented ? ">" : "") << kinds[static_cast<int>(row.kind)] << row.firstColumn;
      for (const TControl* control : row.controls) out << " " << control->name;
      out << ";";
    }
    out << "\n";
  }
  return out.str();
}

TEST(PageRows, OpenASectionWithEachHeading) {
  Frame frame;
  frame.Add<TCheckBox>("first");
  frame.Heading("one", "One");
  frame.Add<TLabel>("label");
  frame.Beside<TEdit>("edit");
  frame.Heading("two", "Two");
  frame.Add<TButton>("left");
  frame.Beside<TButton>("right");
  EXPECT_EQ(Drawn(frame.Root()), "- 1: s0 first;\none 2: f0 label edit;\ntwo 1: w0 left right;\n");
}

TEST(PageRows, PutColumnLabelsOverTheFieldsAndBoxesUnderThem) {
  Frame frame;
  frame.Add<TLabel>("major");
  frame.Beside<TLabel>("minor");
  frame.Add<TCheckBox>("stamp");
  frame.Beside<TEdit>("a");
  frame.Beside<TEdit>("b");
  frame.Add<TCheckBox>("auto1");
  frame.Beside<TCheckBox>("auto2");
  EXPECT_EQ(Drawn(frame.Root()), "- 3: c1 major minor; f0 stamp a b; w1 auto1 auto2;\n");
}

TEST(PageRows, AlignBoxesThatFillSeveralRows) {
  Frame frame;
  frame.Add<TCheckBox>("a");
  frame.Beside<TCheckBox>("b");
  frame.Beside<TCheckBox>("c");
  frame.Add<TCheckBox>("d");
  frame.Beside<TCheckBox>("e");
  EXPECT_EQ(Drawn(frame.Root()), "- 3: c0 a b c; c0 d e;\n");
}

TEST(PageRows, IndentWhatBelongsToAChoice) {
  Frame frame;
  frame.Add<TRadioButton>("share");
  frame.Beside<TEdit>("path");
  frame.Add<TRadioButton>("web");
  frame.Add<TLabel>("user");
  frame.Beside<TEdit>("name");
  frame.Add<TRadioButton>("none");
  frame.Add<TLabel>("note");
  frame.Add<TCheckBox>("after");
  EXPECT_EQ(Drawn(frame.Root()), "- 2: f0 share path; s0 web; >f0 user name; s0 none; s0 note; s0 after;\n");
}

TEST(PageRows, ASameRowWithoutARowBeginsOne) {
  Frame frame;
  frame.Beside<TEdit>("edit");
  frame.Heading("one", "One");
  frame.Beside<TEdit>("other");
  EXPECT_EQ(Drawn(frame.Root()), "- 1: s0 edit;\none 1: s0 other;\n");
  EXPECT_EQ(Drawn(*frame.FindControl("edit")), "- 1:\n");
}

TEST(PageRows, KnowWhatIsTall) {
  Frame frame;
  TPanel& panel = frame.Add<TPanel>("panel");
  EXPECT_FALSE(IsTall(panel));
  frame.Add<TStringGrid>(panel, "grid");
  EXPECT_TRUE(IsTall(panel));
}

std::string Order(const Frame& frame) {
  std::string names;
  for (const TControl* control : InTabOrder(const_cast<Frame&>(frame).Root())) names += control->name + " ";
  return names;
}

TEST(PageRows, TheTabKeyFollowsTheNumbersWithLabelsBeforeWhatTheyName) {
  Frame frame;
  TLabel& one = frame.Add<TLabel>("labelOne");
  frame.Add<TLabel>("unit");
  TEdit& first = frame.Add<TEdit>("one");
  TEdit& second = frame.Add<TEdit>("two");
  TEdit& third = frame.Add<TEdit>("three");
  one.labelled = &first;
  first.tabOrder = 7;
  second.tabOrder = 0;
  third.tabOrder = 3;
  frame.Add<TLabel>("foot");
  EXPECT_EQ(Order(frame), "two three unit labelOne one foot ");
}

TEST(PageRows, ControlsAreCalledByWhatNamesThemOnThePage) {
  Frame frame;
  frame.Heading("heading", " Numbers ");
  TLabel& label = frame.Add<TLabel>("label", "&Text :");
  TEdit& text = frame.Beside<TEdit>("text");
  label.labelled = &text;
  frame.Add<TLabel>("major", "Major");
  frame.Beside<TLabel>("minor", "Minor");
  frame.Add<TCheckBox>("stamp", "Assembly && file");
  frame.Beside<TEdit>("a");
  frame.Beside<TEdit>("b");
  frame.Add<TRadioButton>("share", "Use share");
  frame.Beside<TEdit>("path");
  frame.Add<TCheckListBox>("list");
  frame.Heading("other", "");
  frame.Add<TEdit>("bare").hint = "What it is";
  const auto name = [&](const char* control) { return SpokenName(*frame.FindControl(control)); };
  EXPECT_EQ(name("text"), "Text");
  EXPECT_EQ(name("stamp"), "Assembly & file");
  EXPECT_EQ(name("a"), "Assembly & file Major");
  EXPECT_EQ(name("b"), "Assembly & file Minor");
  EXPECT_EQ(name("path"), "Use share");
  EXPECT_EQ(name("list"), "Numbers");
  EXPECT_EQ(name("bare"), "What it is");
}

}  // namespace
}  // namespace qx::desktop
