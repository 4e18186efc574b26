// Pages of odd controls in the real window: what is typed, shown, raised and confirmed. Needs a screen, which
// scripts/screen gives.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/checklst.h>
#include <wx/combobox.h>
#include <wx/evtloop.h>
#include <wx/grid.h>
#include <wx/radiobut.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "host/desktop/testdata/Toolkit.h"
#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/ButtonEdit.h"
#include "host/desktop/views/NativeText.h"
#include "host/desktop/views/PagesWindow.h"
#include "host/desktop/views/WxText.h"
#include "host/pages/PageDriver.h"
#include "host/testing/SampleAction.h"
#include "tests/support/Screen.h"

namespace qx::desktop {
namespace {

class OddPage final : public TFrame {
 public:
  OddPage() {
    lblText.labelled = &txtText;
    txtText.hint = "A text";
    optOne.OnClick = [this] { lblState.caption = "one"; };
    spNumber.SetRange(10, 2000);
    spNumber.SetValue(10);
    spNumber.OnChange = [this] { ++numberChanges; };
    cboName.AddItem("First");
    cboName.AddItem("second");
    cboName.OnChange = [this] { ++nameChanges; };
    btnFail.OnClick = [this] {
      txtText.SetText("before it failed");
      throw Exception("It failed");
    };
    btnNothing.OnClick = [] {};
    btnFill.OnClick = [this] {
      for (int i = 0; i < 1000; ++i) lstMany.AddItem("Project " + std::to_string(i), i % 2 == 0);
    };
    lstMany.multiSelect = true;
    grid.SetSize(2, 3);
    grid.SetCell(0, 0, "Key");
    int tab = 0;
    for (TControl* control : Controls())
      if (control->IsWindowed()) control->tabOrder = tab++;
    txtSkipped.tabOrder = -1;
  }
  std::string PageName() const override { return "Odd"; }
  void WriteActionData(TPersistent&) override {
    if (!refusal.empty()) throw Exception(refusal);
    written = txtText.Text();
  }

  TLabel& lblText = Add<TLabel>("lblText", "&Text");
  TButtonEdit& txtText = Add<TButtonEdit>("txtText");
  TRadioButton& optOne = Add<TRadioButton>("optOne", "One");
  TRadioButton& optTwo = Add<TRadioButton>("optTwo", "Two");
  TLabel& lblState = Add<TLabel>("lblState", "none");
  TSpinEdit& spNumber = Add<TSpinEdit>("spNumber");
  TComboBox& cboName = Add<TComboBox>("cboName");
  TButton& btnFail = Add<TButton>("btnFail", "Fail");
  TButton& btnNothing = Add<TButton>("btnNothing", "Nothing");
  TButton& btnFill = Add<TButton>("btnFill", "Fill");
  TCheckListBox& lstMany = Add<TCheckListBox>("lstMany");
  TStringGrid& grid = Add<TStringGrid>("grid");
  TEdit& txtSkipped = Add<TEdit>("txtSkipped");
  int numberChanges = 0;
  int nameChanges = 0;
  std::string refusal;
  std::string written;
};
constexpr TFrameClass kOddPage{"TOddPage",
                               []() -> std::unique_ptr<TFrame> { return std::make_unique<OddPage>(); }};

class Views : public testing::Test {
 protected:
  void SetUp() override {
    if (!test::HasScreen()) GTEST_SKIP() << test::kNoScreen;
    NeedToolkit();
    loop_ = std::make_unique<wxGUIEventLoop>();
    wxEventLoopBase::SetActive(loop_.get());
    dialog_ = PageDialog::ForAction(registered_, action_);
    texts_.title = "Pages";
    texts_.written = [this] { ++saved_; };
    window_ = std::make_unique<PagesWindow>(nullptr, *dialog_, 0, texts_);
    window_->Show();
    Settle();
  }
  void TearDown() override {
    window_.reset();
    dialog_.reset();
    wxEventLoopBase::SetActive(nullptr);
    loop_.reset();
  }

  OddPage& Page() { return dynamic_cast<OddPage&>(dialog_->Page(0)); }
  template <class Widget>
  Widget& The(const char* name) {
    return dynamic_cast<Widget&>(*wxWindow::FindWindowByName(name, &window_->Page(0)));
  }
  wxTextCtrl& Text() { return The<ButtonEdit>("txtText").Text(); }
  void Settle() {
    while (loop_->Pending()) loop_->Dispatch();
  }
  void Send(wxWindow& widget, wxEventType type, int number = 0) {
    wxCommandEvent event(type, widget.GetId());
    event.SetEventObject(&widget);
    event.SetInt(number);
    widget.ProcessWindowEvent(event);
    Settle();
  }
  void Press(const char* name) { Send(The<wxButton>(name), wxEVT_BUTTON); }
  void Press(wxWindowID id) { Send(*window_->FindWindow(id), wxEVT_BUTTON); }
  bool CanApply() { return window_->FindWindow(wxID_APPLY)->IsEnabled(); }
  // Types into the number without leaving it.
  void TypeNumber(const char* text) {
    TypeSpinText(The<wxSpinCtrl>("spNumber"), text);
    Settle();
  }
  void LeaveNumber() {
    wxFocusEvent event(wxEVT_KILL_FOCUS, The<wxSpinCtrl>("spNumber").GetId());
    The<wxSpinCtrl>("spNumber").ProcessWindowEvent(event);
  }
  std::string Shown() { return user_.TakeShown().dump(); }

  std::unique_ptr<wxGUIEventLoop> loop_;
  SampleAction action_;
  RegisteredAction registered_{&SampleActionClass(), "Sample", "", "", {}, {&kOddPage}};
  DrivenUser user_;
  std::unique_ptr<PageDialog> dialog_;
  PagesDialogTexts texts_;
  std::unique_ptr<PagesWindow> window_;
  int saved_ = 0;
};
TEST_F(Views, ShowAChoiceWithoutADot) {
  EXPECT_FALSE(The<wxRadioButton>("optOne").GetValue());
  EXPECT_FALSE(The<wxRadioButton>("optTwo").GetValue());
  The<wxRadioButton>("optOne").SetValue(true);
  Send(The<wxRadioButton>("optOne"), wxEVT_RADIOBUTTON, 1);
  EXPECT_TRUE(Page().optOne.Checked());
  EXPECT_TRUE(The<wxRadioButton>("optOne").GetValue());
  EXPECT_EQ(The<wxStaticText>("lblState").GetLabel(), "one");
  Page().optOne.SetChecked(false);
  window_->Bound().Show();
  EXPECT_FALSE(The<wxRadioButton>("optOne").GetValue());
  EXPECT_FALSE(The<wxRadioButton>("optTwo").GetValue());
}

TEST_F(Views, BringBytesThatAreNoUtf8BackAsTheyWent) {
  const std::string bytes =
      "f\xFC"
      "r \xC3\xBC & \xE2\x82\xAC";
  Page().txtText.SetText(bytes);
  window_->Bound().Show();
  Text().SetValue(Text().GetValue() + "!");
  EXPECT_EQ(Page().txtText.Text(), bytes + "!");
}

TEST_F(Views, LeaveWhatIsBeingTypedAndPutItRightAfterwards) {
  auto& spin = The<wxSpinCtrl>("spNumber");
  TypeNumber("500");
  EXPECT_EQ(Page().spNumber.Value(), 500);
  TypeNumber("3");  // on the way to 300: below the range
  EXPECT_EQ(Page().spNumber.Value(), 10);
  EXPECT_EQ(spin.GetTextValue(), "3");
  TypeNumber("x");  // what stands there meanwhile is the toolkit's: GTK takes no letters
  EXPECT_EQ(Page().spNumber.Value(), 10);
  LeaveNumber();
  EXPECT_EQ(spin.GetTextValue(), "10");
  EXPECT_EQ(spin.GetValue(), 10);
  TypeNumber("99999");
  LeaveNumber();
  EXPECT_EQ(spin.GetTextValue(), "2000");
  EXPECT_EQ(Page().spNumber.Value(), 2000);
}

TEST_F(Views, ShowWhatTheProgramSetsWithoutAnEcho) {
  Page().spNumber.SetValue(77);
  Page().cboName.SetText("SECOND");
  Page().txtText.SetText("set");
  window_->Bound().Show();
  Settle();
  EXPECT_EQ(Page().numberChanges, 1);
  EXPECT_EQ(Page().nameChanges, 0);
  EXPECT_EQ(The<wxSpinCtrl>("spNumber").GetValue(), 77);
  EXPECT_EQ(The<wxComboBox>("cboName").GetValue(), "SECOND");
  EXPECT_EQ(Text().GetValue(), "set");
  EXPECT_FALSE(window_->Bound().Show());  // nothing differs any more
  EXPECT_FALSE(CanApply());
}

TEST_F(Views, LeaveTheCaretWhereItIs) {
  Text().SetValue("abcd");
  Text().SetInsertionPoint(2);
  Text().WriteText("x");
  Settle();
  EXPECT_EQ(Page().txtText.Text(), "abxcd");
  EXPECT_EQ(Text().GetInsertionPoint(), 3);
}

TEST_F(Views, TellWhatAHandlerRaisesAndShowWhatItDid) {
  Press("btnFail");
  EXPECT_EQ(Shown(), "[{\"kind\":\"error\",\"text\":\"It failed\"}]");
  EXPECT_EQ(Text().GetValue(), "before it failed");
}

TEST_F(Views, ApplyOnceSomethingWasChanged) {
  EXPECT_FALSE(CanApply());
  Press("btnNothing");
  EXPECT_FALSE(CanApply());
  Text().SetValue("new");
  EXPECT_TRUE(CanApply());
  Press(wxID_APPLY);
  EXPECT_EQ(Page().written, "new");
  EXPECT_EQ(saved_, 1);
  EXPECT_FALSE(CanApply());
  EXPECT_TRUE(window_->IsWhole());
  Press("btnFill");
  EXPECT_TRUE(CanApply());
}

TEST_F(Views, StayWhileAPageRefusesToWrite) {
  Text().SetValue("new");
  Page().refusal = "Not like this";
  Press(wxID_OK);
  EXPECT_EQ(Shown(), "[{\"kind\":\"error\",\"text\":\"Not like this\"}]");
  EXPECT_TRUE(window_->IsShown());
  EXPECT_EQ(saved_, 0);
  EXPECT_FALSE(window_->IsWhole());
  EXPECT_TRUE(CanApply());
  Page().refusal.clear();
  Press(wxID_OK);
  EXPECT_TRUE(window_->IsWhole());
  EXPECT_FALSE(window_->IsShown());
  EXPECT_EQ(saved_, 1);
}

TEST_F(Views, ConfirmACellThatIsStillBeingTyped) {
  auto& grid = The<wxGrid>("grid");
  EXPECT_EQ(grid.GetColLabelValue(0), "Key");
  grid.SetGridCursor(1, 1);
  grid.EnableCellEditControl();
  const wxGridCellEditorPtr editor(grid.GetCellEditor(1, 1));
  dynamic_cast<wxTextEntry&>(*editor->GetWindow()).SetValue("typed");
  Press(wxID_APPLY);
  Press(wxID_OK);
  EXPECT_EQ(Page().grid.Cell(1, 2), "typed");
}

TEST_F(Views, ShowAThousandItems) {
  Press("btnFill");
  auto& list = The<wxCheckListBox>("lstMany");
  ASSERT_EQ(list.GetCount(), 1000u);
  EXPECT_EQ(list.GetString(999), "Project 999");
  EXPECT_TRUE(list.IsChecked(998));
  EXPECT_FALSE(list.IsChecked(999));
}

TEST_F(Views, KeepTheSelectedRowsThroughATick) {
  Press("btnFill");
  auto& list = The<wxCheckListBox>("lstMany");
  list.SetSelection(3);
  list.SetSelection(5);
  list.Check(4, false);
  Send(list, wxEVT_CHECKLISTBOX, 4);
  EXPECT_FALSE(Page().lstMany.IsChecked(4));
  EXPECT_TRUE(list.IsSelected(3));
  EXPECT_TRUE(list.IsSelected(5));
}

TEST_F(Views, TellScreenReadersNamesAndLabels) {
  EXPECT_EQ(AccessibleName(Text()), "Text");
  EXPECT_EQ(AccessibleName(The<wxRadioButton>("optTwo")), "Two");
  EXPECT_EQ(LabelledBy(The<wxStaticText>("lblText")), &The<ButtonEdit>("txtText"));
  EXPECT_EQ(LabelledBy(The<wxStaticText>("lblState")), nullptr);
  EXPECT_EQ(Text().GetToolTipText(), "A text");
}

TEST_F(Views, PassByWhatHasNoTabStop) {
  EXPECT_FALSE(The<wxTextCtrl>("txtSkipped").AcceptsFocusFromKeyboard());
  EXPECT_TRUE(The<wxTextCtrl>("txtSkipped").AcceptsFocus());
}

}  // namespace
}  // namespace qx::desktop
