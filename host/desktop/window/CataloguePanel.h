// What can be added to a build project: the actions of the loaded packages by category.
#pragma once

#include <wx/dataview.h>
#include <wx/panel.h>

#include <functional>
#include <string>
#include <vector>

#include "host/actions/Catalogue.h"

namespace qx::desktop {

class CataloguePanel final : public wxPanel {
 public:
  // `folders` are those that packages were loaded from (PackagePicture).
  CataloguePanel(wxWindow* parent, const Catalogue& catalogue, const std::vector<std::string>& folders);

  // A double-click or Enter on an action: its display name.
  std::function<void(const std::string& displayName)> OnAdd;
  // The display name of the selected action; empty: none.
  std::string Selected() const;

 private:
  std::string NameOf(const wxDataViewItem& item) const;
  void Activate(const wxDataViewItem& item);

  wxDataViewTreeCtrl* tree_;
};

}  // namespace qx::desktop
