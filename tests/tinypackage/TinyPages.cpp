#include "tests/tinypackage/TinyPages.h"

#include "plugin/Qxservices.h"
#include "plugin/Qxutils.h"
#include "tests/tinypackage/TinyAction.h"

namespace qx::tiny {
namespace {

class TTinyFrame final : public TFrame {
 public:
  TTinyFrame() {
    lblText_.labelled = &txtText_;
    txtText_.hint = "What the task says";
    txtText_.buttons = {{TEditButton::Picture::Folder, "Take a file's name", [this] { TakeFile(); }},
                        {TEditButton::Picture::Refresh, "Expand", [this] { Expand(); }}};
    cboDeed_.style = TComboStyle::DropDownList;
    for (const std::string_view name : ValueNames<TTinyDeed>) cboDeed_.AddItem(std::string(name));
    spCount_.SetRange(-1, 100);
    txtPassword_.masked = true;
    optQuiet_.OnClick = [this] { txtPassword_.SetEnabled(false); };
    optLoud_.OnClick = [this] { txtPassword_.SetEnabled(true); };
    lstLines_.OnTick = [this](int index, bool) { lblTicked_.caption = lstLines_.Item(index); };
    chkLines_.SetChecked(true);
    chkLines_.OnClick = [this] { pnlLines_.SetEnabled(chkLines_.Checked()); };
    grid_.SetSize(2, 2);
    btnClear_.OnClick = [this] { lstLines_.ClearItems(); };
    int tab = 0;
    for (TControl* control : Controls())
      if (control->IsWindowed()) control->tabOrder = tab++;
  }
  std::string PageName() const override { return "Tiny Page"; }

  void ReadActionData(TPersistent& object) override {
    auto& action = dynamic_cast<TTinyAction&>(object);
    txtText_.SetText(action.GetText());
    spCount_.SetValue(action.GetCount());
    cboDeed_.SetItemIndex(static_cast<int>(action.GetDeed()));
    (action.GetLoud() ? optLoud_ : optQuiet_).SetChecked(true);
    txtPassword_.SetText(action.GetPassword());
    for (const std::string& line : action.GetLines().Items()) lstLines_.AddItem(line, true);
  }

  void WriteActionData(TPersistent& object) override {
    auto& action = dynamic_cast<TTinyAction&>(object);
    action.SetText(txtText_.Text());
    action.SetCount(spCount_.Value());
    action.SetDeed(static_cast<TTinyDeed>(cboDeed_.ItemIndex()));
    action.SetLoud(optLoud_.Checked());
    action.SetPassword(txtPassword_.Text());
    TStringList lines;
    for (int i = 0; i < lstLines_.Count(); ++i)
      if (lstLines_.IsChecked(i)) lines.Add(lstLines_.Item(i));
    action.SetLines(lines);
  }

 private:
  void TakeFile() {
    std::string file = txtText_.Text();
    if (QXBrowseForFile("Select File", "All files|*.*", file)) txtText_.SetText(file);
  }
  void Expand() { QXShowMessage(QXDesignApplicationServices()->ExpandExpression(txtText_.Text(), true)); }

  TLabel& lblText_ = Add<TLabel>("lblText", "&Text");
  TButtonEdit& txtText_ = Add<TButtonEdit>("txtText");
  TSpinEdit& spCount_ = Add<TSpinEdit>("spCount");
  TComboBox& cboDeed_ = Add<TComboBox>("cboDeed");
  TGroupBox& grpVoice_ = Add<TGroupBox>("grpVoice", "Voice");
  TRadioButton& optQuiet_ = Add<TRadioButton>(grpVoice_, "optQuiet", "Quiet");
  TRadioButton& optLoud_ = Add<TRadioButton>(grpVoice_, "optLoud", "Loud");
  TEdit& txtPassword_ = Add<TEdit>("txtPassword");
  TCheckBox& chkLines_ = Add<TCheckBox>("chkLines", "Lines");
  TPanel& pnlLines_ = Add<TPanel>("pnlLines");
  TCheckListBox& lstLines_ = Add<TCheckListBox>(pnlLines_, "lstLines");
  TLabel& lblTicked_ = Add<TLabel>(pnlLines_, "lblTicked");
  TButton& btnClear_ = Add<TButton>(pnlLines_, "btnClear", "Clear");
  TStringGrid& grid_ = Add<TStringGrid>("grid");
};

class TTinyOptionsFrame final : public TQXOptionsFrame {
 public:
  std::string GetPageName() const override { return ""; }
  void ReadOptions(TQXOptionsObject& options) override {
    txtGreeting_.SetText(dynamic_cast<TTinyOptions&>(options).GetGreeting());
  }
  void WriteOptions(TQXOptionsObject& options) override {
    dynamic_cast<TTinyOptions&>(options).SetGreeting(txtGreeting_.Text());
  }

 private:
  TEdit& txtGreeting_ = Add<TEdit>("txtGreeting");
};

}  // namespace

const TFrameClass& TinyFrameClass() {
  static constexpr TFrameClass page{
      "TTinyFrame", []() -> std::unique_ptr<TFrame> { return std::make_unique<TTinyFrame>(); }};
  return page;
}

const TFrameClass& TinyOptionsFrameClass() {
  static constexpr TFrameClass page{
      "TTinyOptionsFrame", []() -> std::unique_ptr<TFrame> { return std::make_unique<TTinyOptionsFrame>(); }};
  return page;
}

}  // namespace qx::tiny
