// The quick help of the selected action: the page that its package has for it.
#pragma once

#include <wx/html/htmlwin.h>
#include <wx/panel.h>

#include <string>
#include <vector>

namespace qx::desktop {

class HelpPanel final : public wxPanel {
 public:
  // `folders` are those in which packages keep their help.
  HelpPanel(wxWindow* parent, std::vector<std::string> folders);

  // The page of a name such as "Plugins\Tiny.html"; an empty name shows how to begin.
  void ShowPage(const std::string& name);

 private:
  void Render(const wxString& html);

  std::vector<std::string> folders_;
  std::string shown_;
  wxHtmlWindow* page_;
};

// Shows a page of help in a dialog over the parent and returns when it is closed; folders and name as above.
void ShowHelpDialog(wxWindow* parent, const std::vector<std::string>& folders, const std::string& name);

}  // namespace qx::desktop
