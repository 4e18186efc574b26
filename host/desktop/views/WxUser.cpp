#include "host/desktop/views/WxUser.h"

#include <wx/app.h>
#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>
#include <wx/toplevel.h>

#include "host/desktop/views/WxText.h"
#include "platform/files/Paths.h"

namespace qx::desktop {
namespace {

// The window in front: new dialogs stand over it and give the keys back to it.
wxWindow* WindowInFront() {
  if (wxWindow* focused = wxWindow::FindFocus()) return wxGetTopLevelParent(focused);
  for (auto node = wxTopLevelWindows.GetLast(); node != nullptr; node = node->GetPrevious())
    if (node->GetData()->IsShown()) return node->GetData();
  return nullptr;
}

// Dialogs start in a folder that exists, at a name that may not.
std::string FolderOf(const std::string& path) {
  const std::string folder = FolderPart(ExpandPath("", path));
  return path.empty() ? "" : FindExisting(folder);
}

void Show(const std::string& text, long icon) {
  wxMessageDialog(WindowInFront(), ToWx(text), wxTheApp->GetAppDisplayName(), wxOK | icon).ShowModal();
}

}  // namespace

std::string WithDefaultExtension(const std::string& path, const std::string& extension) {
  if (extension.empty() || !ExtensionOf(path).empty()) return path;
  return path + (extension.starts_with('.') ? "" : ".") + extension;
}

std::optional<std::string> WxUser::PickFile(const FileQuestion& question) {
  const wxString filter =
      question.filter.empty() ? wxString(wxFileSelectorDefaultWildcardStr) : ToWx(question.filter);
  wxFileDialog dialog(WindowInFront(), ToWx(question.title), ToWx(FolderOf(question.current)),
                      ToWx(FilePart(question.current)), filter, wxFD_OPEN);
  if (dialog.ShowModal() != wxID_OK) return std::nullopt;
  return WithDefaultExtension(FromWx(dialog.GetPath()), question.defaultExtension);
}

std::optional<std::string> WxUser::PickFolder(const std::string& title, const std::string& current) {
  wxDirDialog dialog(WindowInFront(), ToWx(title), ToWx(FindExisting(current)));
  if (dialog.ShowModal() != wxID_OK) return std::nullopt;
  return FromWx(dialog.GetPath());
}

void WxUser::ShowMessage(const std::string& text) { Show(text, wxICON_INFORMATION); }
void WxUser::ShowError(const std::string& text) { Show(text, wxICON_ERROR); }

}  // namespace qx::desktop
