// Asks under which name something is to be saved, and saves it.
#pragma once

#include <wx/filedlg.h>
#include <wx/msgdlg.h>

#include <exception>
#include <functional>
#include <string>

#include "host/desktop/views/WxText.h"

namespace qx::desktop {

struct SaveQuestion {
  wxWindow* parent;
  wxString title;
  wxString name;     // the one that is proposed
  wxString filter;   // as the toolkit's dialogs take it
  wxString failure;  // the title of what is shown when `save` raises
};

// Calls `save` with the file, unless the user cancels. User-interface thread.
inline void SaveUnderAName(const SaveQuestion& question,
                           const std::function<void(const std::string& file)>& save) {
  wxFileDialog dialog(question.parent, question.title, "", question.name, question.filter,
                      wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
  if (dialog.ShowModal() != wxID_OK) return;
  try {
    save(FromWx(dialog.GetPath()));
  } catch (const std::exception& fault) {
    wxMessageBox(ToWx(fault.what()), question.failure, wxOK | wxICON_ERROR, question.parent);
  }
}

}  // namespace qx::desktop
