// What is dragged from the catalogue, or within the list of actions: in a format of its own, which no text
// takes, and with the number of this process, for another one's window has other actions.
#pragma once

#include <wx/dataobj.h>
#include <wx/utils.h>

#include <string>

#include "host/desktop/views/WxText.h"

namespace qx::desktop {

// How the texts begin: an action's display name follows, or the row of one.
inline constexpr const char* kDraggedNewAction = "new:";
inline constexpr const char* kDraggedAction = "row:";

inline wxDataFormat DraggedFormat() { return wxDataFormat("application/x-qxhost-action"); }

inline wxString DraggedHere() { return wxString::Format("%lu ", wxGetProcessId()); }

// Whoever drags owns it.
inline wxDataObject* MakeDragged(const wxString& text) {
  auto* dragged = new wxCustomDataObject(DraggedFormat());
  const std::string bytes = FromWx(DraggedHere() + text);
  dragged->SetData(bytes.size(), bytes.data());
  return dragged;
}

// Empty when it comes from elsewhere.
inline wxString TextOfDragged(const void* data, std::size_t size) {
  wxString text;
  const bool isFromHere = ToWx({static_cast<const char*>(data), size}).StartsWith(DraggedHere(), &text);
  return isFromHere ? text : wxString();
}

}  // namespace qx::desktop
