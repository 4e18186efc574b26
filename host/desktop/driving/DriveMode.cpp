#include "host/desktop/driving/DriveMode.h"

#include <wx/evtloop.h>

#include <cstdio>
#include <functional>
#include <memory>

#include "host/desktop/driving/PagePictures.h"
#include "host/desktop/driving/ViewDriver.h"
#include "host/desktop/views/PagesWindow.h"
#include "host/desktop/views/WxText.h"
#include "host/log/LogStream.h"
#include "host/pages/PageDriver.h"
#include "host/system/HostProgram.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::desktop {
namespace {

int Drive(PageDialog& dialog, DrivenUser& user, const DriveRequest& request,
          const std::function<void()>& save) {
  wxGUIEventLoop loop;
  const wxEventLoopActivator active(&loop);
  PagesDialogTexts texts;
  texts.title = "Pages";
  texts.written = save;
  PagesWindow window(nullptr, dialog, dialog.Active(), texts);
  window.Show();
  WidgetHands hands(window);
  PageDriver driver(dialog, user, hands);
  DriverCommands commands(request.input);
  KeepFreedMemory();
  std::string line;
  while (!driver.Ended() && commands.Next(line)) {
    const std::string answer = driver.Answer(line);
    if (answer.empty()) continue;
    if (!LogFile::StandardOutput().Write(answer + "\n").empty()) return 2;  // nobody reads the answers
  }
  if (request.pictures) SavePictures(window, dialog, *request.pictures);
  return 0;
}

int DriveOptions(Host& host, const DriveRequest& request) {
  Catalogue& catalogue = host.Packages(Registration::Design);
  DrivenUser user;
  const std::unique_ptr<PageDialog> dialog = PageDialog::ForOptions(catalogue);
  return Drive(*dialog, user, request, [&catalogue] { catalogue.SaveOptions(); });
}

int DriveAction(Host& host, const DriveRequest& request) {
  const std::string file = ExpandPath("", request.file);
  if (!FileExists(file)) throw Exception("Cannot read " + file + ": there is no such file");
  Catalogue& catalogue = host.Packages(Registration::Design);
  OpenProject project = host.Open(BuildProject::Load(file));
  const bool exists = request.action >= 1 && request.action <= project.ActionCount();
  TQXAction* action = exists ? project.Action(request.action - 1) : nullptr;
  if (action == nullptr)
    throw Exception(file + " has no action " + std::to_string(request.action) +
                    " that a loaded package knows");
  SetCurrentFolder(FolderPart(file));  // where relative paths begin
  DrivenUser user;
  const std::unique_ptr<PageDialog> dialog =
      PageDialog::ForAction(catalogue.NeedAction(project.ActionType(request.action - 1)), *action);
  if (request.property) dialog->Activate(PageOfProperty(catalogue, *dialog, *action, *request.property));
  return Drive(*dialog, user, request, [&] {
    const FileLock lock(file);
    for (const std::string& warning : project.Save()) std::fprintf(stderr, "warning: %s\n", warning.c_str());
  });
}

}  // namespace

int DriveViews(Host& host, const DriveRequest& request) {
  return request.file.empty() ? DriveOptions(host, request) : DriveAction(host, request);
}

}  // namespace qx::desktop
