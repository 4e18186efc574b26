#include "host/desktop/window/AboutBox.h"

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/hyperlink.h>
#include <wx/listctrl.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/utils.h>

#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/Caption.h"

namespace qx::desktop {
namespace {

struct Part {
  wxString name;
  const char* licence;
  const char* link;
};

// What the desktop contains or is linked with, as packaging/third-party.txt has it.
std::vector<Part> Parts() {
  return {
      {wxGetLibraryVersionInfo().GetVersionString(), "wxWindows Library Licence 3.1",
       "https://www.wxwidgets.org"},
#ifdef __WXGTK__
      {"GTK 3", "GNU LGPL, version 2.1 or later", "https://www.gtk.org"},
      {"OpenSSL 3 (libcrypto)", "Apache License 2.0", "https://www.openssl.org"},
#endif
      {"NanoSVG", "zlib License", "https://github.com/memononen/nanosvg"},
      {"JSON for Modern C++", "MIT License", "https://json.nlohmann.me"},
      {"pugixml", "MIT License", "https://pugixml.org"},
      {"Zstandard", "BSD License (3 clauses)", "https://facebook.github.io/zstd"},
  };
}

}  // namespace

void ShowAboutBox(wxWindow* parent) {
  wxDialog box(parent, wxID_ANY, "About qxhost", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE);
  box.SetName("about");
  const int margin = box.GetCharHeight() * 3 / 4;
  auto* column = new wxBoxSizer(wxVERTICAL);
  auto* title = new wxStaticText(&box, wxID_ANY, "qxhost-desktop " QXHOST_VERSION);
  title->SetName("aboutTitle");
  title->SetFont(title->GetFont().Bold().Larger());
  column->Add(title);
  column->Add(new wxStaticText(&box, wxID_ANY,
                               "Runs build projects with the actions of packages, and edits them.\n"
                               "The command line of the same host is qxhost. MIT License."),
              wxSizerFlags().Border(wxTOP, margin / 2));
  column->Add(MakeCaption(&box, "It stands on"), wxSizerFlags().Border(wxTOP, margin));
  auto* parts = new wxFlexGridSizer(3, margin / 3, margin * 2);
  for (const Part& part : Parts()) {
    parts->Add(new wxStaticText(&box, wxID_ANY, part.name), wxSizerFlags().CenterVertical());
    parts->Add(new wxStaticText(&box, wxID_ANY, part.licence), wxSizerFlags().CenterVertical());
    parts->Add(new wxHyperlinkCtrl(&box, wxID_ANY, wxString(part.link).AfterFirst('/').Mid(1), part.link));
  }
  column->Add(parts, wxSizerFlags().Border(wxLEFT | wxBOTTOM, margin / 2));
  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(column, wxSizerFlags(1).Expand().Border(wxALL, margin));
  all->Add(box.CreateButtonSizer(wxCLOSE), wxSizerFlags().Expand().Border(wxALL, margin));
  box.SetEscapeId(wxID_CLOSE);
  box.SetAffirmativeId(wxID_CLOSE);
  box.SetSizerAndFit(all);
  box.CentreOnParent();
  box.ShowModal();
}

}  // namespace qx::desktop
