#include "host/desktop/Pictures.h"

#include <wx/settings.h>
#include <wx/window.h>

#include "host/desktop/WxText.h"

namespace qx::desktop {
namespace {

// Strokes on a square of 16 units; COLOUR stands for the colour of texts.
constexpr const char* kFrame =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\" viewBox=\"0 0 16 16\">"
    "<g fill=\"none\" stroke=\"COLOUR\" stroke-width=\"1.5\" stroke-linejoin=\"round\" "
    "stroke-linecap=\"round\">"
    "SHAPE</g></svg>";
constexpr const char* kFolder =
    "<path d=\"M1.75 12.75 V3.25 H6 L7.75 5.25 H12.75 V7.5\"/>"
    "<path d=\"M1.75 12.75 L4.25 7.5 H14.75 L12.25 12.75 Z\"/>";
constexpr const char* kRefresh =
    "<path d=\"M13.25 8 A5.25 5.25 0 1 1 11.25 3.9\"/><path d=\"M13 1.5 V4.75 H9.75\"/>";

}  // namespace

wxBitmapBundle PictureOf(TEditButton::Picture picture, const wxWindow& window) {
  const wxColour colour = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT);
  wxString drawing = kFrame;
  drawing.Replace("SHAPE", picture == TEditButton::Picture::Folder ? kFolder : kRefresh);
  drawing.Replace("COLOUR", colour.GetAsString(wxC2S_HTML_SYNTAX));
  const int size = window.GetCharHeight();
  const std::string bytes = FromWx(drawing);
  return wxBitmapBundle::FromSVG(bytes.c_str(), wxSize(size, size));
}

}  // namespace qx::desktop
