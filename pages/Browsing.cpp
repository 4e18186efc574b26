#include "pages/Browsing.h"

#include <functional>
#include <string>

#include "plugin/Qxutils.h"

namespace qx {
namespace {

template <class Pick>
void AddButton(TButtonEdit& edit, Pick pick) {
  edit.buttons.push_back({TEditButton::Picture::Folder, "Click to Edit Path", [&edit, pick] {
                            std::string path = edit.Text();
                            if (pick(path)) edit.SetText(path);
                          }});
}

}  // namespace

void AddFileButton(TButtonEdit& edit, const char* filter) {
  AddButton(edit, [filter](std::string& path) { return QXBrowseForFile("Select File", filter, path); });
}

void AddFolderButton(TButtonEdit& edit, const char* title) {
  AddButton(edit, [title](std::string& path) { return QXBrowseForDirectory(title, path); });
}

}  // namespace qx
