// The actions of the build project in their order: picture, name, description and how the last run went.
#pragma once

#include <wx/dataview.h>
#include <wx/panel.h>

#include <functional>
#include <string>
#include <vector>

#include "host/actions/Catalogue.h"
#include "host/desktop/core/BuildThread.h"
#include "host/desktop/core/Document.h"

namespace qx::desktop {

class ActionsPanel final : public wxPanel {
 public:
  // All outlive it. `folders` are those that packages were loaded from (PackagePicture).
  ActionsPanel(wxWindow* parent, const Document& document, const BuildThread& build,
               const Catalogue& catalogue, std::vector<std::string> folders);

  // Shows what the document holds now, with that action selected; -1: none.
  void Refill(int selected);
  // Shows the states of the run.
  void RefreshStates();
  // Index of the selected action; -1: none.
  int Selected() const;
  // Shows the menu that OnMenu is to show: at the mouse, or at the selected action when a key asked for it.
  void PopUp(wxMenu& menu);

  std::function<void()> OnSelect;
  std::function<void()> OnOpen;                                          // double-click, Enter
  std::function<void(const std::string& displayName, int index)> OnAdd;  // dropped from the catalogue
  std::function<void(int from, int to)> OnMove;                          // dropped from the list itself
  std::function<void()> OnDelete;                                        // the key Delete
  std::function<void()> OnMenu;                                          // the right button, the menu key

 private:
  void BindDragging();
  int DropIndex() const;
  bool Drop(const wxString& text, int index);
  int RowOf(const wxDataViewItem& item) const;

  const Document& document_;
  const BuildThread& build_;
  const Catalogue& catalogue_;
  std::vector<std::string> folders_;
  wxDataViewListCtrl* list_;
  std::vector<ActionState> shown_;
  bool isMenuByKey_ = false;
};

}  // namespace qx::desktop
