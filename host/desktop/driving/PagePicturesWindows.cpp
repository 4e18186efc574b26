// Copied from the screen, where nothing may stand before the window.
#include <wx/bitmap.h>
#include <wx/dcmemory.h>
#include <wx/dcscreen.h>

#include "host/desktop/driving/PagePictures.h"
#include "host/desktop/views/WxText.h"

namespace qx::desktop {

void SavePicture(wxWindow& window, const std::string& stem) {
  const wxRect area = window.GetScreenRect();
  wxBitmap picture(area.GetSize());
  wxScreenDC screen;
  wxMemoryDC memory(picture);
  memory.Blit(wxPoint(0, 0), area.GetSize(), &screen, area.GetTopLeft());
  memory.SelectObject(wxNullBitmap);
  const std::string file = stem + ".bmp";
  if (!picture.SaveFile(ToWx(file), wxBITMAP_TYPE_BMP)) throw Exception("Cannot write " + file);
}

}  // namespace qx::desktop
