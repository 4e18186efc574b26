// The dialogs that pages and actions ask for, shown over the window that the user is in.
#pragma once

#include "host/system/UserInterface.h"

namespace qx::desktop {

// User-interface thread. Whoever makes it sets it with SetUserInterface.
class WxUser final : public UserInterface {
 public:
  std::optional<std::string> PickFile(const FileQuestion& question) override;
  std::optional<std::string> PickFolder(const std::string& title, const std::string& current) override;
  void ShowMessage(const std::string& text) override;
  void ShowError(const std::string& text) override;
};

// The path as a dialog gives it, with the extension (with or without its point) added to a name without one;
// an empty extension is none.
std::string WithDefaultExtension(const std::string& path, const std::string& extension);

}  // namespace qx::desktop
