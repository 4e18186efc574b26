#include "host/desktop/window/VariablesDialog.h"

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/grid.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "host/desktop/views/Accessible.h"
#include "host/desktop/views/WxText.h"
#include "platform/Texts.h"

namespace qx::desktop {
namespace {

ProjectVariables VariablesIn(wxGrid& grid) {
  grid.SaveEditControlValue();
  ProjectVariables variables;
  for (int row = 0; row < grid.GetNumberRows(); ++row) {
    const std::string name = Trim(FromWx(grid.GetCellValue(row, 0)));
    if (!name.empty()) variables.emplace_back(name, FromWx(grid.GetCellValue(row, 1)));
  }
  return variables;
}

// The key Tab leads from row to row, and to the buttons from the first and last cell.
void LeaveAtTheEnds(wxGrid& grid) {
  grid.SetTabBehaviour(wxGrid::Tab_Wrap);
  grid.Bind(wxEVT_GRID_TABBING, [&grid](wxGridEvent& event) {
    const bool isForward = !event.ShiftDown();
    const wxGridCellCoords first(0, 0);
    const wxGridCellCoords last(grid.GetNumberRows() - 1, grid.GetNumberCols() - 1);
    if (wxGridCellCoords(event.GetRow(), event.GetCol()) != (isForward ? last : first)) return event.Skip();
    grid.GetParent()->FindWindow(isForward ? wxID_OK : wxID_CANCEL)->SetFocus();
  });
}

}  // namespace

void EditVariablesIn(wxWindow* parent, const ProjectVariables& variables,
                     const std::function<bool(const ProjectVariables&)>& set) {
  wxDialog dialog(parent, wxID_ANY, "Variables", wxDefaultPosition, wxDefaultSize,
                  wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER);
  dialog.SetName("variables");
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(
      new wxStaticText(&dialog, wxID_ANY,
                       "%NAME% in a property is replaced by the value. A variable given on the command line "
                       "wins over\none of the project, one of the project over the environment's."),
      wxSizerFlags().Border());
  auto* grid = new wxGrid(&dialog, wxID_ANY);
  grid->SetName("variablesGrid");
  SetAccessibleName(*grid, "Variables of the build project");
  constexpr int spareRows = 8;
  grid->CreateGrid(static_cast<int>(variables.size()) + spareRows, 2);
  grid->SetColLabelValue(0, "Name");
  grid->SetColLabelValue(1, "Value");
  grid->HideRowLabels();
  for (std::size_t i = 0; i < variables.size(); ++i) {
    grid->SetCellValue(static_cast<int>(i), 0, ToWx(variables[i].first));
    grid->SetCellValue(static_cast<int>(i), 1, ToWx(variables[i].second));
  }
  grid->SetColSize(0, 20 * dialog.GetCharWidth());
  grid->SetColSize(1, 50 * dialog.GetCharWidth());
  LeaveAtTheEnds(*grid);
  column->Add(grid, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT));
  column->Add(dialog.CreateStdDialogButtonSizer(wxOK | wxCANCEL), wxSizerFlags().Expand().Border());
  dialog.SetSizerAndFit(column);
  dialog.CentreOnParent();
  grid->SetFocus();
  while (dialog.ShowModal() == wxID_OK && !set(VariablesIn(*grid))) {
  }
}

}  // namespace qx::desktop
