// Where the contract's file and folder pickers lead: the desktop, the page driver or a test sets a user
// interface; without one nobody picks anything.
#pragma once

#include <optional>
#include <string>

namespace qx {

class UserInterface {
 public:
  virtual ~UserInterface() = default;
  // The path that was picked; nothing: cancelled. `current` is what the edit holds; `filter` as the toolkit's
  // dialogs take it ("Solutions|*.sln|All files|*.*").
  virtual std::optional<std::string> PickFile(const std::string& title, const std::string& filter,
                                              const std::string& current) = 0;
  virtual std::optional<std::string> PickFolder(const std::string& title, const std::string& current) = 0;
};

// Sets the one of this process, null for none; the caller keeps it, and it outlives its use. User-interface
// thread.
void SetUserInterface(UserInterface* userInterface);

}  // namespace qx
