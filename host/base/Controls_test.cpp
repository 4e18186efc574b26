#include <gtest/gtest.h>

#include <memory>

#include "plugin/Qxframe.h"

namespace qx {
namespace {

// A page whose controls the test adds; it keeps in which order handlers ran.
class Frame final : public TFrame {
 public:
  std::string PageName() const override { return "Frame"; }
  template <class Control>
  Control& Make(const std::string& name) {
    return Add<Control>(name);
  }
  template <class Control>
  Control& Make(TControl& parent, const std::string& name) {
    return Add<Control>(parent, name);
  }
};

class Controls : public testing::Test {
 protected:
  template <class Control>
  Control& Make(const std::string& name) {
    return frame_.Make<Control>(name);
  }
  template <class Control>
  Control& Make(TControl& parent, const std::string& name) {
    return frame_.Make<Control>(parent, name);
  }
  std::function<void()> Note(const std::string& what) {
    return [this, what] { ran_ += what + " "; };
  }
  std::string Ran() { return std::exchange(ran_, ""); }

  Frame frame_;
  std::string ran_;
};

TEST_F(Controls, StandInTheOrderTheyWereAdded) {
  auto& group = Make<TGroupBox>("group");
  auto& first = Make<TEdit>(group, "first");
  auto& second = Make<TLabel>("second");
  EXPECT_EQ(frame_.Controls(), (std::vector<TControl*>{&group, &first, &second}));
  EXPECT_EQ(frame_.Root().Children(), (std::vector<TControl*>{&group, &second}));
  EXPECT_EQ(group.Children(), std::vector<TControl*>{&first});
  EXPECT_EQ(first.Parent(), &group);
  EXPECT_EQ(group.Parent(), &frame_.Root());
  EXPECT_EQ(frame_.FindControl("FIRST"), &first);
  EXPECT_EQ(frame_.FindControl("third"), nullptr);
  EXPECT_TRUE(group.IsWindowed());
  EXPECT_FALSE(second.IsWindowed());
}

TEST_F(Controls, ADisabledContainerDisablesWhatIsInsideAndLeavesItsFlag) {
  auto& panel = Make<TPanel>("panel");
  auto& group = Make<TGroupBox>(panel, "group");
  auto& box = Make<TCheckBox>(group, "box");
  panel.SetEnabled(false);
  EXPECT_TRUE(box.Enabled());
  EXPECT_FALSE(box.IsEnabled());
  EXPECT_EQ(box.UserClick(), TUserAnswer::Disabled);
  EXPECT_FALSE(box.Checked());
  box.SetEnabled(false);
  panel.SetEnabled(true);
  EXPECT_FALSE(box.IsEnabled());
  box.SetEnabled(true);
  EXPECT_EQ(box.UserClick(), TUserAnswer::Done);
  EXPECT_TRUE(box.Checked());
}

TEST_F(Controls, NothingTheUserDoesReachesADisabledControl) {
  auto& edit = Make<TButtonEdit>("edit");
  edit.buttons.push_back({TEditButton::Picture::Folder, "", Note("folder")});
  auto& combo = Make<TComboBox>("combo");
  combo.AddItem("a");
  combo.OnChange = Note("combo");
  auto& list = Make<TCheckListBox>("list");
  list.AddItem("a");
  list.OnTick = [&](int, bool) { ran_ += "tick "; };
  auto& grid = Make<TStringGrid>("grid");
  grid.SetSize(1, 2);
  auto& button = Make<TButton>("button");
  button.OnClick = Note("button");
  auto& spin = Make<TSpinEdit>("spin");
  spin.OnChange = Note("spin");
  frame_.Root().SetEnabled(false);
  EXPECT_EQ(edit.UserType("x"), TUserAnswer::Disabled);
  EXPECT_EQ(edit.UserPressButton(0), TUserAnswer::Disabled);
  EXPECT_EQ(combo.UserSelect(0), TUserAnswer::Disabled);
  EXPECT_EQ(combo.UserType("a"), TUserAnswer::Disabled);
  EXPECT_EQ(list.UserTick(0, true), TUserAnswer::Disabled);
  EXPECT_EQ(list.UserSelect(0), TUserAnswer::Disabled);
  EXPECT_EQ(grid.UserEditCell(0, 1, "x"), TUserAnswer::Disabled);
  EXPECT_EQ(button.UserClick(), TUserAnswer::Disabled);
  EXPECT_EQ(spin.UserType("7"), TUserAnswer::Disabled);
  EXPECT_EQ(edit.Text() + combo.Text() + grid.Cell(0, 1), "");
  EXPECT_FALSE(list.IsChecked(0));
  EXPECT_EQ(spin.Value(), 0);
  EXPECT_EQ(Ran(), "");
}

TEST_F(Controls, TheProgramMayChangeADisabledControl) {
  auto& box = Make<TCheckBox>("box");
  box.OnClick = Note("box");
  box.SetEnabled(false);
  box.SetChecked(true);
  EXPECT_TRUE(box.Checked());
  EXPECT_EQ(Ran(), "box ");
}

TEST_F(Controls, ACheckBoxRunsItsRuleWhenItChangesWhoeverChangesIt) {
  auto& box = Make<TCheckBox>("box");
  box.OnClick = [&] { ran_ += box.Checked() ? "on " : "off "; };
  box.SetChecked(true);
  box.SetChecked(true);
  EXPECT_EQ(Ran(), "on ");
  box.UserClick();
  EXPECT_EQ(Ran(), "off ");
  box.UserClick();
  box.SetChecked(false);
  box.SetChecked(false);
  EXPECT_EQ(Ran(), "on off ");
}

TEST_F(Controls, ARadioButtonRunsItsRuleWhenItIsCheckedAndUnchecksItsSiblings) {
  auto& group = Make<TGroupBox>("group");
  auto& all = Make<TRadioButton>(group, "all");
  auto& some = Make<TRadioButton>(group, "some");
  auto& elsewhere = Make<TRadioButton>("elsewhere");
  all.SetChecked(true);
  elsewhere.SetChecked(true);
  all.OnClick = Note("all");
  elsewhere.OnClick = Note("elsewhere");
  some.OnClick = [&] { ran_ += all.Checked() ? "both " : "some "; };
  some.SetChecked(true);
  EXPECT_EQ(Ran(), "some ");  // the sibling that lost the dot runs nothing, and has lost it by then
  EXPECT_FALSE(all.Checked());
  EXPECT_TRUE(elsewhere.Checked());
  some.UserClick();
  EXPECT_EQ(Ran(), "");
  all.UserClick();
  EXPECT_EQ(Ran(), "all ");
  EXPECT_FALSE(some.Checked());
  all.SetChecked(false);
  EXPECT_EQ(Ran(), "");
  EXPECT_FALSE(all.Checked() || some.Checked());
}

TEST_F(Controls, ASpinEditRunsItsRuleWhenItsValueChangesWhoeverChangesIt) {
  auto& spin = Make<TSpinEdit>("spin");
  spin.SetRange(1, 10);
  EXPECT_EQ(spin.Value(), 1);
  spin.OnChange = [&] { ran_ += std::to_string(spin.Value()) + " "; };
  spin.SetValue(5);
  spin.SetValue(5);
  EXPECT_EQ(spin.UserType("7"), TUserAnswer::Done);
  EXPECT_EQ(spin.UserType("7"), TUserAnswer::Done);
  EXPECT_EQ(Ran(), "5 7 ");
}

TEST_F(Controls, ASpinEditHoldsItsRange) {
  auto& spin = Make<TSpinEdit>("spin");
  spin.SetRange(1, 2147483647);
  for (const auto& [typed, value] :
       std::vector<std::pair<std::string, std::int32_t>>{{"0", 1},
                                                         {"-5", 1},
                                                         {" +42 ", 42},
                                                         {"2147483648", 2147483647},
                                                         {"99999999999999999999999", 2147483647},
                                                         {"-99999999999999999999999", 1}}) {
    EXPECT_EQ(spin.UserType(typed), TUserAnswer::Done) << typed;
    EXPECT_EQ(spin.Value(), value) << typed;
  }
  spin.SetValue(9);
  for (const char* typed : {"", "-", "nine", "1.5", "9a"}) {
    EXPECT_EQ(spin.UserType(typed), TUserAnswer::NotTaken) << typed;
    EXPECT_EQ(spin.Value(), 9);
  }
  spin.SetValue(-3);
  EXPECT_EQ(spin.Value(), 1);
  spin.OnChange = Note("change");
  spin.SetRange(5, 6);
  EXPECT_EQ(spin.Value(), 5);
  EXPECT_EQ(Ran(), "change ");
}

TEST_F(Controls, AComboBoxRunsItsRuleForTheUserOnly) {
  auto& box = Make<TComboBox>("box");
  for (const char* item : {"Debug", "Release"}) box.AddItem(item);
  box.OnChange = [&] { ran_ += box.Text() + "/" + std::to_string(box.ItemIndex()) + " "; };
  box.SetItemIndex(0);
  box.SetText("Other");
  EXPECT_EQ(Ran(), "");
  box.UserSelect(1);
  box.UserSelect(1);
  box.UserType("debug");
  box.UserType("debug");
  box.UserType("none");
  EXPECT_EQ(Ran(), "Release/1 debug/0 none/-1 ");
  EXPECT_EQ(box.UserSelect(2), TUserAnswer::NoSuchItem);
  EXPECT_EQ(box.UserSelect(-1), TUserAnswer::NoSuchItem);
  EXPECT_EQ(Ran(), "");
}

TEST_F(Controls, AnEditableBoxKeepsItsTextWhenItsItemsGo) {
  auto& box = Make<TComboBox>("box");
  box.AddItem("Debug");
  box.SetText("DEBUG");
  EXPECT_EQ(box.ItemIndex(), 0);
  box.ClearItems();
  EXPECT_EQ(box.Text(), "DEBUG");
  EXPECT_EQ(box.ItemIndex(), -1);
  box.AddItem("Debug");
  EXPECT_EQ(box.ItemIndex(), -1);
  box.SetItemIndex(box.IndexOf("none"));
  EXPECT_EQ(box.Text(), "");
}

TEST_F(Controls, ADropDownListShowsAnItemOrNothing) {
  auto& box = Make<TComboBox>("box");
  box.style = TComboStyle::DropDownList;
  for (const char* item : {"Build", "Clean"}) box.AddItem(item);
  box.OnChange = Note("change");
  EXPECT_EQ(box.Kind(), "dropDownList");
  box.SetText("clean");
  EXPECT_EQ(box.Text(), "Clean");
  box.SetText("Deploy");
  EXPECT_EQ(box.Text(), "Clean");
  EXPECT_EQ(box.UserType("Deploy"), TUserAnswer::NotTaken);
  EXPECT_EQ(Ran(), "");
  EXPECT_EQ(box.UserType("build"), TUserAnswer::Done);
  EXPECT_EQ(box.ItemIndex(), 0);
  EXPECT_EQ(Ran(), "change ");
  box.SetItemIndex(7);
  EXPECT_EQ(box.ItemIndex(), -1);
  EXPECT_EQ(box.Text(), "");
  box.SetItemIndex(1);
  box.ClearItems();
  EXPECT_EQ(box.Text(), "");
}

TEST_F(Controls, ACheckListRunsItsRuleForTheUserOnly) {
  auto& list = Make<TCheckListBox>("list");
  list.AddItem("a");
  list.AddItem("b", true);
  list.OnTick = [&](int index, bool checked) {
    ran_ += std::to_string(index) + (checked ? "+ " : "- ");
    list.ClearItems();  // as a page does that reads its solution anew
  };
  list.SetChecked(0, true);
  list.UncheckAll();
  list.CheckAll();
  EXPECT_TRUE(list.IsChecked(0) && list.IsChecked(1));
  EXPECT_EQ(list.UserTick(1, true), TUserAnswer::Done);
  EXPECT_EQ(list.UserTick(2, true), TUserAnswer::NoSuchItem);
  EXPECT_EQ(Ran(), "");
  EXPECT_EQ(list.UserTick(1, false), TUserAnswer::Done);
  EXPECT_EQ(Ran(), "1- ");
  EXPECT_EQ(list.Count(), 0);
  EXPECT_THROW(list.IsChecked(0), Exception);
  EXPECT_THROW(list.SetChecked(-1, true), Exception);
}

TEST_F(Controls, PickingARowSelectsItAndTicksNothing) {
  auto& list = Make<TCheckListBox>("list");
  for (const char* item : {"a", "b"}) list.AddItem(item);
  EXPECT_EQ(list.UserSelect(0), TUserAnswer::Done);
  EXPECT_EQ(list.UserSelect(1), TUserAnswer::Done);
  EXPECT_FALSE(list.IsSelected(0));
  EXPECT_TRUE(list.IsSelected(1));
  EXPECT_FALSE(list.IsChecked(1));
}

TEST_F(Controls, ButtonsRunTheirRuleForTheUser) {
  auto& button = Make<TButton>("button");
  EXPECT_EQ(button.UserClick(), TUserAnswer::Done);
  button.OnClick = Note("button");
  button.UserClick();
  auto& edit = Make<TButtonEdit>("edit");
  edit.buttons.push_back({TEditButton::Picture::Folder, "", Note("folder")});
  edit.buttons.push_back({TEditButton::Picture::Refresh, "Again", Note("refresh")});
  EXPECT_EQ(edit.UserPressButton(1), TUserAnswer::Done);
  EXPECT_EQ(edit.UserPressButton(0), TUserAnswer::Done);
  EXPECT_EQ(edit.UserPressButton(2), TUserAnswer::NoSuchItem);
  EXPECT_EQ(edit.UserPressButton(-1), TUserAnswer::NoSuchItem);
  EXPECT_EQ(edit.UserType("x"), TUserAnswer::Done);
  EXPECT_EQ(edit.Text(), "x");
  EXPECT_EQ(Ran(), "button refresh folder ");
}

TEST_F(Controls, AGridsHeadingRowIsTheProgramsOnly) {
  auto& grid = Make<TStringGrid>("grid");
  grid.SetSize(2, 3);
  grid.SetCell(1, 0, "Value");
  EXPECT_EQ(grid.UserEditCell(1, 2, "x"), TUserAnswer::Done);
  EXPECT_EQ(grid.Cell(1, 2), "x");
  EXPECT_EQ(grid.UserEditCell(1, 0, "y"), TUserAnswer::NoSuchItem);
  EXPECT_EQ(grid.UserEditCell(2, 1, "y"), TUserAnswer::NoSuchItem);
  EXPECT_EQ(grid.UserEditCell(0, 3, "y"), TUserAnswer::NoSuchItem);
  EXPECT_EQ(grid.UserEditCell(-1, 1, "y"), TUserAnswer::NoSuchItem);
  EXPECT_EQ(grid.Cell(1, 0), "Value");
  EXPECT_THROW(grid.Cell(2, 0), Exception);
  EXPECT_THROW(grid.SetCell(0, 3, ""), Exception);
}

TEST_F(Controls, AKindThatHasNothingLikeItSaysSo) {
  auto& label = Make<TLabel>("label");
  EXPECT_EQ(label.UserClick(), TUserAnswer::NotOffered);
  EXPECT_EQ(label.UserType("x"), TUserAnswer::NotOffered);
  EXPECT_EQ(label.UserSelect(0), TUserAnswer::NotOffered);
  EXPECT_EQ(label.UserTick(0, true), TUserAnswer::NotOffered);
  EXPECT_EQ(label.UserEditCell(0, 0, "x"), TUserAnswer::NotOffered);
  EXPECT_EQ(label.UserPressButton(0), TUserAnswer::NotOffered);
}

class IPart : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{44444444-4444-4444-4444-444444444444}");
  using Base = IInterface;
  virtual int Part() = 0;

 protected:
  ~IPart() = default;
};

class AnsweringFrame final : public TFrameAnswering<IPart> {
 public:
  std::string PageName() const override { return "Answering"; }
  int Part() override { return 7; }
};

TEST(Frames, AnswerForTheInterfacesTheyList) {
  const std::unique_ptr<TFrame> frame = std::make_unique<AnsweringFrame>();
  const InterfacePtr<IPart> part = Query<IPart>(frame.get());
  ASSERT_TRUE(part);
  EXPECT_EQ(part->Part(), 7);
  EXPECT_TRUE(Query<IInterface>(frame.get()));
  EXPECT_FALSE(Query<IQXPageList>(frame.get()));
  Frame plain;
  EXPECT_FALSE(Query<IPart>(&plain));
}

}  // namespace
}  // namespace qx
