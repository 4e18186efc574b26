// Drives a dialog of property pages without a screen: takes one command a line, does what a user would, and
// answers with one line of JSON. Dialogs that the pages show are answered from a queue and kept for the asking.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "host/pages/Pages.h"
#include "host/system/UserInterface.h"

namespace qx {

// The user interface of a dialog that nobody sees. It is made before the dialog, whose pages may show an
// error as they are filled, and is this process's interface while it lives.
class DrivenUser final : public UserInterface {
 public:
  DrivenUser();
  ~DrivenUser() override;

  std::optional<std::string> PickFile(const FileQuestion& question) override;
  std::optional<std::string> PickFolder(const std::string& title, const std::string& current) override;
  void ShowMessage(const std::string& text) override;
  void ShowError(const std::string& text) override;

  // Queues what the next picker is answered: the path for one of that kind, no path for a cancelled one. A
  // picker of the other kind, and one without an answer, is cancelled and leaves the queue as it is.
  enum class Picker { File, Folder, Any };
  void Queue(Picker picker, std::optional<std::string> path);
  // Every dialog shown since the last call, oldest first.
  nlohmann::ordered_json TakeShown();

 private:
  struct Answer {
    Picker picker;
    std::optional<std::string> path;
  };
  std::optional<std::string> Pick(Picker picker, nlohmann::ordered_json shown);

  std::deque<Answer> answers_;
  nlohmann::ordered_json shown_ = nlohmann::ordered_json::array();
};

// The hands and eyes of who drives: what a user does to a control, and what is seen of it. Pages count from 0
// and the control is the page's; a driver asks for nothing else.
class PageHands {
 public:
  virtual ~PageHands() = default;

  virtual int PageInFront() const = 0;
  virtual void GoTo(int page) = 0;
  virtual bool IsEnabled(int page, TControl& control) const = 0;  // as the user meets it
  virtual nlohmann::ordered_json StateOf(int page, const TControl& control) const = 0;

  // As those of TControl. An exception is what a page's handler raised.
  virtual TUserAnswer Click(int page, TControl& control) = 0;
  virtual TUserAnswer Type(int page, TControl& control, const std::string& text) = 0;
  virtual TUserAnswer Select(int page, TControl& control, int index) = 0;
  virtual TUserAnswer Tick(int page, TControl& control, int index, bool checked) = 0;
  virtual TUserAnswer EditCell(int page, TControl& control, int column, int row, const std::string& text) = 0;
  virtual TUserAnswer PressButton(int page, TControl& control, int index) = 0;

  // Confirms: every page writes, and what they wrote is saved. Raises what the pages or the saving raise.
  virtual void Write() = 0;
};

// Commands, one a line, from standard input or a file.
class DriverCommands {
 public:
  // Raises Exception when the file cannot be read.
  explicit DriverCommands(const std::optional<std::string>& file);
  bool Next(std::string& line);

 private:
  bool isFirst_ = true;
  std::optional<std::istringstream> file_;
};

class PageDriver {
 public:
  // Drives the models themselves. `save` is called when every page has written; what it raises is the answer
  // of `write`.
  PageDriver(PageDialog& dialog, DrivenUser& user, std::function<void()> save);
  // Drives through somebody else's hands, which outlive it.
  PageDriver(PageDialog& dialog, DrivenUser& user, PageHands& hands);

  // The answer to one line: what was asked for, {"ok":true}, or {"error":"..."}; empty for a line that is
  // blank. A wrong command changes nothing; an exception that a page lets out is the answer.
  std::string Answer(std::string_view line);
  // Whether the user has asked to quit.
  bool Ended() const { return ended_; }

 private:
  using Json = nlohmann::ordered_json;
  struct Verb {
    std::string_view word;
    Json (PageDriver::*run)(std::string_view rest);
  };
  static const Verb kVerbs[];
  struct Target {
    int page;
    TControl* control;
    std::string_view rest;  // what stands behind the control's name
  };

  Json Run(std::string_view line);
  Json Pages(std::string_view rest);
  Json Active(std::string_view rest);
  Json State(std::string_view rest);
  Json Text(std::string_view rest);
  Json Click(std::string_view rest);
  Json Button(std::string_view rest);
  Json Select(std::string_view rest);
  Json Tick(std::string_view rest);
  Json Cell(std::string_view rest);
  Json QueueAnswer(std::string_view rest);
  Json Dialogs(std::string_view rest);
  Json Write(std::string_view rest);
  Json Quit(std::string_view rest);

  int FindPage(std::string_view name) const;
  Target FindTarget(std::string_view text) const;
  // The user is on the target's page from now on.
  void GoTo(const Target& target);
  Json PageState(int page) const;

  PageDialog& dialog_;
  DrivenUser& user_;
  std::unique_ptr<PageHands> ownHands_;
  PageHands& hands_;
  bool ended_ = false;
};

}  // namespace qx
