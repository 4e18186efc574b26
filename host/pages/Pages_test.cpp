// The dialog of pages and its driver, with two pages of an action and one of options.
#include "host/pages/Pages.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "host/actions/ActionHost.h"
#include "host/pages/PageDriver.h"
#include "host/testing/SampleAction.h"
#include "plugin/Qxutils.h"

namespace qx {
namespace {

std::string g_life;  // what was called on which page

class IWantsTitle : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{55555555-5555-5555-5555-555555555555}");
  using Base = IInterface;
  virtual void TitleChanged(const std::string& title) = 0;

 protected:
  ~IWantsTitle() = default;
};

// One control of each kind, and rules that use them.
class FirstPage final : public TFrame {
 public:
  FirstPage() {
    g_life += "make First; ";
    Add<TLabel>("lblTitle", "&Title :").labelled = &txtTitle;
    txtTitle.hint = "What it is called";
    txtTitle.tabOrder = 0;
    txtTitle.buttons = {{TEditButton::Picture::Folder, "", [this] { Browse(); }},
                        {TEditButton::Picture::Refresh, "Tell the others", [this] { Tell(); }}};
    kind.style = TComboStyle::DropDownList;
    for (const char* item : {"Green", "Red"}) kind.AddItem(item);
    kind.OnChange = [this] { QXShowMessage("Now " + kind.Text()); };
    for (const char* item : {"one", "two"}) parts.AddItem(item);
    parts.OnTick = [](int index, bool checked) {
      if (checked && index == 1) throw std::runtime_error("Not ours");
      if (checked) throw Exception("No tick for " + std::to_string(index));
    };
    wanted.OnClick = [this] { inside.SetEnabled(wanted.Checked()); };
    inside.SetEnabled(false);
    password.masked = true;
    cells.SetSize(2, 3);
    cells.SetCell(0, 0, "Key");
    number.SetRange(0, 9);
    clear.OnClick = [this] { txtTitle.SetText(""); };
  }
  ~FirstPage() override { g_life += "free First; "; }
  void InitFrame() override { g_life += "frame First; "; }
  void InitPage() override { g_life += "init First; "; }
  void OnPageActivate() override { g_life += "activate First; "; }
  void OnPageDeActivate() override { g_life += "leave First; "; }
  std::string PageName() const override { return "First"; }
  void ReadActionData(TPersistent& object) override {
    auto& action = dynamic_cast<SampleAction&>(object);
    g_life += "read First; ";
    txtTitle.SetText(action.title);
    password.SetText(action.secret);
    number.SetValue(action.number);
    Tell();
  }
  void WriteActionData(TPersistent& object) override {
    auto& action = dynamic_cast<SampleAction&>(object);
    action.title = txtTitle.Text();
    if (action.title == "wrong") throw Exception("\"wrong\" is no title");
    action.number = number.Value();
    action.wanted = wanted.Checked();
  }

 private:
  void Browse() {
    TOpenDialog dialog{"Select", "Titles|*.txt", "txt", txtTitle.Text()};
    if (dialog.Execute()) txtTitle.SetText(dialog.fileName);
    std::string folder = "start";
    if (QXBrowseForDirectory("Where", folder)) QXShowError("There: " + folder);
  }
  void Tell() {
    const InterfacePtr<IQXPageList> list = Query<IQXPageList>(Owner());
    for (int i = 0; list && i < list->GetPageCount(); ++i)
      if (const auto page = Query<IWantsTitle>(list->GetPage(i))) page->TitleChanged(txtTitle.Text());
  }

  TButtonEdit& txtTitle = Add<TButtonEdit>("txtTitle");
  TComboBox& kind = Add<TComboBox>("cboKind");
  TCheckBox& wanted = Add<TCheckBox>("chkWanted", "Wanted ");
  TGroupBox& inside = Add<TGroupBox>("grpInside", "Inside");
  TRadioButton& all = Add<TRadioButton>(inside, "optAll");
  TRadioButton& some = Add<TRadioButton>(inside, "optSome");
  TCheckListBox& parts = Add<TCheckListBox>("lstParts");
  TEdit& password = Add<TEdit>("txtPassword");
  TSpinEdit& number = Add<TSpinEdit>("spNumber");
  TStringGrid& cells = Add<TStringGrid>("Cells");
  TButton& clear = Add<TButton>("btnClear", "Clear");
};

class SecondPage final : public TFrameAnswering<IWantsTitle> {
 public:
  SecondPage() { g_life += "make Second; "; }
  ~SecondPage() override { g_life += "free Second; "; }
  void InitFrame() override { g_life += "frame Second; "; }
  void InitPage() override { g_life += "init Second; "; }
  void OnPageActivate() override { g_life += "activate Second; "; }
  void OnPageDeActivate() override { g_life += "leave Second; "; }
  std::string PageName() const override { return "Second Page"; }
  void ReadActionData(TPersistent&) override {
    g_life += "read Second; ";
    throw Exception("Cannot read it all");
  }
  void WriteActionData(TPersistent& object) override { dynamic_cast<SampleAction&>(object).wanted = true; }
  void TitleChanged(const std::string& title) override { g_life += "title \"" + title + "\"; "; }

 private:
  TEdit& note = Add<TEdit>("txtNote");
};

constexpr TFrameClass kFirst{"TFirst",
                             []() -> std::unique_ptr<TFrame> { return std::make_unique<FirstPage>(); }};
constexpr TFrameClass kSecond{"TSecond",
                              []() -> std::unique_ptr<TFrame> { return std::make_unique<SecondPage>(); }};
constexpr TFrameClass kNone{"TNone", []() -> std::unique_ptr<TFrame> { return nullptr; }};

class Settings final : public TQXOptionsObject {
 public:
  Settings();
  std::string place = "here";
};
constexpr TQXOptionsClass kSettings{
    "TSettings",
    [] { return std::string("Sample Settings"); },
    [] { return std::string("Tools"); },
    [] { return std::string("Key"); },
    {},
    []() -> std::unique_ptr<TQXOptionsObject> { return std::make_unique<Settings>(); }};
Settings::Settings() : TQXOptionsObject(kSettings) {}

class SettingsPage final : public TQXOptionsFrame {
 public:
  using TQXOptionsFrame::InitPage;
  void InitPage(IQXOptionPageOwner& owner) override { owner_ = &owner; }
  std::string GetPageName() const override { return ""; }
  void ReadOptions(TQXOptionsObject& options) override {
    if (owner_->GetOptions() != &options || owner_->GetPageCount() != 1 || owner_->GetPage(0) != this)
      throw Exception("The owner is another page's");
    place.SetText(dynamic_cast<Settings&>(options).place);
  }
  void WriteOptions(TQXOptionsObject& options) override {
    dynamic_cast<Settings&>(options).place = place.Text();
  }

 private:
  IQXOptionPageOwner* owner_ = nullptr;
  TEdit& place = Add<TEdit>("txtPlace");
};
constexpr TFrameClass kSettingsPage{
    "TSettingsPage", []() -> std::unique_ptr<TFrame> { return std::make_unique<SettingsPage>(); }};

class PageDialogs : public testing::Test {
 protected:
  PageDialogs() {
    g_life.clear();
    catalogue_.RegisterAction(SampleActionClass(), "Sample", "Samples", "SAMPLE");
  }
  void Register(const TFrameClass& page) {
    const TFrameClass* const pages[] = {&page};
    catalogue_.RegisterPropertyPages(SampleActionClass(), pages);
  }
  void Open() {
    Register(kFirst);
    Register(kSecond);
    dialog_ = PageDialog::ForAction(*catalogue_.FindAction("Sample"), action_);
    driver_ = std::make_unique<PageDriver>(*dialog_, user_, [this] { ++saved_; });
  }
  std::string Answer(const std::string& line) { return driver_->Answer(line); }
  nlohmann::json State(const std::string& target) { return nlohmann::json::parse(Answer("state " + target)); }

  SampleAction action_;
  Catalogue catalogue_;
  DrivenUser user_;
  std::unique_ptr<PageDialog> dialog_;
  std::unique_ptr<PageDriver> driver_;
  int saved_ = 0;
};

const char* const kOk = "{\"ok\":true}";

TEST_F(PageDialogs, LeadPagesThroughTheirLifeInOrder) {
  action_.title = "T";
  Open();
  EXPECT_EQ(g_life,
            "make First; make Second; frame First; frame Second; init First; init Second; "
            "read First; title \"T\"; read Second; activate First; ");
  EXPECT_EQ(Answer("dialogs"), "[{\"kind\":\"error\",\"text\":\"Cannot read it all\"}]");
  g_life.clear();
  dialog_->Activate(0);
  dialog_->Activate(1);
  EXPECT_EQ(g_life, "leave First; activate Second; ");
  EXPECT_EQ(dialog_->Active(), 1);
}

TEST_F(PageDialogs, NeedPages) {
  EXPECT_THROW(PageDialog::ForAction(*catalogue_.FindAction("Sample"), action_), Exception);
  EXPECT_THROW(PageDialog::ForOptions(catalogue_), Exception);
  Register(kNone);
  EXPECT_THROW(PageDialog::ForAction(*catalogue_.FindAction("Sample"), action_), Exception);
}

TEST_F(PageDialogs, ShowTheOptionsPagesUnderTheirObjectsNames) {
  catalogue_.RegisterOptions(kSettings, "SETTINGS");
  catalogue_.RegisterOptionsPage(kSettings, kSettingsPage);
  dialog_ = PageDialog::ForOptions(catalogue_);
  PageDriver driver(*dialog_, user_, [this] { ++saved_; });
  EXPECT_EQ(driver.Answer("pages"), "[\"Sample Settings\"]");
  EXPECT_EQ(driver.Answer("dialogs"), "[]");
  EXPECT_EQ(driver.Answer("text Sample Settings.txtPlace there "), kOk);
  EXPECT_EQ(driver.Answer("write"), kOk);
  auto& settings = dynamic_cast<Settings&>(catalogue_.ObjectOf(catalogue_.Options()[0]));
  EXPECT_EQ(settings.place, "there ");
  EXPECT_EQ(saved_, 1);
}

TEST_F(PageDialogs, RefuseAnOptionsPageThatIsNone) {
  catalogue_.RegisterOptions(kSettings, "SETTINGS");
  catalogue_.RegisterOptionsPage(kSettings, kFirst);
  EXPECT_THROW(PageDialog::ForOptions(catalogue_), Exception);
}

class OpensSecond final : public TShowActionPropertiesEditor {
 public:
  std::string GetPageName() const override { return "Second Page"; }
};
constexpr TQXPropertyEditorClass kOpensFirst{"TFirst", []() -> std::unique_ptr<TQXPropertyEditor> {
                                               return std::make_unique<TShowActionPropertiesEditor>();
                                             }};
constexpr TQXPropertyEditorClass kOpensSecond{
    "TSecond", []() -> std::unique_ptr<TQXPropertyEditor> { return std::make_unique<OpensSecond>(); }};
constexpr TQXPropertyEditorClass kOpensNone{
    "TNone", []() -> std::unique_ptr<TQXPropertyEditor> { return std::make_unique<TQXPropertyEditor>(); }};

TEST_F(PageDialogs, OpenAtThePageThatAnEditorNames) {
  const auto page = [&] { return EditorPage(catalogue_, SampleActionClass(), "title"); };
  EXPECT_EQ(page(), std::nullopt);
  catalogue_.RegisterPropertyEditor(SampleActionClass(), "Title", kOpensFirst);
  EXPECT_EQ(page(), "");
  catalogue_.RegisterPropertyEditor(SampleActionClass(), "Title", kOpensSecond);
  EXPECT_EQ(page(), "Second Page");
  catalogue_.RegisterPropertyEditor(SampleActionClass(), "Title", kOpensNone);
  EXPECT_EQ(page(), std::nullopt);
  Open();
  EXPECT_EQ(dialog_->Find("second page"), 1);
  EXPECT_EQ(dialog_->Find("Third"), -1);
}

using PageDrivers = PageDialogs;

TEST_F(PageDrivers, NameThePages) {
  Open();
  EXPECT_EQ(Answer("pages"), "[\"First\",\"Second Page\"]");
  EXPECT_EQ(Answer("pages\r"), "[\"First\",\"Second Page\"]");
  EXPECT_EQ(Answer("active"), "\"First\"");
  dialog_->Activate(1);
  EXPECT_EQ(Answer("active"), "\"Second Page\"");
}

TEST_F(PageDrivers, ShowEveryKindOfControl) {
  action_.title = "T";
  action_.secret =
      "s\xC3\xA9"
      "c";
  Open();
  EXPECT_EQ(Answer("state First.txtTitle"),
            "{\"page\":\"First\",\"name\":\"txtTitle\",\"kind\":\"buttonEdit\",\"caption\":\"\","
            "\"hint\":\"What it is called\",\"tab\":0,\"enabled\":true,\"ownEnabled\":true,\"text\":\"T\","
            "\"masked\":false,\"buttons\":[\"\",\"Tell the others\"]}");
  EXPECT_EQ(State("First.lblTitle")["labels"], "txtTitle");
  EXPECT_EQ(State("First.lblTitle")["tab"], -1);
  EXPECT_EQ(State("First.cboKind")["items"].dump(), "[\"Green\",\"Red\"]");
  EXPECT_EQ(State("First.cboKind")["index"], -1);
  EXPECT_EQ(State("First.chkWanted")["caption"], "Wanted ");
  EXPECT_EQ(State("First.chkWanted")["checked"], false);
  EXPECT_EQ(State("First.optAll")["parent"], "grpInside");
  EXPECT_EQ(State("First.optAll")["enabled"], false);
  EXPECT_EQ(State("First.optAll")["ownEnabled"], true);
  EXPECT_EQ(State("First.lstParts")["checkedItems"].dump(), "[]");
  EXPECT_EQ(State("First.txtPassword")["text"], "***");
  EXPECT_EQ(State("First.txtPassword")["masked"], true);
  EXPECT_EQ(State("First.spNumber")["max"], 9);
  EXPECT_EQ(State("First.Cells")["cells"].dump(), "[[\"Key\",\"\"],[\"\",\"\"],[\"\",\"\"]]");
  EXPECT_EQ(State("first").size(), 12u);
  EXPECT_EQ(State("Second Page").size(), 1u);
  EXPECT_EQ(State("").size(), 13u);
}

TEST_F(PageDrivers, DoWhatAUserDoes) {
  Open();
  EXPECT_EQ(Answer("text First.txtTitle  A title "), kOk);
  EXPECT_EQ(State("First.txtTitle")["text"], " A title ");
  EXPECT_EQ(Answer("click First.btnClear"), kOk);
  EXPECT_EQ(State("First.txtTitle")["text"], "");
  EXPECT_EQ(Answer("text First.spNumber 12"), kOk);
  EXPECT_EQ(State("First.spNumber")["value"], 9);
  EXPECT_EQ(Answer("click First.chkWanted"), kOk);
  EXPECT_EQ(Answer("click First.optSome"), kOk);
  EXPECT_EQ(State("First.optSome")["checked"], true);
  EXPECT_EQ(Answer("select First.cboKind 1"), kOk);
  EXPECT_EQ(
      Answer("dialogs"),
      "[{\"kind\":\"error\",\"text\":\"Cannot read it all\"},{\"kind\":\"message\",\"text\":\"Now Red\"}]");
  EXPECT_EQ(Answer("dialogs"), "[]");
  EXPECT_EQ(Answer("tick First.lstParts 1 off"), kOk);
  EXPECT_EQ(Answer("cell First.Cells 1 2 two words"), kOk);
  EXPECT_EQ(State("First.Cells")["cells"][2][1], "two words");
  g_life.clear();
  EXPECT_EQ(Answer("text Second Page.txtNote x"), kOk);
  EXPECT_EQ(g_life, "leave First; activate Second; ");
  EXPECT_EQ(Answer("button First.txtTitle 2"), kOk);
  EXPECT_EQ(g_life, "leave First; activate Second; leave Second; activate First; title \"\"; ");
}

TEST_F(PageDrivers, AnswerPickersFromTheQueue) {
  Open();
  Answer("dialogs");
  EXPECT_EQ(Answer("answer file /x/new"), kOk);
  EXPECT_EQ(Answer("answer folder /y z"), kOk);
  EXPECT_EQ(Answer("button First.txtTitle 1"), kOk);
  EXPECT_EQ(State("First.txtTitle")["text"], "/x/new.txt");
  EXPECT_EQ(
      Answer("dialogs"),
      "[{\"kind\":\"file\",\"title\":\"Select\",\"filter\":\"Titles|*.txt\",\"defaultExtension\":\"txt\","
      "\"path\":\"\",\"answer\":\"/x/new\"},"
      "{\"kind\":\"folder\",\"title\":\"Where\",\"path\":\"start\",\"answer\":\"/y z\"},"
      "{\"kind\":\"error\",\"text\":\"There: /y z\"}]");
  EXPECT_EQ(Answer("answer cancel"), kOk);
  EXPECT_EQ(Answer("answer file later"), kOk);
  EXPECT_EQ(Answer("button First.txtTitle 1"), kOk);
  const auto shown = nlohmann::json::parse(Answer("dialogs"));
  ASSERT_EQ(shown.size(), 2u);
  EXPECT_TRUE(shown[0]["answer"].is_null());
  EXPECT_TRUE(shown[1]["answer"].is_null());  // an answer for a file does not answer for a folder
  EXPECT_EQ(Answer("button First.txtTitle 1"), kOk);
  EXPECT_EQ(State("First.txtTitle")["text"], "later.txt");
}

TEST_F(PageDrivers, WriteEveryPageAndSave) {
  Open();
  EXPECT_EQ(Answer("text First.txtTitle new"), kOk);
  EXPECT_EQ(action_.title, "");
  EXPECT_EQ(Answer("write"), kOk);
  EXPECT_EQ(action_.title, "new");
  EXPECT_TRUE(action_.wanted);  // the second page wrote after the first
  EXPECT_EQ(saved_, 1);
}

TEST_F(PageDrivers, AFailedWriteKeepsWhatWasWrittenAndSavesNothing) {
  action_.number = 3;
  Open();
  EXPECT_EQ(Answer("text First.txtTitle wrong"), kOk);
  EXPECT_EQ(Answer("text First.spNumber 5"), kOk);
  EXPECT_EQ(Answer("write"), "{\"error\":\"\\\"wrong\\\" is no title\"}");
  EXPECT_EQ(action_.title, "wrong");
  EXPECT_EQ(action_.number, 3);
  EXPECT_FALSE(action_.wanted);
  EXPECT_EQ(saved_, 0);
}

TEST_F(PageDrivers, RefuseWhatIsDisabled) {
  Open();
  const char* const disabled = "{\"error\":\"disabled\"}";
  const std::string active = Answer("active");
  EXPECT_EQ(Answer("click First.optAll"), disabled);
  dialog_->Page(0).Root().SetEnabled(false);
  for (const char* line : {"text First.txtTitle x", "button First.txtTitle 1", "select First.cboKind 0",
                           "click First.btnClear", "tick First.lstParts 0 on", "cell First.Cells 0 1 x",
                           "text First.spNumber 1", "click First.chkWanted"})
    EXPECT_EQ(Answer(line), disabled) << line;
  EXPECT_EQ(Answer("active"), active);
}

TEST_F(PageDrivers, SayWhatIsWrongAndNameTheNearest) {
  Open();
  struct Row {
    const char* line;
    const char* error;
  };
  for (const Row& row : std::initializer_list<Row>{
           {"clik First.btnClear", "There is no command \"clik\" (nearest: click)"},
           {"pages now", "The command does not take \"now\""},
           {"state Frist", "There is no page \"Frist\"; supported: First, Second Page (nearest: First)"},
           {"click Frist.btnClear",
            "There is no page \"Frist\"; supported: First, Second Page (nearest: First)"},
           {"click First", "\"First\" is not of the form PAGE.CONTROL"},
           {"click", "\"\" is not of the form PAGE.CONTROL"},
           {"click First.btnClaer",
            "There is no control \"btnClaer\" on the page \"First\" (nearest: btnClear)"},
           {"click Second Page.txtNot",
            "There is no control \"txtNot\" on the page \"Second Page\"; supported: txtNote (nearest: "
            "txtNote)"},
           {"click First.lblTitle", "\"click\" does nothing to lblTitle, whose kind is label"},
           {"click First.btnClear twice", "The command does not take \"twice\""},
           {"tick First.txtTitle 0 on", "\"tick\" does nothing to txtTitle, whose kind is buttonEdit"},
           {"button First.txtTitle 3", "There is no button 3 (nearest: 2)"},
           {"button First.txtTitle -2147483648", "There is no button -2147483648 (nearest: 1)"},
           {"button First.txtTitle", "\"\" is no button, which is a whole number"},
           {"select First.cboKind 2", "There is no item 2 (nearest: 1)"},
           {"select First.cboKind Red", "\"Red\" is no index, which is a whole number"},
           {"text First.cboKind Rde", "cboKind has no item \"Rde\"; supported: Green, Red (nearest: Red)"},
           {"text First.spNumber four", "\"four\" is no whole number"},
           {"tick First.lstParts 5 on", "There is no item 5 (nearest: 1)"},
           {"tick First.lstParts 0", "A tick is on or off, not \"\""},
           {"tick First.lstParts 0 on", "No tick for 0"},
           {"tick First.lstParts 1 on", "Not ours"},
           {"cell First.Cells 0 0 x", "There is no row 0 (nearest: 1)"},
           {"cell First.Cells 2 1 x", "There is no column 2 (nearest: 1)"},
           {"answer cancle",
            "There is no answer \"cancle\"; supported: file, folder, cancel (nearest: cancel)"},
           {"answer file", "answer file needs a path"}}) {
    const auto answer = nlohmann::json::parse(Answer(row.line));
    EXPECT_EQ(answer.value("error", ""), row.error) << row.line;
    EXPECT_FALSE(driver_->Ended());
  }
  EXPECT_EQ(Answer(""), "");
  EXPECT_EQ(Answer("  \r"), "");
  EXPECT_EQ(Answer("quit"), kOk);
  EXPECT_TRUE(driver_->Ended());
}

}  // namespace
}  // namespace qx
