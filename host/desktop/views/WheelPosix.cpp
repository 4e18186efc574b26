// The toolkit is GTK here: its widgets take the wheel themselves, whatever the events of the toolkit above say.
#include "host/desktop/views/Wheel.h"

#include <gtk/gtk.h>
#include <wx/window.h>

namespace qx::desktop {
namespace {

bool HasFocusInside(GtkWidget* widget) {
  GtkWidget* top = gtk_widget_get_toplevel(widget);
  GtkWidget* focus = GTK_IS_WINDOW(top) ? gtk_window_get_focus(GTK_WINDOW(top)) : nullptr;
  return focus != nullptr && (focus == widget || gtk_widget_is_ancestor(focus, widget) != 0);
}

// Stopped here and not taken, the event goes on to what the widget stands in.
gboolean OnScroll(GtkWidget* widget, GdkEvent*, void*) {
  if (!HasFocusInside(widget)) g_signal_stop_emission_by_name(widget, "scroll-event");
  return FALSE;
}

void Guard(GtkWidget* widget, void*) {
  g_signal_connect(widget, "scroll-event", G_CALLBACK(OnScroll), nullptr);
}

}  // namespace

void LeaveWheelToPage(wxWindow& control) { Guard(control.GetHandle(), nullptr); }

}  // namespace qx::desktop
