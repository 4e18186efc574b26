#include "host/desktop/window/ActionsPanel.h"

#include <wx/menu.h>
#include <wx/sizer.h>
#include <wx/utils.h>

#include <array>

#include "host/actions/Catalogue.h"
#include "host/desktop/core/RunStory.h"
#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/Caption.h"
#include "host/desktop/views/Pictures.h"
#include "host/desktop/views/WxText.h"
#include "host/desktop/window/Dragged.h"

namespace qx::desktop {
namespace {

enum Column { NameColumn, DescriptionColumn, StateColumn };

const std::array<std::optional<Picture>, 7> kStatePictures{
    std::nullopt,    std::nullopt,  Picture::Running, Picture::Succeeded,
    Picture::Failed, Picture::Stop, Picture::Failed};  // by ActionState

wxIcon IconOf(const wxBitmapBundle& picture, const wxWindow& window) {
  wxIcon icon;
  icon.CopyFromBitmap(picture.GetBitmapFor(&window));
  return icon;
}

wxVariant StateCell(const ActionRun& run, const wxWindow& window) {
  const std::optional<Picture> picture = kStatePictures.at(static_cast<std::size_t>(run.state));
  const wxIcon icon = picture ? IconOf(PictureOf(*picture), window) : wxIcon();
  wxVariant cell;
  cell << wxDataViewIconText(ToWx(TextOf(run)), icon);
  return cell;
}

}  // namespace

ActionsPanel::ActionsPanel(wxWindow* parent, const Document& document, const BuildThread& build,
                           const Catalogue& catalogue, std::vector<std::string> folders)
    : wxPanel(parent),
      document_(document),
      build_(build),
      catalogue_(catalogue),
      folders_(std::move(folders)) {
  list_ = new wxDataViewListCtrl(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxDV_ROW_LINES);
  list_->SetName("actions");
  SetAccessibleName(*list_, "Actions of the build project");
  const int em = list_->GetCharWidth();
  list_->AppendIconTextColumn("Action", wxDATAVIEW_CELL_INERT, 22 * em, wxALIGN_LEFT,
                              wxDATAVIEW_COL_RESIZABLE);
  list_->AppendTextColumn("Description", wxDATAVIEW_CELL_INERT, 12 * em, wxALIGN_LEFT,
                          wxDATAVIEW_COL_RESIZABLE);
  list_->AppendIconTextColumn("Last run", wxDATAVIEW_CELL_INERT, 22 * em, wxALIGN_LEFT,
                              wxDATAVIEW_COL_RESIZABLE);

  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(MakeCaption(this, "Build project"), wxSizerFlags().Expand());
  column->Add(list_, wxSizerFlags(1).Expand());
  SetSizer(column);

  list_->Bind(wxEVT_DATAVIEW_SELECTION_CHANGED, [this](wxDataViewEvent&) {
    if (OnSelect) OnSelect();
  });
  list_->Bind(wxEVT_DATAVIEW_ITEM_ACTIVATED, [this](wxDataViewEvent&) {
    if (OnOpen) OnOpen();
  });
  list_->Bind(wxEVT_DATAVIEW_ITEM_CONTEXT_MENU, [this](wxDataViewEvent&) {
    if (OnMenu) OnMenu();
  });
  // Of the key only: the mouse has the event above.
  list_->Bind(wxEVT_CONTEXT_MENU, [this](wxContextMenuEvent& event) {
    if (event.GetPosition() != wxDefaultPosition || !OnMenu) return event.Skip();
    isMenuByKey_ = true;
    OnMenu();
    isMenuByKey_ = false;
  });
  list_->Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
    if (event.GetKeyCode() != WXK_DELETE || event.HasAnyModifiers() || !OnDelete) return event.Skip();
    OnDelete();
  });
  BindDragging();
}

int ActionsPanel::RowOf(const wxDataViewItem& item) const {
  return item.IsOk() ? list_->ItemToRow(item) : -1;
}

void ActionsPanel::BindDragging() {
  list_->EnableDragSource(DraggedFormat());
  list_->EnableDropTarget(DraggedFormat());
  list_->Bind(wxEVT_DATAVIEW_ITEM_BEGIN_DRAG, [this](wxDataViewEvent& event) {
    const int row = RowOf(event.GetItem());
    if (row < 0 || !list_->IsEnabled()) return event.Veto();
    event.SetDataObject(MakeDragged(wxString::Format("%s%d", kDraggedAction, row)));
    event.SetDragFlags(wxDrag_AllowMove);
  });
  list_->Bind(wxEVT_DATAVIEW_ITEM_DROP_POSSIBLE, [](wxDataViewEvent& event) {
    if (event.GetDataFormat() != DraggedFormat()) event.Veto();
  });
  list_->Bind(wxEVT_DATAVIEW_ITEM_DROP, [this](wxDataViewEvent& event) {
    if (!Drop(TextOfDragged(event.GetDataBuffer(), event.GetDataSize()), DropIndex())) event.Veto();
  });
}

// The index of the action before which the mouse is. The event's own item is of no use: for a drop on a row
// it is a child that the row does not have. Near the lower edge of a row the list shows a line behind it.
int ActionsPanel::DropIndex() const {
  wxDataViewItem item;
  wxDataViewColumn* column = nullptr;
  const wxPoint mouse = list_->ScreenToClient(wxGetMousePosition());
  list_->HitTest(mouse, item, column);
  const int row = RowOf(item);
  if (row < 0) return document_.ActionCount();
  const wxRect place = list_->GetItemRect(item);
  return mouse.y >= place.y + place.height * 3 / 4 ? row + 1 : row;
}

// What is dropped on an action comes before it, what is dropped below the last one comes last. The list is
// filled anew when its own handling of the event is over.
bool ActionsPanel::Drop(const wxString& text, int index) {
  wxString rest;
  long from = 0;
  if (text.StartsWith(kDraggedNewAction, &rest) && OnAdd) {
    CallAfter([this, name = FromWx(rest), index] { OnAdd(name, index); });
    return true;
  }
  if (!text.StartsWith(kDraggedAction, &rest) || !rest.ToLong(&from) || !OnMove) return false;
  const int to = index > from ? index - 1 : index;  // where it stands when it has left its place
  CallAfter([this, from, to] { OnMove(static_cast<int>(from), to); });
  return true;
}

void ActionsPanel::Refill(int selected) {
  const wxEventBlocker quiet(list_, wxEVT_DATAVIEW_SELECTION_CHANGED);
  const int count = document_.ActionCount();
  // Rows that stay are changed in their places: a list that is filled anew is at its top.
  while (list_->GetItemCount() > count) list_->DeleteItem(static_cast<unsigned>(count));
  shown_.clear();
  for (int i = 0; i < count; ++i) {
    TQXAction* action = document_.Action(i);
    const std::string type = document_.ActionType(i);
    const RegisteredAction* registered = catalogue_.FindAction(type);
    const wxBitmapBundle picture =
        PackagePicture(folders_, registered == nullptr ? std::string() : registered->bitmap);
    wxVector<wxVariant> row(3);
    row[NameColumn] << wxDataViewIconText(ToWx(type), IconOf(picture, *this));
    row[DescriptionColumn] =
        action == nullptr ? wxString("No loaded package has this action") : ToWx(action->GetDescription());
    row[StateColumn] = StateCell(build_.RunOf(i), *this);
    shown_.push_back(build_.StateOf(i));
    if (i >= list_->GetItemCount()) {
      list_->AppendItem(row);
      continue;
    }
    for (const Column cell : {NameColumn, DescriptionColumn, StateColumn})
      list_->SetValue(row[cell], static_cast<unsigned>(i), cell);
  }
  list_->UnselectAll();
  if (selected < 0 || selected >= count) return;
  list_->SelectRow(static_cast<unsigned>(selected));
  list_->EnsureVisible(list_->RowToItem(selected));
}

void ActionsPanel::RefreshStates() {
  for (std::size_t i = 0; i < shown_.size(); ++i) {
    const ActionRun now = build_.RunOf(static_cast<int>(i));
    if (now.state == shown_[i]) continue;
    shown_[i] = now.state;
    list_->SetValue(StateCell(now, *this), static_cast<unsigned>(i), StateColumn);
  }
}

int ActionsPanel::Selected() const { return list_->GetSelectedRow(); }

void ActionsPanel::PopUp(wxMenu& menu) {
  wxPoint place = wxDefaultPosition;
  if (isMenuByKey_) {
    const wxDataViewItem selected = list_->GetSelection();
    const wxRect row = selected.IsOk() ? list_->GetItemRect(selected) : wxRect();
    place = ScreenToClient(list_->ClientToScreen(wxPoint(row.x + row.height, row.y + row.height)));
  }
  PopupMenu(&menu, place);
}

}  // namespace qx::desktop
