#include "host/pages/PageDriver.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <utility>
#include <vector>

#include "host/pages/ControlState.h"
#include "platform/Nearest.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"

namespace qx {
namespace {

using Json = nlohmann::ordered_json;

// What stands before the first blank; the text then goes on behind that one blank.
std::string_view TakeWord(std::string_view& text) {
  const std::string_view word = text.substr(0, text.find(' '));
  text.remove_prefix(std::min(word.size() + 1, text.size()));
  return word;
}

int TakeNumber(std::string_view& text, std::string_view what) {
  const std::string_view word = TakeWord(text);
  const auto number = ToInteger(word);
  if (!number) throw Exception(Quoted(word) + " is no " + std::string(what) + ", which is a whole number");
  return *number;
}

void ExpectEnd(std::string_view rest) {
  if (!Trim(rest).empty()) throw Exception("The command does not take " + Quoted(rest));
}

Json Done() { return Json{{"ok", true}}; }

// How many things there are that an index can mean, and which number the first one has.
struct Range {
  int count = 0;
  int first = 0;
};

std::string NoSuch(std::string_view what, int index, const Range& range) {
  std::string text = "There is no " + std::string(what) + " " + std::to_string(index);
  if (range.count <= 0) return text + "; there are none";
  const int nearest = std::clamp(index, range.first, range.first + range.count - 1);
  return text + " (nearest: " + std::to_string(nearest) + ")";
}

// The answer to what a control said; `fault` is for one that has no such item or does not take the text.
Json Answered(TUserAnswer answer, const TControl& control, std::string_view verb, const std::string& fault) {
  switch (answer) {
    case TUserAnswer::Done:
      return Done();
    case TUserAnswer::Disabled:
      return Json{{"error", "disabled"}};
    case TUserAnswer::NotOffered:
      throw Exception(Quoted(verb) + " does nothing to " + control.name + ", whose kind is " +
                      std::string(control.Kind()));
    default:
      throw Exception(fault);
  }
}

Range ItemsOf(const TControl& control) {
  if (const auto* box = dynamic_cast<const TComboBox*>(&control)) return {box->Count()};
  if (const auto* list = dynamic_cast<const TCheckListBox*>(&control)) return {list->Count()};
  return {};
}

std::string NotTaken(const TControl& control, const std::string& text) {
  if (const auto* box = dynamic_cast<const TComboBox*>(&control))
    return control.name + " has no item " + Quoted(text) + NameAdvice(text, box->Items());
  return Quoted(text) + " is no whole number";
}

// Acts on the models, as any view does in the end.
class ModelHands final : public PageHands {
 public:
  ModelHands(PageDialog& dialog, std::function<void()> save) : dialog_(dialog), save_(std::move(save)) {}

  int PageInFront() const override { return dialog_.Active(); }
  void GoTo(int page) override { dialog_.Activate(page); }
  bool IsEnabled(int, TControl& control) const override { return control.IsEnabled(); }
  Json StateOf(int, const TControl& control) const override { return qx::StateOf(control); }

  TUserAnswer Click(int, TControl& control) override { return control.UserClick(); }
  TUserAnswer Type(int, TControl& control, const std::string& text) override {
    return control.UserType(text);
  }
  TUserAnswer Select(int, TControl& control, int index) override { return control.UserSelect(index); }
  TUserAnswer Tick(int, TControl& control, int index, bool checked) override {
    return control.UserTick(index, checked);
  }
  TUserAnswer EditCell(int, TControl& control, int column, int row, const std::string& text) override {
    return control.UserEditCell(column, row, text);
  }
  TUserAnswer PressButton(int, TControl& control, int index) override {
    return control.UserPressButton(index);
  }
  void Write() override {
    dialog_.Write();
    save_();
  }

 private:
  PageDialog& dialog_;
  std::function<void()> save_;
};

}  // namespace

DriverCommands::DriverCommands(const std::optional<std::string>& file) {
  if (file) file_.emplace(ReadFile(ExpandPath("", *file)));
}

bool DriverCommands::Next(std::string& line) {
  std::istream& stream = file_ ? static_cast<std::istream&>(*file_) : std::cin;
  if (!std::getline(stream, line)) return false;
  if (std::exchange(isFirst_, false)) line = WithoutUtf8Mark(line);  // some shells begin their pipes with it
  return true;
}

DrivenUser::DrivenUser() { SetUserInterface(this); }
DrivenUser::~DrivenUser() { SetUserInterface(nullptr); }

std::optional<std::string> DrivenUser::Pick(Picker picker, Json shown) {
  std::optional<std::string> path;
  if (!answers_.empty() && (answers_.front().picker == picker || answers_.front().picker == Picker::Any)) {
    path = std::move(answers_.front().path);
    answers_.pop_front();
  }
  shown["answer"] = path ? Json(*path) : Json(nullptr);
  shown_.push_back(std::move(shown));
  return path;
}

std::optional<std::string> DrivenUser::PickFile(const FileQuestion& question) {
  return Pick(Picker::File, {{"kind", "file"},
                             {"title", question.title},
                             {"filter", question.filter},
                             {"defaultExtension", question.defaultExtension},
                             {"path", question.current}});
}

std::optional<std::string> DrivenUser::PickFolder(const std::string& title, const std::string& current) {
  return Pick(Picker::Folder, {{"kind", "folder"}, {"title", title}, {"path", current}});
}

void DrivenUser::ShowMessage(const std::string& text) {
  shown_.push_back({{"kind", "message"}, {"text", text}});
}

void DrivenUser::ShowError(const std::string& text) { shown_.push_back({{"kind", "error"}, {"text", text}}); }

void DrivenUser::Queue(Picker picker, std::optional<std::string> path) {
  answers_.push_back({picker, std::move(path)});
}

Json DrivenUser::TakeShown() { return std::exchange(shown_, Json::array()); }

const PageDriver::Verb PageDriver::kVerbs[] = {
    {"pages", &PageDriver::Pages},        {"active", &PageDriver::Active},   {"state", &PageDriver::State},
    {"text", &PageDriver::Text},          {"click", &PageDriver::Click},     {"button", &PageDriver::Button},
    {"select", &PageDriver::Select},      {"tick", &PageDriver::Tick},       {"cell", &PageDriver::Cell},
    {"answer", &PageDriver::QueueAnswer}, {"dialogs", &PageDriver::Dialogs}, {"write", &PageDriver::Write},
    {"quit", &PageDriver::Quit},
};

PageDriver::PageDriver(PageDialog& dialog, DrivenUser& user, std::function<void()> save)
    : dialog_(dialog),
      user_(user),
      ownHands_(std::make_unique<ModelHands>(dialog, std::move(save))),
      hands_(*ownHands_) {}

PageDriver::PageDriver(PageDialog& dialog, DrivenUser& user, PageHands& hands)
    : dialog_(dialog), user_(user), hands_(hands) {}

std::string PageDriver::Answer(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  const std::size_t begin = line.find_first_not_of(' ');
  if (begin == std::string_view::npos) return "";
  Json answer;
  try {
    answer = Run(line.substr(begin));
  } catch (const std::exception& fault) {  // whatever a page lets out: the session goes on
    answer = Json{{"error", fault.what()}};
  }
  return answer.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json PageDriver::Run(std::string_view line) {
  const std::string_view word = TakeWord(line);
  std::vector<std::string> words;
  for (const Verb& verb : kVerbs) {
    if (verb.word == word) return (this->*verb.run)(line);
    words.emplace_back(verb.word);
  }
  throw Exception("There is no command " + Quoted(word) + NameAdvice(word, words));
}

int PageDriver::FindPage(std::string_view name) const {
  if (const int page = dialog_.Find(name); page >= 0) return page;
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(dialog_.Count()));
  for (int page = 0; page < dialog_.Count(); ++page) names.push_back(dialog_.Name(page));
  throw Exception("There is no page " + Quoted(name) + NameAdvice(name, names));
}

// PAGE.CONTROL, where a page's name may hold blanks and dots: the longest name that fits is meant.
PageDriver::Target PageDriver::FindTarget(std::string_view text) const {
  int page = -1;
  std::size_t length = 0;
  for (int i = 0; i < dialog_.Count(); ++i) {
    const std::string& name = dialog_.Name(i);
    const bool fits =
        text.size() > name.size() && text[name.size()] == '.' && SameText(text.substr(0, name.size()), name);
    if (fits && (page < 0 || name.size() > length)) {
      page = i;
      length = name.size();
    }
  }
  if (page < 0) {
    const std::string_view name = text.substr(0, text.find('.'));
    if (name.size() == text.size()) throw Exception(Quoted(Trim(text)) + " is not of the form PAGE.CONTROL");
    FindPage(name);
  }
  text.remove_prefix(length + 1);
  const std::string_view name = TakeWord(text);
  if (TControl* control = dialog_.Page(page).FindControl(name)) return {page, control, text};
  std::vector<std::string> names;
  for (const TControl* control : dialog_.Page(page).Controls()) names.push_back(control->name);
  throw Exception("There is no control " + Quoted(name) + " on the page " + Quoted(dialog_.Name(page)) +
                  NameAdvice(name, names));
}

// What is disabled takes nobody to its page.
void PageDriver::GoTo(const Target& target) {
  if (hands_.IsEnabled(target.page, *target.control)) hands_.GoTo(target.page);
}

Json PageDriver::Pages(std::string_view rest) {
  ExpectEnd(rest);
  Json names = Json::array();
  for (int page = 0; page < dialog_.Count(); ++page) names.push_back(dialog_.Name(page));
  return names;
}

Json PageDriver::Active(std::string_view rest) {
  ExpectEnd(rest);
  return dialog_.Name(hands_.PageInFront());
}

Json PageDriver::PageState(int page) const {
  Json states = Json::array();
  for (const TControl* control : dialog_.Page(page).Controls()) {
    Json state{{"page", dialog_.Name(page)}};
    state.update(hands_.StateOf(page, *control));
    states.push_back(std::move(state));
  }
  return states;
}

Json PageDriver::State(std::string_view rest) {
  const std::string text = Trim(rest);
  if (text.empty()) {
    Json states = Json::array();
    for (int page = 0; page < dialog_.Count(); ++page)
      for (Json& state : PageState(page)) states.push_back(std::move(state));
    return states;
  }
  if (const int page = dialog_.Find(text); page >= 0) return PageState(page);
  if (text.find('.') == std::string::npos) FindPage(text);  // raises with the nearest page
  const Target target = FindTarget(text);
  ExpectEnd(target.rest);
  Json state{{"page", dialog_.Name(target.page)}};
  state.update(hands_.StateOf(target.page, *target.control));
  return state;
}

Json PageDriver::Text(std::string_view rest) {
  const Target target = FindTarget(rest);
  const std::string text(target.rest);
  GoTo(target);
  return Answered(hands_.Type(target.page, *target.control, text), *target.control, "text",
                  NotTaken(*target.control, text));
}

Json PageDriver::Click(std::string_view rest) {
  const Target target = FindTarget(rest);
  ExpectEnd(target.rest);
  GoTo(target);
  return Answered(hands_.Click(target.page, *target.control), *target.control, "click", "");
}

Json PageDriver::Button(std::string_view rest) {
  Target target = FindTarget(rest);
  const int number = TakeNumber(target.rest, "button");
  ExpectEnd(target.rest);
  const auto* edit = dynamic_cast<const TButtonEdit*>(target.control);
  const Range range{edit == nullptr ? 0 : static_cast<int>(edit->buttons.size()), 1};
  const int index = number < 1 ? -1 : number - 1;
  GoTo(target);
  return Answered(hands_.PressButton(target.page, *target.control, index), *target.control, "button",
                  NoSuch("button", number, range));
}

Json PageDriver::Select(std::string_view rest) {
  Target target = FindTarget(rest);
  const int index = TakeNumber(target.rest, "index");
  ExpectEnd(target.rest);
  GoTo(target);
  return Answered(hands_.Select(target.page, *target.control, index), *target.control, "select",
                  NoSuch("item", index, ItemsOf(*target.control)));
}

Json PageDriver::Tick(std::string_view rest) {
  Target target = FindTarget(rest);
  const int index = TakeNumber(target.rest, "index");
  const std::string state = Trim(target.rest);
  if (state != "on" && state != "off") throw Exception("A tick is on or off, not " + Quoted(state));
  GoTo(target);
  return Answered(hands_.Tick(target.page, *target.control, index, state == "on"), *target.control, "tick",
                  NoSuch("item", index, ItemsOf(*target.control)));
}

Json PageDriver::Cell(std::string_view rest) {
  Target target = FindTarget(rest);
  const int column = TakeNumber(target.rest, "column");
  const int row = TakeNumber(target.rest, "row");
  const auto* grid = dynamic_cast<const TStringGrid*>(target.control);
  const Range columns{grid == nullptr ? 0 : grid->ColCount(), 0};
  const Range rows{grid == nullptr ? 0 : grid->RowCount() - 1, 1};
  const bool hasColumn = column >= 0 && column < columns.count;
  GoTo(target);
  return Answered(hands_.EditCell(target.page, *target.control, column, row, std::string(target.rest)),
                  *target.control, "cell",
                  hasColumn ? NoSuch("row", row, rows) : NoSuch("column", column, columns));
}

Json PageDriver::QueueAnswer(std::string_view rest) {
  const std::string_view kind = TakeWord(rest);
  if (kind == "cancel") {
    ExpectEnd(rest);
    user_.Queue(DrivenUser::Picker::Any, std::nullopt);
    return Done();
  }
  if (kind != "file" && kind != "folder")
    throw Exception("There is no answer " + Quoted(kind) + NameAdvice(kind, {"file", "folder", "cancel"}));
  if (rest.empty()) throw Exception("answer " + std::string(kind) + " needs a path");
  user_.Queue(kind == "file" ? DrivenUser::Picker::File : DrivenUser::Picker::Folder, std::string(rest));
  return Done();
}

Json PageDriver::Dialogs(std::string_view rest) {
  ExpectEnd(rest);
  return user_.TakeShown();
}

Json PageDriver::Write(std::string_view rest) {
  ExpectEnd(rest);
  hands_.Write();
  return Done();
}

Json PageDriver::Quit(std::string_view rest) {
  ExpectEnd(rest);
  ended_ = true;
  return Done();
}

}  // namespace qx
