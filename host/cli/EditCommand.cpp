// The command `edit`: hands over to the desktop.
#include "host/HostArguments.h"
#include "host/cli/Commands.h"
#include "host/cli/Session.h"
#include "host/system/HostProgram.h"
#include "platform/files/Paths.h"

namespace qx::cli {

// Names are made absolute: the desktop goes to the folder of its project.
int EditProject(Session&, const Invocation& invocation) {
  std::vector<std::string> words;
  for (const std::string_view option : {kPackageOption.name, kOptionsOption.name}) {
    for (const std::string& file : invocation.Values(option)) {
      words.emplace_back(option);
      words.push_back(ExpandPath("", file));
    }
  }
  for (const std::string& file : invocation.operands) words.push_back(ExpandPath("", file));
  HandOver(FindCompanion("qxhost-desktop"), words);
  return 0;
}

}  // namespace qx::cli
