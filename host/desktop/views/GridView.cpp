#include "host/desktop/views/GridView.h"

#include <wx/dcclient.h>
#include <wx/grid.h>
#include <wx/settings.h>

#include <algorithm>

#include "host/desktop/views/WxText.h"

namespace qx::desktop {
namespace {

// Columns share the width there is; the last one takes what is left over.
void ShareWidth(wxGrid& grid) {
  const int count = grid.GetNumberCols();
  const int width = grid.GetClientSize().GetWidth();
  if (count == 0 || width <= 0) return;
  for (int column = 0; column < count; ++column) {
    const int share = width / count + (column == count - 1 ? width % count : 0);
    if (grid.GetColSize(column) != share) grid.SetColSize(column, std::max(share, grid.GetCharWidth() * 8));
  }
}

// The look follows the theme and whether the grid can be used.
void UseTheme(wxGrid& grid) {
  const bool enabled = grid.IsEnabled();
  const auto colour = [](wxSystemColour which) { return wxSystemSettings::GetColour(which); };
  grid.SetDefaultCellBackgroundColour(colour(enabled ? wxSYS_COLOUR_WINDOW : wxSYS_COLOUR_BTNFACE));
  grid.SetDefaultCellTextColour(colour(enabled ? wxSYS_COLOUR_WINDOWTEXT : wxSYS_COLOUR_GRAYTEXT));
  grid.SetLabelBackgroundColour(colour(wxSYS_COLOUR_BTNFACE));
  grid.SetLabelTextColour(colour(enabled ? wxSYS_COLOUR_BTNTEXT : wxSYS_COLOUR_GRAYTEXT));
  grid.SetGridLineColour(colour(wxSYS_COLOUR_BTNSHADOW));
  grid.Refresh();
}

// Around the grid, in the colour of its lines: the frames that systems offer are missing or glaring.
void DrawFrame(const wxGrid& grid) {
  wxPaintDC canvas(grid.GetParent());
  canvas.SetPen(wxPen(grid.GetGridLineColour()));
  canvas.SetBrush(*wxTRANSPARENT_BRUSH);
  canvas.DrawRectangle(grid.GetRect().Inflate(1));
}

bool ShowSize(int columns, int rows, wxGrid& widget) {
  if (widget.GetNumberCols() == columns && widget.GetNumberRows() == rows) return false;
  if (widget.GetNumberRows() > 0) widget.DeleteRows(0, widget.GetNumberRows());
  if (widget.GetNumberCols() > 0) widget.DeleteCols(0, widget.GetNumberCols());
  widget.AppendCols(columns);
  widget.AppendRows(rows);
  return true;
}

}  // namespace

wxGrid* MakeGrid(wxWindow& parent) {
  constexpr int kRows = 6;
  auto* grid = new wxGrid(&parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE);
  grid->CreateGrid(0, 0);
  grid->HideRowLabels();
  grid->DisableDragRowSize();
  grid->SetTabBehaviour(wxGrid::Tab_Leave);
  grid->SetColLabelAlignment(wxALIGN_LEFT, wxALIGN_CENTRE);
  grid->SetDefaultCellFont(grid->GetFont());
  grid->SetLabelFont(grid->GetFont());
  const int rowHeight = grid->GetCharHeight() * 3 / 2;
  grid->SetDefaultRowSize(rowHeight);
  grid->SetColLabelSize(rowHeight);
  grid->SetMinSize({40 * grid->GetCharWidth(), kRows * rowHeight});
  UseTheme(*grid);
  grid->Bind(wxEVT_SIZE, [grid](wxSizeEvent& event) {
    event.Skip();
    ShareWidth(*grid);
    grid->GetParent()->Refresh();  // its frame has moved
  });
  parent.Bind(wxEVT_PAINT, [grid](wxPaintEvent& event) {
    event.Skip();
    DrawFrame(*grid);
  });
  grid->Bind(wxEVT_SYS_COLOUR_CHANGED, [grid](wxSysColourChangedEvent& event) {
    event.Skip();
    UseTheme(*grid);
  });
  return grid;
}

bool ShowGrid(const TStringGrid& grid, wxGrid& widget) {
  const auto text =
      wxSystemSettings::GetColour(widget.IsEnabled() ? wxSYS_COLOUR_BTNTEXT : wxSYS_COLOUR_GRAYTEXT);
  if (widget.GetLabelTextColour() != text) UseTheme(widget);
  bool differed = ShowSize(grid.ColCount(), std::max(0, grid.RowCount() - 1), widget);
  if (differed) ShareWidth(widget);
  for (int column = 0; column < grid.ColCount(); ++column) {
    for (int row = 0; row < grid.RowCount(); ++row) {
      const wxString wanted = ToWx(grid.Cell(column, row));
      if (row == 0) {
        if (widget.GetColLabelValue(column) == wanted) continue;
        widget.SetColLabelValue(column, wanted);
      } else {
        if (widget.GetCellValue(row - 1, column) == wanted) continue;
        widget.SetCellValue(row - 1, column, wanted);
      }
      differed = true;
    }
  }
  return differed;
}

}  // namespace qx::desktop
