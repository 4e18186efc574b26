// Drawn by the toolkit into a surface of its own, whatever stands before the window on the screen.
#include <gtk/gtk.h>

#include "host/desktop/driving/PagePictures.h"

namespace qx::desktop {

void SavePicture(wxWindow& window, const std::string& stem) {
  const std::string file = stem + ".png";
  const wxSize size = window.GetClientSize();
  cairo_surface_t* surface =
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.GetWidth(), size.GetHeight());
  cairo_t* context = cairo_create(surface);
  gtk_widget_draw(window.GetHandle(), context);
  cairo_destroy(context);
  const cairo_status_t status = cairo_surface_write_to_png(surface, file.c_str());
  cairo_surface_destroy(surface);
  if (status != CAIRO_STATUS_SUCCESS)
    throw Exception("Cannot write " + file + ": " + cairo_status_to_string(status));
}

}  // namespace qx::desktop
