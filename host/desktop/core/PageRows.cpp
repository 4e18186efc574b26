#include "host/desktop/core/PageRows.h"

#include <algorithm>
#include <map>

#include "platform/Texts.h"

namespace qx::desktop {
namespace {

template <class Control>
bool Is(const TControl* control) {
  return dynamic_cast<const Control*>(control) != nullptr;
}

TLabel* AsHeading(TControl* control) {
  auto* label = dynamic_cast<TLabel*>(control);
  return label != nullptr && label->heading ? label : nullptr;
}

PageRow::Kind KindOf(const std::vector<TControl*>& controls) {
  if (controls.size() == 1) return PageRow::Kind::Single;
  if (std::ranges::any_of(controls, [](const TControl* control) { return IsField(*control); }))
    return PageRow::Kind::Fields;
  return std::ranges::all_of(controls, Is<TLabel>) ? PageRow::Kind::Columns : PageRow::Kind::Flow;
}

// What follows a choice that has nothing beside it belongs to the choice: rows up to the next choice, or to
// something that opens or explains.
void Indent(std::vector<PageRow>& rows) {
  bool inside = false;
  for (PageRow& row : rows) {
    const TControl* first = row.controls.front();
    if (Is<TRadioButton>(first)) {
      inside = row.kind == PageRow::Kind::Single;
      continue;
    }
    const bool isNote = row.kind == PageRow::Kind::Single && Is<TLabel>(first);
    if (isNote || Is<TGroupBox>(first) || Is<TPanel>(first)) inside = false;
    row.indented = inside;
  }
}

// Boxes in several rows stand under each other where no fields say where columns begin.
void AlignFlows(PageSection& section) {
  const auto isFlow = [](const PageRow& row) { return row.kind == PageRow::Kind::Flow; };
  if (section.columns > 1 || std::ranges::count_if(section.rows, isFlow) < 2) return;
  for (PageRow& row : section.rows) {
    if (!isFlow(row)) continue;
    row.kind = PageRow::Kind::Columns;
    section.columns = std::max(section.columns, static_cast<int>(row.controls.size()));
  }
}

void Arrange(PageSection& section) {
  for (PageRow& row : section.rows) {
    row.kind = KindOf(row.controls);
    if (row.kind == PageRow::Kind::Fields)
      section.columns = std::max(section.columns, static_cast<int>(row.controls.size()));
  }
  AlignFlows(section);
  for (std::size_t i = 0; i < section.rows.size(); ++i) {
    PageRow& row = section.rows[i];
    const int count = static_cast<int>(row.controls.size());
    if (row.kind == PageRow::Kind::Flow && section.columns > 1) row.firstColumn = 1;
    if (row.kind != PageRow::Kind::Columns) continue;
    const bool namesFields = i + 1 < section.rows.size() && section.rows[i + 1].kind == PageRow::Kind::Fields;
    const int below = namesFields ? static_cast<int>(section.rows[i + 1].controls.size()) : count;
    row.firstColumn = std::max(0, below - count);
    section.columns = std::max(section.columns, row.firstColumn + count);
  }
  Indent(section.rows);
}

std::string WithoutMarks(const std::string& caption) {
  std::string text;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && i + 1 < caption.size()) ++i;
    text += caption[i];
  }
  std::string_view name = TrimView(text);
  while (name.ends_with(':') || name.ends_with(' ')) name.remove_suffix(1);
  return std::string(name);
}

// What names the control from the head of its row, and of its column.
std::string NameFromPlace(const PageSection& section, const TControl& control) {
  const PageRow* columns = nullptr;
  for (const PageRow& row : section.rows) {
    const auto at = std::ranges::find(row.controls, &control);
    if (at == row.controls.end()) {
      if (row.kind == PageRow::Kind::Columns && Is<TLabel>(row.controls.front())) columns = &row;
      continue;
    }
    std::string name = at == row.controls.begin() ? "" : WithoutMarks(row.controls.front()->caption);
    const auto column = row.firstColumn + (at - row.controls.begin()) - (columns ? columns->firstColumn : 0);
    const bool hasColumn = columns != nullptr && row.controls.size() > 2 && column >= 0 &&
                           column < static_cast<std::ptrdiff_t>(columns->controls.size());
    if (hasColumn)
      name.append(" ").append(WithoutMarks(columns->controls[static_cast<std::size_t>(column)]->caption));
    if (!name.empty()) return name;
    return section.heading == nullptr ? "" : WithoutMarks(section.heading->caption);
  }
  return "";
}

}  // namespace

bool IsField(const TControl& control) {
  return Is<TEdit>(&control) || Is<TComboBox>(&control) || Is<TSpinEdit>(&control);
}

bool IsStretchy(const TControl& control) {
  const auto* edit = dynamic_cast<const TEdit*>(&control);
  return edit != nullptr ? !edit->rightAligned : Is<TComboBox>(&control);
}

bool IsTall(const TControl& control) {
  if (Is<TCheckListBox>(&control) || Is<TStringGrid>(&control)) return true;
  return std::ranges::any_of(control.Children(), [](const TControl* child) { return IsTall(*child); });
}

std::vector<PageSection> SectionsOf(const TControl& container) {
  std::vector<PageSection> sections(1);
  for (TControl* control : container.Children()) {
    if (TLabel* heading = AsHeading(control)) {
      sections.emplace_back().heading = heading;
      continue;
    }
    std::vector<PageRow>& rows = sections.back().rows;
    const bool joins = control->sameRow && !rows.empty();
    if (!joins) rows.emplace_back();
    rows.back().controls.push_back(control);
  }
  if (sections.front().rows.empty() && sections.size() > 1) sections.erase(sections.begin());
  for (PageSection& section : sections) Arrange(section);
  return sections;
}

std::vector<TControl*> InTabOrder(const TControl& container) {
  struct Stop {
    int order;
    std::vector<TControl*> controls;  // labels, then what they stand before
  };
  std::vector<Stop> stops;
  std::vector<TControl*> waiting;
  for (TControl* control : container.Children()) {
    waiting.push_back(control);
    if (!control->IsWindowed()) continue;
    // A label that names this one stands nearest to it.
    std::stable_partition(waiting.begin(), waiting.end(), [control](const TControl* before) {
      const auto* label = dynamic_cast<const TLabel*>(before);
      return before != control && (label == nullptr || label->labelled != control);
    });
    const int last = stops.empty() ? -1 : stops.back().order;
    stops.push_back({control->tabOrder < 0 ? last : control->tabOrder, std::move(waiting)});
    waiting.clear();
  }
  std::ranges::stable_sort(stops, {}, &Stop::order);
  if (!waiting.empty()) stops.push_back({0, std::move(waiting)});
  std::vector<TControl*> ordered;
  for (Stop& stop : stops) ordered.insert(ordered.end(), stop.controls.begin(), stop.controls.end());
  return ordered;
}

std::string SpokenName(const TControl& control) {
  if (control.Parent() == nullptr) return "";
  for (const TControl* sibling : control.Parent()->Children()) {
    const auto* label = dynamic_cast<const TLabel*>(sibling);
    if (label != nullptr && label->labelled == &control) return WithoutMarks(label->caption);
  }
  if (!control.caption.empty()) return WithoutMarks(control.caption);
  for (const PageSection& section : SectionsOf(*control.Parent()))
    if (std::string name = NameFromPlace(section, control); !name.empty()) return name;
  return control.hint.empty() ? SpokenName(*control.Parent()) : control.hint;
}

}  // namespace qx::desktop
