// drive.
#include <iostream>
#include <sstream>
#include <utility>

#include "host/cli/Commands.h"
#include "host/cli/Session.h"
#include "host/runtime/HostProgram.h"
#include "host/runtime/PageDriver.h"
#include "host/runtime/PropertyText.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/TextFile.h"

namespace qx::cli {
namespace {

// Where the commands come from: standard input, or the file that --input names.
class CommandLines {
 public:
  explicit CommandLines(const Invocation& invocation) {
    if (const auto file = invocation.Value("--input")) file_.emplace(ReadFile(ExpandPath("", *file)));
  }
  bool Next(std::string& line) {
    std::istream& stream = file_ ? static_cast<std::istream&>(*file_) : std::cin;
    if (!std::getline(stream, line)) return false;
    if (std::exchange(isFirst_, false))
      line = WithoutUtf8Mark(line);  // some shells begin their pipes with it
    return true;
  }

 private:
  bool isFirst_ = true;
  std::optional<std::istringstream> file_;
};

// One command a line until the user quits or there is no more.
void Drive(Session& session, CommandLines& commands, PageDriver& driver) {
  KeepFreedMemory();
  std::string line;
  while (!driver.Ended() && commands.Next(line)) {
    const std::string answer = driver.Answer(line);
    if (!answer.empty()) session.Print(answer + "\n");
    if (!session.WriteError().empty()) return;  // nobody reads the answers
  }
}

int DriveOptions(Session& session, CommandLines& commands, Catalogue& catalogue) {
  DrivenUser user;
  const std::unique_ptr<PageDialog> dialog = PageDialog::ForOptions(catalogue);
  PageDriver driver(*dialog, user, [&catalogue] { catalogue.SaveOptions(); });
  Drive(session, commands, driver);
  return 0;
}

// At the page that the property's editor names, as its button in the property grid does.
void OpenAt(PageDialog& dialog, const TQXAction& action, const std::string& propertyName) {
  const TQXActionClass& actionClass = *action.GetActionClass();
  const PublishedProperty& property = NeedProperty(actionClass.properties, propertyName);
  const auto page = EditorPage(TheCatalogue(), actionClass, property.name);
  if (!page)
    throw Exception("The property " + std::string(property.name) + " has no editor that opens pages");
  const int index = page->empty() ? 0 : dialog.Find(*page);
  if (index < 0)
    throw Exception("The editor of " + std::string(property.name) + " opens a page \"" + *page +
                    "\", which is not registered");
  dialog.Activate(index);
}

int DriveAction(Session& session, CommandLines& commands, const std::string& file,
                const Invocation& invocation) {
  OpenProject project = session.Open(file, invocation);
  const int number = ActionNumber(invocation);
  TQXAction& action = Session::ActionOf(project, number);
  SetCurrentFolder(FolderPart(file));  // where a run takes relative paths from
  DrivenUser user;
  const std::unique_ptr<PageDialog> dialog =
      PageDialog::ForAction(TheCatalogue().NeedAction(project.ActionType(number - 1)), action);
  if (const auto property = invocation.Value("--property")) OpenAt(*dialog, action, *property);
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
  CommandLines commands(invocation);
  Catalogue& catalogue = session.Packages(Registration::Design);
  if (options) return DriveOptions(session, commands, catalogue);
  const std::string file = ExpandPath("", invocation.operands[0]);
  if (!FileExists(file)) throw Exception("Cannot read " + file + ": there is no such file");
  return DriveAction(session, commands, file, invocation);
}

}  // namespace qx::cli
