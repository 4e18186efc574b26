// Where the contract's dialogs lead: the desktop, the page driver or a test sets a user interface; without
// one nothing is shown and nobody picks anything.
#pragma once

#include <optional>
#include <string>

namespace qx {

struct FileQuestion {
  std::string title;
  std::string filter;            // as the toolkit's dialogs take it: "Solutions|*.sln|All files|*.*"
  std::string defaultExtension;  // empty: none
  std::string current;           // what the edit holds
};

class UserInterface {
 public:
  virtual ~UserInterface() = default;
  // The path that was picked; nothing: cancelled.
  virtual std::optional<std::string> PickFile(const FileQuestion& question) = 0;
  virtual std::optional<std::string> PickFolder(const std::string& title, const std::string& current) = 0;
  // Return when the user has pressed OK.
  virtual void ShowMessage(const std::string& text) = 0;
  virtual void ShowError(const std::string& text) = 0;
};

// Sets the one of this process, null for none; the caller keeps it, and it outlives its use. User-interface thread.
void SetUserInterface(UserInterface* userInterface);

}  // namespace qx
