// The command `drive`.
#include "host/HostArguments.h"
#include "host/cli/Commands.h"
#include "host/cli/Session.h"
#include "host/pages/PageDriver.h"
#include "host/system/HostProgram.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::cli {
namespace {

// One command a line until the user quits or there is no more.
void Drive(Session& session, DriverCommands& commands, PageDriver& driver) {
  KeepFreedMemory();
  std::string line;
  while (!driver.Ended() && commands.Next(line)) {
    const std::string answer = driver.Answer(line);
    if (!answer.empty()) session.Print(answer + "\n");
    if (!session.WriteError().empty()) return;  // nobody reads the answers
  }
}

int DriveOptions(Session& session, DriverCommands& commands, Catalogue& catalogue) {
  DrivenUser user;
  const std::unique_ptr<PageDialog> dialog = PageDialog::ForOptions(catalogue);
  PageDriver driver(*dialog, user, [&catalogue] { catalogue.SaveOptions(); });
  Drive(session, commands, driver);
  return 0;
}

int DriveAction(Session& session, DriverCommands& commands, const std::string& file,
                const Invocation& invocation) {
  OpenProject project = session.Open(file, invocation);
  const int number = ActionNumber(invocation);
  TQXAction& action = Session::ActionOf(project, number);
  SetCurrentFolder(FolderPart(file));  // where a run takes relative paths from
  DrivenUser user;
  const std::unique_ptr<PageDialog> dialog =
      PageDialog::ForAction(session.Catalogue().NeedAction(project.ActionType(number - 1)), action);
  if (const auto property = invocation.Value("--property"))
    dialog->Activate(PageOfProperty(session.Catalogue(), *dialog, action, *property));
  PageDriver driver(*dialog, user, [&] {
    const FileLock lock(file);
    for (const std::string& warning : project.Save()) Session::Warn(warning);
  });
  Drive(session, commands, driver);
  return 0;
}

}  // namespace

int DrivePages(Session& session, const Invocation& invocation) {
  const bool options = invocation.Has("--options-page");
  if (options == !invocation.operands.empty())
    throw Exception(options ? "qxhost drive takes a FILE or --options-page, not both"
                            : "qxhost drive needs FILE or --options-page; see qxhost help drive");
  if (options && (invocation.Has("--action") || invocation.Has("--property")))
    throw Exception("--action and --property belong to a FILE; the options page has neither");
  DriverCommands commands(invocation.Value("--input"));
  Catalogue& catalogue = session.Packages(Registration::Design);
  if (options) return DriveOptions(session, commands, catalogue);
  const std::string file = ExpandPath("", invocation.operands[0]);
  if (!FileExists(file)) throw Exception("Cannot read " + file + ": there is no such file");
  return DriveAction(session, commands, file, invocation);
}

}  // namespace qx::cli
