// The properties of the selected action in a grid: the visible ones, in the groups and under the captions
// that the action gives them.
#pragma once

#include <wx/panel.h>
#include <wx/propgrid/propgrid.h>

#include <functional>
#include <map>

#include "host/desktop/PropertyView.h"

namespace qx::desktop {

class PropertiesPanel final : public wxPanel {
 public:
  explicit PropertiesPanel(wxWindow* parent);

  // Shows an action; null: nothing. The action outlives it, or Show is called before it goes.
  void Show(TQXAction* action, const Catalogue& catalogue);
  // Gives the captions the room they need, no more.
  void FitCaptions() { grid_->SetSplitterLeft(true); }
  // Takes over what stands in an editor that is still open.
  void Commit() { grid_->CommitChangesFromEditor(); }

  // The user has set a property; raises what cannot be set.
  std::function<void(const PublishedProperty& property, const PropertyValue& value)> OnEdit;
  // The user has pressed the button of a property that opens pages.
  std::function<void(const PublishedProperty& property)> OnOpenPages;
  // After an edit, and after a refused one: whoever shows the action shows it anew.
  std::function<void()> OnEdited;

 private:
  void Edit(wxPropertyGridEvent& event);
  void Press();

  wxPropertyGrid* grid_;
  std::map<const wxPGProperty*, const PublishedProperty*> shown_;
};

}  // namespace qx::desktop
