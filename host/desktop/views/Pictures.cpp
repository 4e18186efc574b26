#include "host/desktop/views/Pictures.h"

#include <wx/settings.h>

#include <array>
#include <string_view>
#include <utility>

#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::desktop {
namespace {

// Drawn on 16 by 16. "INK" is the theme's text colour, "LABEL" that of texts on buttons, "PAPER" its window
// colour; colours that mean something (go, stop, wrong) are given for light and dark themes as "GREEN", "RED",
// "BLUE" and "AMBER".
struct Drawing {
  Picture picture;
  std::string_view body;
};

constexpr std::array kDrawings{
    Drawing{Picture::New, R"(<path d="M3.5 1.5h6l3 3v10h-9z" fill="none" stroke="INK"/>
<path d="M9.5 1.5v3h3" fill="none" stroke="INK"/>)"},
    Drawing{Picture::Open,
            R"(<path d="M1.5 13.5v-10h4l1.5 2h6.5v2" fill="none" stroke="INK"/>
<path d="M1.5 13.5l2.5-6h11l-2.5 6z" fill="AMBER" stroke="INK"/>)"},
    Drawing{Picture::Save, R"(<path d="M2.5 2.5h9l2 2v9h-11z" fill="BLUE" stroke="INK"/>
<rect x="5" y="2.5" width="6" height="3.5" fill="PAPER" stroke="INK"/>
<rect x="4.5" y="8.5" width="7" height="5" fill="PAPER" stroke="INK"/>)"},
    Drawing{
        Picture::Undo,
        R"(<path d="M5.5 2.5l-3.5 3.5 3.5 3.5M2.5 6h7a3.8 3.8 0 0 1 0 7.6h-4" fill="none" stroke="INK" stroke-width="1.5"/>)"},
    Drawing{
        Picture::Redo,
        R"(<path d="M10.5 2.5l3.5 3.5-3.5 3.5M13.5 6h-7a3.8 3.8 0 0 0 0 7.6h4" fill="none" stroke="INK" stroke-width="1.5"/>)"},
    Drawing{Picture::Delete,
            R"(<path d="M3.5 3.5l9 9M12.5 3.5l-9 9" fill="none" stroke="RED" stroke-width="2"/>)"},
    Drawing{Picture::Duplicate, R"(<rect x="2.5" y="1.5" width="7" height="9" fill="none" stroke="INK"/>
<rect x="6.5" y="5.5" width="7" height="9" fill="PAPER" stroke="INK"/>)"},
    Drawing{Picture::Up,
            R"(<path d="M8 14v-11M3.5 7.5l4.5-5 4.5 5" fill="none" stroke="INK" stroke-width="1.5"/>)"},
    Drawing{Picture::Down,
            R"(<path d="M8 2v11M3.5 8.5l4.5 5 4.5-5" fill="none" stroke="INK" stroke-width="1.5"/>)"},
    Drawing{Picture::Pages, R"(<rect x="1.5" y="3.5" width="13" height="10" fill="none" stroke="INK"/>
<path d="M1.5 6.5h13M6.5 3.5v3M11 3.5v3M4 9.5h8M4 11.5h5" fill="none" stroke="INK"/>)"},
    Drawing{Picture::Validate,
            R"(<path d="M2.5 1.5h8v4M2.5 1.5v13h5M4.5 4.5h4M4.5 7.5h3" fill="none" stroke="INK"/>
<path d="M7 11l2.7 2.8 5-6" fill="none" stroke="GREEN" stroke-width="2"/>)"},
    Drawing{Picture::Run, R"(<path d="M4 2.5l9.5 5.5-9.5 5.5z" fill="GREEN" stroke="GREEN"/>)"},
    Drawing{Picture::Stop, R"(<rect x="3" y="3" width="10" height="10" fill="RED" stroke="RED"/>)"},
    Drawing{
        Picture::Rehearse,
        R"(<path d="M0.8 8c2-3.6 4.5-5.3 7.2-5.3s5.2 1.7 7.2 5.3c-2 3.6-4.5 5.3-7.2 5.3s-5.2-1.7-7.2-5.3z" fill="none" stroke="INK"/>
<path d="M6.2 5.2l4.8 2.8-4.8 2.8z" fill="GREEN" stroke="GREEN"/>)"},
    Drawing{Picture::Options,
            R"(<path d="M2 4.5h12M2 8h12M2 11.5h12" fill="none" stroke="INK"/>
<circle cx="5" cy="4.5" r="1.8" fill="PAPER" stroke="INK"/><circle cx="11" cy="8" r="1.8" fill="PAPER" stroke="INK"/>
<circle cx="7" cy="11.5" r="1.8" fill="PAPER" stroke="INK"/>)"},
    Drawing{Picture::Action,
            R"(<rect x="2.5" y="2.5" width="11" height="11" fill="none" stroke="INK"/>
<path d="M6 5l4.5 3-4.5 3z" fill="BLUE" stroke="BLUE"/>)"},
    Drawing{Picture::Folder, R"(<path d="M1.5 12.5v-9h4.5l1.5 2h7v7z" fill="AMBER" stroke="INK"/>)"},
    Drawing{Picture::Running, R"(<circle cx="8" cy="8" r="5.5" fill="none" stroke="BLUE" stroke-width="1.5"/>
<path d="M8 4.5v3.5l2.5 2" fill="none" stroke="BLUE" stroke-width="1.5"/>)"},
    Drawing{Picture::Succeeded,
            R"(<path d="M3 8.5l3.5 3.8 6.5-8" fill="none" stroke="GREEN" stroke-width="2.2"/>)"},
    Drawing{Picture::Failed, R"(<circle cx="8" cy="8" r="6" fill="RED" stroke="RED"/>
<path d="M5.5 5.5l5 5M10.5 5.5l-5 5" fill="none" stroke="PAPER" stroke-width="1.6"/>)"},
    Drawing{
        Picture::Browse,
        R"(<g fill="none" stroke="LABEL" stroke-width="1.5" stroke-linejoin="round" stroke-linecap="round">
<path d="M1.75 12.75 V3.25 H6 L7.75 5.25 H12.75 V7.5"/>
<path d="M1.75 12.75 L4.25 7.5 H14.75 L12.25 12.75 Z"/></g>)"},
    Drawing{
        Picture::Refresh,
        R"(<g fill="none" stroke="LABEL" stroke-width="1.5" stroke-linejoin="round" stroke-linecap="round">
<path d="M13.25 8 A5.25 5.25 0 1 1 11.25 3.9"/><path d="M13 1.5 V4.75 H9.75"/></g>)"},
};

void ReplaceAll(std::string& text, std::string_view word, std::string_view by) {
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size()))
    text.replace(at, word.size(), by);
}

std::string HexOf(wxSystemColour colour) {
  return wxSystemSettings::GetColour(colour).GetAsString(wxC2S_HTML_SYNTAX).ToStdString();
}

// The words for colours in a drawing, as the theme has them.
std::string Coloured(std::string svg, PictureLook look) {
  const std::string paper = HexOf(wxSYS_COLOUR_WINDOW);
  const std::string grey = HexOf(wxSYS_COLOUR_GRAYTEXT);
  const bool dark = IsDark();
  const std::array<std::pair<std::string_view, std::string>, 6> colours{
      {{"\"INK\"", HexOf(wxSYS_COLOUR_WINDOWTEXT)},
       {"\"LABEL\"", HexOf(wxSYS_COLOUR_BTNTEXT)},
       {"\"GREEN\"", dark ? "#57c26b" : "#1a8a33"},
       {"\"RED\"", dark ? "#f0736a" : "#c62828"},
       {"\"BLUE\"", dark ? "#6ba8e8" : "#2f6fb5"},
       {"\"AMBER\"", dark ? "#c9a24a" : "#f0c869"}}};
  ReplaceAll(svg, "\"PAPER\"", "\"" + paper + "\"");
  for (const auto& [word, colour] : colours)
    ReplaceAll(svg, word, "\"" + (look == PictureLook::Disabled ? grey : colour) + "\"");
  return svg;
}

wxBitmapBundle FromSvg(const std::string& svg, int size) {
  return wxBitmapBundle::FromSVG(svg.c_str(), wxSize(size, size));
}

}  // namespace

bool IsDark() { return wxSystemSettings::GetAppearance().IsUsingDarkBackground(); }

wxBitmapBundle PictureOf(Picture picture, int size, PictureLook look) {
  for (const Drawing& drawing : kDrawings) {
    if (drawing.picture != picture) continue;
    return FromSvg(
        Coloured(R"(<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16" viewBox="0 0 16 16">)" +
                     std::string(drawing.body) + "</svg>",
                 look),
        size);
  }
  return {};
}

wxBitmapBundle PackagePicture(const std::vector<std::string>& folders, const std::string& name, int size) {
  for (const std::string& folder : folders) {
    std::string svg;
    if (name.empty() || !TryReadFile(WithTrailingDelimiter(folder) + "Resources/" + name + ".svg", svg))
      continue;
    const wxBitmapBundle picture = FromSvg(Coloured(std::move(svg), PictureLook::Coloured), size);
    if (picture.IsOk()) return picture;
  }
  return PictureOf(Picture::Action, size);
}

}  // namespace qx::desktop
