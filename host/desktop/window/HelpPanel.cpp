#include "host/desktop/window/HelpPanel.h"

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/utils.h>

#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/Caption.h"
#include "host/desktop/views/Pictures.h"
#include "host/desktop/views/WxText.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::desktop {
namespace {

constexpr const char* kBeginning =
    "<h3>How to begin</h3>"
    "<p>Double-click an action in the catalogue, or drag it into the list, and set it up: "
    "press Enter on it for its pages.</p>"
    "<p>F5 runs the build project, Shift+F5 stops it. Ctrl+F5 shows what a run would change, "
    "and changes nothing.</p>"
    "<p>Every edit can be undone with Ctrl+Z.</p>";

wxString ColourText(wxSystemColour colour) {
  return wxSystemSettings::GetColour(colour).GetAsString(wxC2S_HTML_SYNTAX);
}

// The toolkit's renderer knows no style sheets: the rules, and what stands in the head, are left out.
wxString WithoutHead(const wxString& html) {
  const wxString lower = html.Lower();
  const int body = lower.Find("<body");
  if (body == wxNOT_FOUND) return html;
  const wxString rest = html.Mid(static_cast<std::size_t>(body));
  const wxString inside = rest.AfterFirst('>');
  const int end = inside.Lower().Find("</body");
  return end == wxNOT_FOUND ? inside : inside.Left(static_cast<std::size_t>(end));
}

// Tables of a page take their borders from its style sheet, too.
wxString WithTableBorders(wxString html) {
  html.Replace("<table>", "<table border=\"1\" cellspacing=\"0\" cellpadding=\"4\" width=\"100%\">");
  return html;
}

}  // namespace

HelpPanel::HelpPanel(wxWindow* parent, std::vector<std::string> folders)
    : wxPanel(parent), folders_(std::move(folders)), shown_(1, '\0') {
  page_ = new wxHtmlWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxHW_SCROLLBAR_AUTO);
  page_->SetName("quickHelp");
  SetAccessibleName(*page_, "Quick help of the selected action");
  page_->SetBorders(FromDIP(8));
  const wxFont font = wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT);
  // By the sizes of HTML, 1 to 7: headings a little larger than the text, as fits a narrow part.
  const int size = font.GetPointSize();
  const int sizes[] = {size - 2, size - 1, size, size + 1, size + 2, size + 4, size + 6};
  page_->SetFonts(font.GetFaceName(), wxString(), sizes);
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(MakeCaption(this, "Quick help"), wxSizerFlags().Expand());
  column->Add(page_, wxSizerFlags(1).Expand());
  SetSizer(column);
  page_->Bind(wxEVT_HTML_LINK_CLICKED, [this](wxHtmlLinkEvent& event) {
    const wxString target = event.GetLinkInfo().GetHref();
    if (target.StartsWith("#")) return event.Skip();  // within the page
    if (target.StartsWith("http://") || target.StartsWith("https://")) {
      wxLaunchDefaultBrowser(target);
      return;
    }
    ShowPage(FolderPart(shown_) + FromWx(target.BeforeFirst('#')));
  });
  ShowPage("");
}

void HelpPanel::ShowPage(const std::string& name) {
  if (name == shown_) return;
  shown_ = name;
  if (name.empty()) return Render(kBeginning);
  for (const std::string& folder : folders_) {
    std::string html;
    const std::string file = FindExisting(ExpandPath(WithTrailingDelimiter(folder), name));
    if (TryReadFile(file, html)) return Render(WithTableBorders(WithoutHead(ToWx(html))));
  }
  Render("<p>The help of this action, " + ToWx(name) + ", is not installed.</p>");
}

void HelpPanel::Render(const wxString& html) {
  page_->SetPage("<html><body bgcolor=\"" + ColourText(wxSYS_COLOUR_WINDOW) + "\" text=\"" +
                 ColourText(wxSYS_COLOUR_WINDOWTEXT) + "\" link=\"" + (IsDark() ? "#6ba8e8" : "#1a5fb4") +
                 "\">" + html + "</body></html>");
}

void ShowHelpDialog(wxWindow* parent, const std::vector<std::string>& folders, const std::string& name) {
  wxDialog dialog(parent, wxID_ANY, "Help", wxDefaultPosition, wxDefaultSize,
                  wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER);
  dialog.SetName("help");
  auto* help = new HelpPanel(&dialog, folders);
  help->ShowPage(name);
  auto* close = new wxButton(&dialog, wxID_CLOSE);
  close->SetDefault();
  dialog.SetEscapeId(wxID_CLOSE);
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(help, wxSizerFlags(1).Expand());
  column->Add(close, wxSizerFlags().Right().Border(wxALL, dialog.GetCharHeight() / 2));
  dialog.SetSizer(column);
  dialog.SetClientSize(70 * dialog.GetCharWidth(), 26 * dialog.GetCharHeight());
  dialog.CentreOnParent();
  help->SetFocus();  // keys scroll it
  dialog.ShowModal();
}

}  // namespace qx::desktop
