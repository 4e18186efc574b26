#include "host/pages/ControlState.h"

#include <algorithm>

#include "platform/Texts.h"

namespace qx {
namespace {

using Json = nlohmann::ordered_json;

std::string Masked(const std::string& text) {
  return std::string(static_cast<std::size_t>(std::ranges::count_if(text, BeginsCharacter)), '*');
}

void Describe(const TLabel& label, Json& state) {
  if (label.labelled != nullptr) state["labels"] = label.labelled->name;
}

void Describe(const TEdit& edit, Json& state) {
  state["text"] = edit.masked ? Masked(edit.Text()) : edit.Text();
  state["masked"] = edit.masked;
  if (edit.rightAligned) state["rightAligned"] = true;
}

void Describe(const TButtonEdit& edit, Json& state) {
  Describe(static_cast<const TEdit&>(edit), state);
  Json hints = Json::array();
  for (const TEditButton& button : edit.buttons) hints.push_back(button.hint);
  state["buttons"] = std::move(hints);
}

void Describe(const TComboBox& box, Json& state) {
  state["text"] = box.Text();
  state["items"] = box.Items();
  state["index"] = box.ItemIndex();
}

void Describe(const TCheckBox& box, Json& state) {
  state["checked"] = box.Checked();
  if (box.captionOnLeft) state["captionLeft"] = true;
}

void Describe(const TRadioButton& button, Json& state) { state["checked"] = button.Checked(); }

void Describe(const TCheckListBox& list, Json& state) {
  Json items = Json::array();
  Json checked = Json::array();
  Json checkedIndexes = Json::array();
  Json selected = Json::array();
  for (int i = 0; i < list.Count(); ++i) {
    items.push_back(list.Item(i));
    if (list.IsChecked(i)) {
      checked.push_back(list.Item(i));
      checkedIndexes.push_back(i);
    }
    if (list.IsSelected(i)) selected.push_back(i);
  }
  state["items"] = std::move(items);
  state["checkedItems"] = std::move(checked);
  state["checkedIndexes"] = std::move(checkedIndexes);
  state["selectedIndexes"] = std::move(selected);
  state["multiSelect"] = list.multiSelect;
}

void Describe(const TSpinEdit& spin, Json& state) {
  state["text"] = std::to_string(spin.Value());
  state["value"] = spin.Value();
  state["min"] = spin.Min();
  state["max"] = spin.Max();
}

void Describe(const TStringGrid& grid, Json& state) {
  Json rows = Json::array();
  for (int row = 0; row < grid.RowCount(); ++row) {
    Json cells = Json::array();
    for (int column = 0; column < grid.ColCount(); ++column) cells.push_back(grid.Cell(column, row));
    rows.push_back(std::move(cells));
  }
  state["cells"] = std::move(rows);  // row by row, the heading row first
}

template <class Control>
bool DescribeAs(const TControl& control, Json& state) {
  const auto* found = dynamic_cast<const Control*>(&control);
  if (found != nullptr) Describe(*found, state);
  return found != nullptr;
}

}  // namespace

Json StateOf(const TControl& control) {
  Json state{{"name", control.name},           {"kind", control.Kind()},  {"caption", control.caption},
             {"hint", control.hint},           {"tab", control.tabOrder}, {"enabled", control.IsEnabled()},
             {"ownEnabled", control.Enabled()}};
  if (control.Parent() != nullptr && !control.Parent()->name.empty())
    state["parent"] = control.Parent()->name;
  // The more special kind first.
  static_cast<void>(DescribeAs<TLabel>(control, state) || DescribeAs<TButtonEdit>(control, state) ||
                    DescribeAs<TEdit>(control, state) || DescribeAs<TComboBox>(control, state) ||
                    DescribeAs<TCheckBox>(control, state) || DescribeAs<TRadioButton>(control, state) ||
                    DescribeAs<TCheckListBox>(control, state) || DescribeAs<TSpinEdit>(control, state) ||
                    DescribeAs<TStringGrid>(control, state));
  return state;
}

}  // namespace qx
