// The properties of the selected action in a grid: the visible ones, in the groups and under the captions
// that the action gives them.
#pragma once

#include <wx/panel.h>
#include <wx/propgrid/propgrid.h>

#include <functional>
#include <map>

#include "host/desktop/core/PropertyView.h"

namespace qx::desktop {

class PropertiesPanel final : public wxPanel {
 public:
  explicit PropertiesPanel(wxWindow* parent);

  // Shows the action of an index; null: nothing. What stands in an open editor is dropped: Commit comes
  // first. The action may go afterwards.
  void ShowAction(int index, TQXAction* action, const Catalogue& catalogue);
  // Gives the captions the room they need, no more.
  void FitCaptions() { grid_->SetSplitterLeft(true); }
  // Takes over what stands in an editor that is still open; false when it cannot be taken. The user has been
  // told then.
  bool Commit() { return grid_->CommitChangesFromEditor(); }

  // The user has set a property of the action that is shown; raises what cannot be set.
  std::function<void(int index, const PublishedProperty& property, const PropertyValue& value)> OnEdit;
  // The user has pressed the button of a property that opens pages.
  std::function<void(const PublishedProperty& property)> OnOpenPages;
  // After an edit: whoever shows the action shows it anew, for other properties may have changed with it.
  std::function<void()> OnEdited;
  // The user leaves the grid with the key Tab.
  std::function<void(bool forwards)> OnLeave;

 private:
  void Edit(wxPropertyGridEvent& event);
  void OnKey(wxKeyEvent& event);
  void Press();

  wxPropertyGrid* grid_;
  int index_ = -1;
  std::map<const wxPGProperty*, ShownProperty> shown_;
};

}  // namespace qx::desktop
