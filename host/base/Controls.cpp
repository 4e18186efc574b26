// The control models: values, and the events that follow from their changes. What a program sets takes effect
// in a disabled control too, rules included (docs/deliberate.md).
#include "plugin/Qxcontrols.h"

#include <algorithm>
#include <limits>

#include "platform/Texts.h"

namespace qx {
namespace {

void Run(const std::function<void()>& handler) {
  // A handler may replace itself or its control's neighbours while it runs.
  const std::function<void()> held = handler;
  if (held) held();
}

bool IsIndexOf(int index, std::size_t count) { return index >= 0 && static_cast<std::size_t>(index) < count; }

// A whole number of any length, held to what an integer can say; false when the text is none.
bool ReadWholeNumber(std::string_view text, std::int32_t& value) {
  const std::string trimmed = Trim(text);
  const bool negative = trimmed.starts_with('-');
  std::string_view digits = trimmed;
  if (negative || trimmed.starts_with('+')) digits.remove_prefix(1);
  if (digits.empty()) return false;
  constexpr std::int64_t limit = std::int64_t{1} << 32;
  std::int64_t number = 0;
  for (const char c : digits) {
    if (c < '0' || c > '9') return false;
    number = std::min(number * 10 + (c - '0'), limit);
  }
  if (negative) number = -number;
  using Limits = std::numeric_limits<std::int32_t>;
  value = static_cast<std::int32_t>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
  return true;
}

}  // namespace

TControl::TControl() = default;
TControl::~TControl() = default;
TLabel::~TLabel() = default;
TPanel::~TPanel() = default;
TGroupBox::~TGroupBox() = default;
TButton::~TButton() = default;
TEdit::~TEdit() = default;
TButtonEdit::~TButtonEdit() = default;
TComboBox::~TComboBox() = default;
TCheckBox::~TCheckBox() = default;
TRadioButton::~TRadioButton() = default;
TCheckListBox::~TCheckListBox() = default;
TSpinEdit::~TSpinEdit() = default;
TStringGrid::~TStringGrid() = default;

bool TControl::IsEnabled() const {
  for (const TControl* control = this; control != nullptr; control = control->parent_)
    if (!control->enabled_) return false;
  return true;
}

TUserAnswer TControl::UserClick() { return IsEnabled() ? Click() : TUserAnswer::Disabled; }
TUserAnswer TControl::UserType(const std::string& text) {
  return IsEnabled() ? Type(text) : TUserAnswer::Disabled;
}
TUserAnswer TControl::UserSelect(int index) { return IsEnabled() ? Select(index) : TUserAnswer::Disabled; }
TUserAnswer TControl::UserTick(int index, bool checked) {
  return IsEnabled() ? Tick(index, checked) : TUserAnswer::Disabled;
}
TUserAnswer TControl::UserEditCell(int column, int row, const std::string& text) {
  return IsEnabled() ? EditCell(column, row, text) : TUserAnswer::Disabled;
}
TUserAnswer TControl::UserPressButton(int index) {
  return IsEnabled() ? PressButton(index) : TUserAnswer::Disabled;
}

TUserAnswer TControl::Click() { return TUserAnswer::NotOffered; }
TUserAnswer TControl::Type(const std::string&) { return TUserAnswer::NotOffered; }
TUserAnswer TControl::Select(int) { return TUserAnswer::NotOffered; }
TUserAnswer TControl::Tick(int, bool) { return TUserAnswer::NotOffered; }
TUserAnswer TControl::EditCell(int, int, const std::string&) { return TUserAnswer::NotOffered; }
TUserAnswer TControl::PressButton(int) { return TUserAnswer::NotOffered; }

TUserAnswer TButton::Click() {
  Run(OnClick);
  return TUserAnswer::Done;
}

TUserAnswer TEdit::Type(const std::string& text) {
  text_ = text;
  return TUserAnswer::Done;
}

TUserAnswer TButtonEdit::PressButton(int index) {
  if (!IsIndexOf(index, buttons.size())) return TUserAnswer::NoSuchItem;
  Run(buttons[static_cast<std::size_t>(index)].OnClick);
  return TUserAnswer::Done;
}

// An editable box keeps its text, which is the user's (docs/deliberate.md).
void TComboBox::ClearItems() {
  items_.clear();
  index_ = -1;
  if (style == TComboStyle::DropDownList) text_.clear();
}

int TComboBox::IndexOf(std::string_view text) const {
  const auto found =
      std::ranges::find_if(items_, [&](const std::string& item) { return SameText(item, text); });
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

void TComboBox::SetItemIndex(int index) {
  const bool found = IsIndexOf(index, items_.size());
  index_ = found ? index : -1;
  text_ = found ? items_[static_cast<std::size_t>(index)] : std::string();
}

void TComboBox::SetText(const std::string& text) {
  const int index = IndexOf(text);
  if (style == TComboStyle::DropDownList) {
    if (index >= 0) SetItemIndex(index);
    return;
  }
  index_ = index;
  text_ = text;
}

TUserAnswer TComboBox::Type(const std::string& text) {
  if (style == TComboStyle::DropDownList) {
    const int index = IndexOf(text);
    return index < 0 ? TUserAnswer::NotTaken : Select(index);
  }
  if (text == text_) return TUserAnswer::Done;
  SetText(text);
  Run(OnChange);
  return TUserAnswer::Done;
}

TUserAnswer TComboBox::Select(int index) {
  if (!IsIndexOf(index, items_.size())) return TUserAnswer::NoSuchItem;
  if (index == index_ && text_ == items_[static_cast<std::size_t>(index)]) return TUserAnswer::Done;
  SetItemIndex(index);
  Run(OnChange);
  return TUserAnswer::Done;
}

void TCheckBox::SetChecked(bool checked) {
  if (checked == checked_) return;
  checked_ = checked;
  Run(OnClick);
}

TUserAnswer TCheckBox::Click() {
  SetChecked(!checked_);
  return TUserAnswer::Done;
}

void TRadioButton::SetChecked(bool checked) {
  if (checked == checked_) return;
  checked_ = checked;
  if (!checked) return;  // only the button that gets the dot has a click (docs/deliberate.md)
  if (Parent() != nullptr) {
    for (TControl* sibling : Parent()->Children()) {
      auto* other = dynamic_cast<TRadioButton*>(sibling);
      if (other != nullptr && other != this) other->checked_ = false;
    }
  }
  Run(OnClick);
}

TUserAnswer TRadioButton::Click() {
  SetChecked(true);
  return TUserAnswer::Done;
}

const TCheckListBox::Row& TCheckListBox::At(int index) const {
  if (!IsIndexOf(index, items_.size()))
    throw Exception("List index out of bounds (" + std::to_string(index) + ")");
  return items_[static_cast<std::size_t>(index)];
}

void TCheckListBox::AddItem(std::string text, bool checked) {
  items_.push_back({std::move(text), checked, false});
}

// Runs no rule, nor do the two below: that is for the user's ticks (docs/deliberate.md).
void TCheckListBox::SetChecked(int index, bool checked) {
  At(index);
  items_[static_cast<std::size_t>(index)].checked = checked;
}

void TCheckListBox::CheckAll() {
  for (Row& row : items_) row.checked = true;
}

void TCheckListBox::UncheckAll() {
  for (Row& row : items_) row.checked = false;
}

TUserAnswer TCheckListBox::Tick(int index, bool checked) {
  if (!IsIndexOf(index, items_.size())) return TUserAnswer::NoSuchItem;
  if (IsChecked(index) == checked) return TUserAnswer::Done;
  SetChecked(index, checked);
  const auto held = OnTick;
  if (held) held(index, checked);
  return TUserAnswer::Done;
}

TUserAnswer TCheckListBox::Select(int index) {
  if (!IsIndexOf(index, items_.size())) return TUserAnswer::NoSuchItem;
  for (Row& row : items_) row.selected = false;
  items_[static_cast<std::size_t>(index)].selected = true;
  return TUserAnswer::Done;
}

void TSpinEdit::SetRange(std::int32_t min, std::int32_t max) {
  min_ = min;
  max_ = std::max(min, max);
  SetValue(value_);
}

// A number beyond the range becomes the nearer end of it (docs/deliberate.md).
void TSpinEdit::SetValue(std::int32_t value) {
  const std::int32_t held = std::clamp(value, min_, max_);
  if (held == value_) return;
  value_ = held;
  Run(OnChange);
}

TUserAnswer TSpinEdit::Type(const std::string& text) {
  std::int32_t value = 0;
  if (!ReadWholeNumber(text, value)) return TUserAnswer::NotTaken;
  SetValue(value);
  return TUserAnswer::Done;
}

void TStringGrid::SetSize(int columns, int rows) {
  columns_ = std::max(columns, 0);
  rows_ = std::max(rows, 0);
  cells_.assign(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_), {});
}

std::size_t TStringGrid::At(int column, int row) const {
  if (column < 0 || column >= columns_ || row < 0 || row >= rows_) throw Exception("Grid index out of range");
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
         static_cast<std::size_t>(column);
}

const std::string& TStringGrid::Cell(int column, int row) const { return cells_[At(column, row)]; }

void TStringGrid::SetCell(int column, int row, std::string text) {
  cells_[At(column, row)] = std::move(text);
}

TUserAnswer TStringGrid::EditCell(int column, int row, const std::string& text) {
  if (column < 0 || column >= columns_ || row < 1 || row >= rows_) return TUserAnswer::NoSuchItem;
  SetCell(column, row, text);
  return TUserAnswer::Done;
}

}  // namespace qx
