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

}  // namespace qx::desktop
