#include "host/desktop/driving/Probe.h"

#include <wx/anybutton.h>
#include <wx/app.h>
#include <wx/combobox.h>
#include <wx/control.h>
#include <wx/dataview.h>
#include <wx/listbox.h>
#include <wx/listctrl.h>
#include <wx/propgrid/propgrid.h>
#include <wx/statusbr.h>
#include <wx/toplevel.h>
#include <wx/utils.h>

#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>

#include "host/desktop/driving/CutTexts.h"
#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/WxText.h"

namespace qx::desktop {
namespace {

using Json = nlohmann::ordered_json;

// The one in front last.
std::vector<wxWindow*> ShownWindows() {
  std::vector<wxWindow*> shown;
  for (wxWindow* window : wxTopLevelWindows)
    if (window->IsShownOnScreen()) shown.push_back(window);
  return shown;
}

bool IsMeant(const wxWindow& window, const wxString& name) {
  return name.StartsWith("=") ? wxControl::RemoveMnemonics(window.GetLabel()) == name.Mid(1)
                              : window.GetName() == name;
}

wxWindow* FindShown(wxWindow& parent, const wxString& name) {
  if (IsMeant(parent, name) && parent.IsShownOnScreen()) return &parent;
  for (wxWindow* child : parent.GetChildren()) {
    if (child->IsTopLevel()) continue;
    if (wxWindow* found = FindShown(*child, name)) return found;
  }
  return nullptr;
}

// Counts down to the button that is meant.
wxWindow* FindButton(wxWindow& parent, long& number) {
  if (dynamic_cast<wxAnyButton*>(&parent) != nullptr && --number == 0) return &parent;
  for (wxWindow* child : parent.GetChildren())
    if (wxWindow* found = FindButton(*child, number)) return found;
  return nullptr;
}

wxWindow* FindShown(const std::string& question) {
  const wxString name = ToWx(question);
  long button = 0;
  const bool isButton = name.AfterLast('#').ToLong(&button) && name.Contains("#");
  const std::vector<wxWindow*> windows = ShownWindows();
  for (auto at = windows.rbegin(); at != windows.rend(); ++at) {
    wxWindow* found = FindShown(**at, isButton ? name.BeforeLast('#') : name);
    if (found != nullptr) return isButton ? FindButton(*found, button) : found;
  }
  return nullptr;
}

Json Rectangle(const wxRect& place) {
  return {{"x", place.x}, {"y", place.y}, {"width", place.width}, {"height", place.height}};
}

bool Holds(const wxWindow& window, const wxWindow* inside) {
  for (; inside != nullptr; inside = inside->GetParent())
    if (inside == &window) return true;
  return false;
}

// What has the keyboard inside a widget that is made of several.
const wxWindow* InnerFocus() {
  const wxWindow* focus = wxWindow::FindFocus();
  if (focus == nullptr) return nullptr;
  for (const wxWindow* child : focus->GetChildren())
    if (child->HasFocus()) return child;
  return focus;
}

Json Where(const wxWindow& window) {
  Json answer = Rectangle(window.GetScreenRect());
  answer["enabled"] = window.IsThisEnabled() && window.IsEnabled();
  answer["focus"] = Holds(window, wxWindow::FindFocus());
  return answer;
}

Json Row(const wxWindow& list, const wxString& text, const wxRect& place) {
  Json row{{"text", FromWx(text)}};
  row.update(Rectangle(wxRect(list.ClientToScreen(place.GetPosition()), place.GetSize())));
  return row;
}

void AddRows(wxDataViewCtrl& view, const wxDataViewItem& parent, Json& rows) {
  wxDataViewItemArray children;
  view.GetModel()->GetChildren(parent, children);
  for (const wxDataViewItem& item : children) {
    wxString text;
    for (unsigned column = 0; column < view.GetColumnCount(); ++column) {
      wxVariant cell;
      view.GetModel()->GetValue(cell, item, view.GetColumn(column)->GetModelColumn());
      if (column > 0) text += "|";
      if (cell.GetType() == "wxDataViewIconText") {
        wxDataViewIconText value;
        value << cell;
        text += value.GetText();
      } else {
        text += cell.MakeString();
      }
    }
    rows.push_back(Row(view, text, view.GetItemRect(item)));
    if (view.GetModel()->IsContainer(item)) AddRows(view, item, rows);
  }
}

// "Caption=value", where the value stands, and whether its editor is there.
void AddRows(const wxPropertyGrid& grid, Json& rows) {
  for (wxPropertyGridConstIterator at = grid.GetIterator(wxPG_ITERATE_VISIBLE); !at.AtEnd(); ++at) {
    const wxPGProperty* property = *at;
    wxRect place = grid.GetPropertyRect(property, property);
    place.width = place.GetRight() - grid.GetSplitterPosition();
    place.x = grid.GetSplitterPosition();
    Json row = Row(grid, property->GetLabel() + "=" + property->GetValueAsString(), place);
    row["selected"] = grid.GetSelection() == property;
    rows.push_back(std::move(row));
  }
}

Json RowsOf(wxWindow& window) {
  Json rows = Json::array();
  if (auto* view = dynamic_cast<wxDataViewCtrl*>(&window)) {
    AddRows(*view, wxDataViewItem(), rows);
  } else if (const auto* grid = dynamic_cast<wxPropertyGrid*>(&window)) {
    AddRows(*grid, rows);
  } else if (auto* list = dynamic_cast<wxListCtrl*>(&window)) {
    const long end = std::min<long>(list->GetItemCount(), list->GetTopItem() + list->GetCountPerPage() + 1);
    for (long i = std::max<long>(0, list->GetTopItem()); i < end; ++i) {
      wxRect place;
      list->GetItemRect(i, place);
      rows.push_back(Row(window, list->GetItemText(i), place));
    }
  } else if (auto* box = dynamic_cast<wxItemContainerImmutable*>(&window)) {
    for (unsigned i = 0; i < box->GetCount(); ++i) rows.push_back({{"text", FromWx(box->GetString(i))}});
  }
  return rows;
}

// The text inside a widget that is made of several.
wxTextEntry* TextInside(wxWindow& window) {
  if (auto* text = dynamic_cast<wxTextEntry*>(&window)) return text;
  for (wxWindow* child : window.GetChildren())
    if (wxTextEntry* found = TextInside(*child)) return found;
  return nullptr;
}

Json Say(wxWindow& window) {
  if (const wxTextEntry* text = TextInside(window)) return {{"text", FromWx(text->GetValue())}};
  if (auto* box = dynamic_cast<wxItemContainerImmutable*>(&window))
    return {{"text", FromWx(box->GetStringSelection())}};
  if (auto* bar = dynamic_cast<wxStatusBar*>(&window))
    return {{"text", FromWx(bar->GetStatusText(0))}, {"progress", FromWx(bar->GetStatusText(1))}};
  return {{"text", FromWx(window.GetLabel())}};
}

Json Answer(const std::string& question) {
  const std::size_t blank = question.find(' ');
  const std::string verb = question.substr(0, blank);
  const std::string name = blank == std::string::npos ? std::string() : question.substr(blank + 1);
  if (verb == "ping") return true;
  if (verb == "pid") return wxGetProcessId();
  if (verb == "focus") {
    const wxWindow* focus = wxWindow::FindFocus();
    return focus == nullptr ? Json() : Json(FromWx(focus->GetName()));
  }
  if (verb == "called") {
    const wxWindow* focus = InnerFocus();
    return focus == nullptr ? Json() : Json(FromWx(AccessibleName(*focus)));
  }
  if (verb == "windows") {
    Json windows = Json::array();
    for (const wxWindow* window : ShownWindows())
      windows.push_back({{"name", FromWx(window->GetName())}, {"title", FromWx(window->GetLabel())}});
    return windows;
  }
  wxWindow* window = FindShown(name);
  if (window == nullptr) return nullptr;
  if (verb == "where") return Where(*window);
  if (verb == "rows") return RowsOf(*window);
  if (verb == "say") return Say(*window);
  if (verb == "cut") return FindCut(*window);
  return {{"error", "no such question: " + verb}};
}

void ReadQuestions() {
  for (std::string line; std::getline(std::cin, line);) {
    if (line.ends_with('\r')) line.pop_back();
    wxTheApp->CallAfter([line] {
      std::fputs((Answer(line).dump(-1, ' ', false, Json::error_handler_t::replace) + "\n").c_str(), stdout);
      std::fflush(stdout);
    });
  }
}

}  // namespace

// The thread waits for input until the process ends; it must not hold the C library's lock on it then, for
// which the end would wait.
void StartProbe() {
  std::ios::sync_with_stdio(false);
  std::thread(ReadQuestions).detach();
}

}  // namespace qx::desktop
