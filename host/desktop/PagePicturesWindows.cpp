// Copied from the screen, where nothing may stand before the window.
#include <wx/bitmap.h>
#include <wx/dcmemory.h>
#include <wx/dcscreen.h>
#include <wx/imagpng.h>

#include "host/desktop/PagePictures.h"
#include "host/desktop/WxText.h"

namespace qx::desktop {

void SavePicture(wxWindow& window, const std::string& file) {
  if (wxImage::FindHandler(wxBITMAP_TYPE_PNG) == nullptr) wxImage::AddHandler(new wxPNGHandler);
  const wxRect area = window.GetScreenRect();
  wxBitmap picture(area.GetSize());
  wxScreenDC screen;
  wxMemoryDC memory(picture);
  memory.Blit(wxPoint(0, 0), area.GetSize(), &screen, area.GetTopLeft());
  memory.SelectObject(wxNullBitmap);
  if (!picture.SaveFile(ToWx(file), wxBITMAP_TYPE_PNG)) throw Exception("Cannot write " + file);
}

}  // namespace qx::desktop
