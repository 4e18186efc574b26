#include "host/desktop/views/PageLayout.h"

#include <wx/gbsizer.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/statline.h>
#include <wx/window.h>

#include <algorithm>
#include <vector>

namespace qx::desktop {
namespace {

// Distances, from the size of the text.
struct Measures {
  explicit Measures(const wxWindow& window)
      : betweenRows(window.GetCharHeight() * 3 / 8),
        betweenSections(window.GetCharHeight()),
        betweenColumns(window.GetCharWidth() * 5 / 4),
        indent(window.GetCharWidth() * 5 / 2),
        margin(window.GetCharHeight() * 3 / 4) {}
  int betweenRows;
  int betweenSections;
  int betweenColumns;
  int indent;
  int margin;
};

class Arranger {
 public:
  Arranger(wxWindow& widget, const WidgetOf& widgetOf)
      : widget_(widget), widgetOf_(widgetOf), measures_(widget) {}

  wxSizer* Stack(const TControl& container) {
    const std::vector<PageSection> sections = SectionsOf(container);
    const int firstColumn = FirstColumn(sections);
    auto* column = new wxBoxSizer(wxVERTICAL);
    bool isFirst = true;
    for (const PageSection& section : sections) {
      if (!isFirst) column->AddSpacer(measures_.betweenSections);
      isFirst = false;
      const bool isTall = std::ranges::any_of(section.rows, IsTallRow);
      if (section.heading != nullptr) AddHeading(*column, *section.heading);
      const int left = section.heading == nullptr ? 0 : measures_.margin;
      column->Add(Section(section, firstColumn), wxSizerFlags(isTall ? 1 : 0).Expand().Border(wxLEFT, left));
    }
    return column;
  }

 private:
  static bool IsTallRow(const PageRow& row) {
    return std::ranges::any_of(row.controls, [](const TControl* control) { return IsTall(*control); });
  }

  void AddHeading(wxSizer& column, const TLabel& heading) {
    column.Add(widgetOf_(heading));
    column.Add(new wxStaticLine(&widget_), wxSizerFlags().Expand().Border(wxTOP, measures_.betweenRows / 2));
  }

  // The first columns of all sections end at one line: the fields of the whole page stand under each other.
  int FirstColumn(const std::vector<PageSection>& sections) {
    int width = 0;
    for (const PageSection& section : sections)
      for (const PageRow& row : section.rows)
        if (row.kind == PageRow::Kind::Fields)
          width = std::max(width, widgetOf_(*row.controls.front())->GetEffectiveMinSize().GetWidth() +
                                      (row.indented ? measures_.indent : 0));
    return width;
  }

  wxSizer* Section(const PageSection& section, int firstColumn) {
    auto* grid = new wxGridBagSizer(0, 0);
    Columns columns(static_cast<std::size_t>(section.columns));
    if (section.columns > 1) columns[0].width = firstColumn;
    for (const PageRow& row : section.rows)
      if (row.kind == PageRow::Kind::Fields) Measure(row, columns);
    if (std::ranges::none_of(columns, &Column::grows)) columns.back().grows = true;
    for (const PageRow& row : section.rows) WidenFor(row, columns);
    int y = 0;
    if (section.columns > 1) {
      for (int x = 0; x < section.columns; ++x)
        grid->Add(columns[static_cast<std::size_t>(x)].width, 0, wxGBPosition(0, x));
      ++y;
    }
    for (const PageRow& row : section.rows) {
      const int top = y == 0 && section.heading == nullptr
                          ? 0
                          : Above(row, &row == &section.rows.front() ? nullptr : &row - 1);
      switch (row.kind) {
        case PageRow::Kind::Single:
          AddSingle(*grid, *row.controls.front(), y, section.columns, top, Indent(row));
          break;
        case PageRow::Kind::Flow:
          AddFlow(*grid, row, y, section.columns, top);
          break;
        default:
          AddColumns(*grid, row, y, section.columns, top);
      }
      if (IsTallRow(row)) grid->AddGrowableRow(static_cast<size_t>(y), 1);
      ++y;
    }
    for (int x = 0; x < section.columns; ++x)
      if (columns[static_cast<std::size_t>(x)].grows) grid->AddGrowableCol(static_cast<size_t>(x), 1);
    return grid;
  }

  // How wide the columns of a section are at least; those with a field of their own take what there is more.
  struct Column {
    int width = 0;
    bool grows = false;
  };
  using Columns = std::vector<Column>;

  // The last column of a control: a field that ends its row goes on to the end of the section.
  static std::size_t LastColumn(const PageRow& row, std::size_t x, std::size_t count) {
    const bool ends = x + 1 == row.controls.size();
    return ends && IsStretchy(*row.controls[x]) ? count - 1 : x;
  }

  int WidthOf(const PageRow& row, std::size_t x) const {
    const int left = x > 0 ? measures_.betweenColumns : Indent(row);
    return left + widgetOf_(*row.controls[x])->GetEffectiveMinSize().GetWidth();
  }

  void Measure(const PageRow& row, Columns& columns) const {
    for (std::size_t x = 0; x < row.controls.size(); ++x) {
      if (LastColumn(row, x, columns.size()) != x) continue;
      columns[x].width = std::max(columns[x].width, WidthOf(row, x));
      columns[x].grows = columns[x].grows || IsStretchy(*row.controls[x]);
    }
  }

  // What spans several columns is given its room by those that grow.
  void WidenFor(const PageRow& row, Columns& columns) const {
    if (row.kind == PageRow::Kind::Columns) return;
    const std::size_t last = columns.size() - 1;
    if (row.kind == PageRow::Kind::Fields) {
      const std::size_t x = row.controls.size() - 1;
      if (LastColumn(row, x, columns.size()) == last) Widen(columns, x, WidthOf(row, x));
      return;
    }
    if (row.kind == PageRow::Kind::Single && !row.controls.front()->Children().empty()) return;
    int width = 0;
    for (std::size_t i = 0; i < row.controls.size(); ++i)
      width += WidthOf(row, i) + (i == 0 && row.firstColumn > 0 ? measures_.betweenColumns : 0);
    Widen(columns, static_cast<std::size_t>(row.firstColumn), width);
  }

  // From that column to the last one.
  static void Widen(Columns& columns, std::size_t first, int width) {
    int growing = 0;
    for (std::size_t i = first; i < columns.size(); ++i) {
      width -= columns[i].width;
      growing += columns[i].grows ? 1 : 0;
    }
    for (std::size_t i = first; i < columns.size() && width > 0; ++i) {
      if (!columns[i].grows) continue;
      const int share = width / growing--;
      columns[i].width += share;
      width -= share;
    }
  }

  // Groups, notes and whatever opens with a heading keep a distance from what they do not belong to.
  int Above(const PageRow& row, const PageRow* before) const {
    const bool isNote = row.kind == PageRow::Kind::Single && row.controls.front()->Kind() == "label";
    const bool opens = SectionsOf(*row.controls.front()).front().heading != nullptr;
    const bool isApart = before != nullptr && (isNote || opens || HasGroup(row) || HasGroup(*before));
    return isApart ? measures_.betweenSections : measures_.betweenRows;
  }

  static bool HasGroup(const PageRow& row) {
    return std::ranges::any_of(row.controls,
                               [](const TControl* control) { return control->Kind() == "group"; });
  }

  int Indent(const PageRow& row) const { return row.indented ? measures_.indent : 0; }

  // Gives `add` what stands for a control: the widget, or a group's frame with what stands in it.
  template <class Add>
  void Put(const TControl& control, Add add) const {
    wxWindow* widget = widgetOf_(control);
    if (auto* box = dynamic_cast<wxStaticBox*>(widget)) {
      auto* frame = new wxStaticBoxSizer(box, wxVERTICAL);
      wxSizer* content = Arranger(*widget, widgetOf_).Stack(control);
      frame->Add(content, wxSizerFlags(1).Expand().Border(wxALL, measures_.margin));
      add(frame);
      return;
    }
    if (!control.Children().empty()) widget->SetSizer(Arranger(*widget, widgetOf_).Stack(control));
    add(widget);
  }

  struct Cell {
    int y;
    int x;
    int span;  // columns
    int top;   // the space above what stands there
    int left;
    bool fills;
  };

  // Without a sizer around it where one border is enough: each level of sizers doubles what laying out asks
  // of the widgets.
  void PutInto(wxGridBagSizer& grid, const TControl& control, const Cell& cell) const {
    const int flags = cell.fills ? static_cast<int>(wxEXPAND) : static_cast<int>(wxALIGN_CENTER_VERTICAL);
    const auto add = [&](auto* what, int side, int space) {
      grid.Add(what, wxGBPosition(cell.y, cell.x), wxGBSpan(1, cell.span), flags | side, space);
    };
    if (cell.left == 0) return Put(control, [&](auto* what) { add(what, wxTOP, cell.top); });
    if (cell.top == 0) return Put(control, [&](auto* what) { add(what, wxLEFT, cell.left); });
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->AddSpacer(cell.left);
    Put(control, [&](auto* what) {
      row->Add(what, cell.fills ? wxSizerFlags(1).Expand() : wxSizerFlags().CenterVertical());
    });
    add(row, wxTOP, cell.top);
  }

  void AddSingle(wxGridBagSizer& grid, const TControl& control, int y, int columns, int top, int left) {
    const bool fills = IsStretchy(control) || IsTall(control) || !control.Children().empty();
    PutInto(grid, control, {y, 0, columns, top, left, fills});
  }

  void AddFlow(wxGridBagSizer& grid, const PageRow& row, int y, int columns, int top) {
    auto* flow = new wxBoxSizer(wxHORIZONTAL);
    if (Indent(row) > 0) flow->AddSpacer(Indent(row));
    for (const TControl* control : row.controls) {
      if (control != row.controls.front()) flow->AddSpacer(measures_.betweenColumns);
      Put(*control, [flow](auto* what) { flow->Add(what, wxSizerFlags().CenterVertical()); });
    }
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->AddSpacer(top);
    column->Add(flow);
    const int left = row.firstColumn > 0 ? measures_.betweenColumns : 0;
    grid.Add(column, wxGBPosition(y, row.firstColumn), wxGBSpan(1, columns - row.firstColumn), wxLEFT, left);
  }

  void AddColumns(wxGridBagSizer& grid, const PageRow& row, int y, int columns, int top) {
    const int last = row.firstColumn + static_cast<int>(row.controls.size()) - 1;
    for (int x = row.firstColumn; x <= last; ++x) {
      const TControl& control = *row.controls[static_cast<std::size_t>(x - row.firstColumn)];
      const bool stretches = IsStretchy(control);
      const int span = x == last && stretches ? columns - x : 1;
      const int left = x > 0 ? measures_.betweenColumns : Indent(row);
      PutInto(grid, control, {y, x, span, top, left, stretches});
    }
  }

  wxWindow& widget_;
  const WidgetOf& widgetOf_;
  Measures measures_;
};

}  // namespace

void LayOut(const TControl& page, wxWindow& widget, const WidgetOf& widgetOf) {
  auto* frame = new wxBoxSizer(wxVERTICAL);
  const int margin = Measures(widget).margin;
  frame->Add(Arranger(widget, widgetOf).Stack(page), wxSizerFlags(1).Expand().Border(wxALL, margin));
  widget.SetSizer(frame);
}

}  // namespace qx::desktop
