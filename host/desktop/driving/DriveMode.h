// The desktop's mode for tests and scripts: opens the pages window and drives its widgets with the commands
// of `qxhost drive`.
#pragma once

#include <optional>
#include <string>

#include "host/Host.h"

namespace qx::desktop {

struct DriveRequest {
  std::string file;                     // the project; empty: the options' pages
  int action = 1;                       // 1-based
  std::optional<std::string> property;  // whose editor names the page to open at
  std::optional<std::string> input;     // the file of commands; nothing: standard input
  std::optional<std::string> pictures;  // a folder that takes a picture of every page, after the commands
};

// Answers go to standard output, one line a command. Returns the exit code; raises Exception for what cannot
// be opened. The toolkit is initialised, and no event loop runs.
int DriveViews(Host& host, const DriveRequest& request);

}  // namespace qx::desktop
