#include "host/desktop/window/CataloguePanel.h"

#include <wx/sizer.h>

#include <map>

#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/Caption.h"
#include "host/desktop/views/Pictures.h"
#include "host/desktop/views/WxText.h"
#include "host/desktop/window/Dragged.h"

namespace qx::desktop {

CataloguePanel::CataloguePanel(wxWindow* parent, const Catalogue& catalogue,
                               const std::vector<std::string>& folders)
    : wxPanel(parent) {
  tree_ = new wxDataViewTreeCtrl(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxDV_NO_HEADER);
  tree_->SetName("catalogue");
  SetAccessibleName(*tree_, "Actions that can be added");
  wxVector<wxBitmapBundle> pictures;
  pictures.push_back(PictureOf(Picture::Folder));
  for (const RegisteredAction& action : catalogue.Actions())
    pictures.push_back(PackagePicture(folders, action.bitmap));
  tree_->SetImages(pictures);
  std::map<std::string, wxDataViewItem> branches;
  int picture = 0;
  for (const RegisteredAction& action : catalogue.Actions()) {
    auto [branch, isNew] = branches.try_emplace(action.category);
    if (isNew) branch->second = tree_->AppendContainer(wxDataViewItem(), ToWx(action.category), 0, 0);
    tree_->AppendItem(branch->second, ToWx(action.displayName), ++picture);
  }
  for (const auto& [category, branch] : branches) tree_->Expand(branch);

  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(MakeCaption(this, "Catalogue"), wxSizerFlags().Expand());
  column->Add(tree_, wxSizerFlags(1).Expand());
  SetSizer(column);

  tree_->EnableDragSource(DraggedFormat());
  tree_->Bind(wxEVT_DATAVIEW_ITEM_BEGIN_DRAG, [this](wxDataViewEvent& event) {
    const std::string name = NameOf(event.GetItem());
    if (name.empty()) return event.Veto();
    event.SetDataObject(MakeDragged(kDraggedNewAction + ToWx(name)));
    event.SetDragFlags(wxDrag_CopyOnly);
  });
  tree_->Bind(wxEVT_DATAVIEW_ITEM_ACTIVATED, [this](wxDataViewEvent& event) { Activate(event.GetItem()); });
}

std::string CataloguePanel::NameOf(const wxDataViewItem& item) const {
  return item.IsOk() && !tree_->IsContainer(item) ? FromWx(tree_->GetItemText(item)) : std::string();
}

std::string CataloguePanel::Selected() const { return NameOf(tree_->GetSelection()); }

void CataloguePanel::Activate(const wxDataViewItem& item) {
  const std::string name = NameOf(item);
  if (!name.empty() && OnAdd) return OnAdd(name);
  if (!item.IsOk()) return;
  if (tree_->IsExpanded(item))
    tree_->Collapse(item);
  else
    tree_->Expand(item);
}

}  // namespace qx::desktop
