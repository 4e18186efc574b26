// The controls of property pages as plain models: name, caption, hint, tab order, enabled and value, no
// pixel. A page builds them, keeps all rules and reads their values; a view (desktop, page driver, test)
// shows them and hands on what the user does. Everything here happens on the user-interface thread.
//
// A frame owns its controls (TFrame::Add in Qxframe.h); what a page keeps are references:
//
//   TGroupBox& apply = Add<TGroupBox>("grpApply", "Apply to");
//   TCheckBox& stamp = Add<TCheckBox>(apply, "chkStamp", "Stamp &it");   // "&" marks the accelerator
//   stamp.tabOrder = 3;
//   stamp.SetChecked(true);                                              // initial states first,
//   stamp.OnClick = [this] { StampClick(); };                            // handlers last
//
// Who runs which handler, the way of the desktop toolkit that the pages' rules were written for:
//
//   | handler                 | runs when                                                                  |
//   | TCheckBox::OnClick      | the state changes, by the user or by SetChecked                            |
//   | TRadioButton::OnClick   | it becomes checked, by the user or by SetChecked; never when a sibling     |
//   |                         | takes the dot away. Its siblings are already unchecked when it runs        |
//   | TSpinEdit::OnChange     | the value changes, by the user or by SetValue                              |
//   | TComboBox::OnChange     | the user changes the text or picks another item; never by the program      |
//   | TCheckListBox::OnTick   | the user changes a tick; never by the program                              |
//   | TButton, TEditButton    | the user clicks                                                            |
//
// Setting a control to the state it has already runs nothing. Edits and grids have no events.
//
// What the user does comes through the User... operations alone. They answer Disabled, and do nothing, when
// the control or anything it stands in is disabled; the program may change a disabled control at any time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/Qxtypes.h"

namespace qx {

// How a control took what the user did.
enum class TUserAnswer {
  Done,        // done, or there was nothing to change
  Disabled,    // the control or one it stands in is disabled
  NotOffered,  // a control of this kind has nothing like it
  NoSuchItem,  // there is no item, button or cell at that index; a heading row cannot be edited
  NotTaken,    // the text is none the control accepts: no whole number, no item of a drop-down list
};

class QX_API TControl {
 public:
  TControl();
  virtual ~TControl();
  TControl(const TControl&) = delete;
  TControl& operator=(const TControl&) = delete;

  // Facts that views show; set them as the frame is built.
  std::string name;      // unique in its frame: "chkStamp"
  std::string caption;   // what stands on or beside it, with its accelerator mark and all its blanks
  std::string hint;      // shown while the pointer rests on it
  int tabOrder = -1;     // among its siblings; -1: no tab stop of its own
  bool sameRow = false;  // stands on the row of the control that was added before it, not under it

  // The control's own flag. Disabling a container leaves the flags of what is inside alone.
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled) { enabled_ = enabled; }
  // What the user meets: its own flag and those of everything it stands in.
  bool IsEnabled() const;

  // What it stands in; null for a frame's root only.
  TControl* Parent() const { return parent_; }
  // Direct children in the order they were added. The frame's.
  const std::vector<TControl*>& Children() const { return children_; }

  // "checkBox": one word a kind, which scripts of the page driver rely on.
  virtual std::string_view Kind() const = 0;
  // False for labels and headings, which have no window of their own: rules that enable "every windowed
  // control" pass them by.
  virtual bool IsWindowed() const { return true; }

  // What the user does; each kind offers some of them. Indexes count from 0.
  TUserAnswer UserClick();
  TUserAnswer UserType(const std::string& text);  // replaces the whole text
  TUserAnswer UserSelect(int index);              // picks an item of a list
  TUserAnswer UserTick(int index, bool checked);
  TUserAnswer UserEditCell(int column, int row, const std::string& text);
  TUserAnswer UserPressButton(int index);  // inside a button edit

 protected:
  // The same, asked only when enabled.
  virtual TUserAnswer Click();
  virtual TUserAnswer Type(const std::string& text);
  virtual TUserAnswer Select(int index);
  virtual TUserAnswer Tick(int index, bool checked);
  virtual TUserAnswer EditCell(int column, int row, const std::string& text);
  virtual TUserAnswer PressButton(int index);

 private:
  friend class TFrame;
  TControl* parent_ = nullptr;
  std::vector<TControl*> children_;
  bool enabled_ = true;
};

// A text that names something: its caption is the text, and changes when a rule says so.
class QX_API TLabel : public TControl {
 public:
  ~TLabel() override;
  std::string_view Kind() const override { return heading ? "heading" : "label"; }
  bool IsWindowed() const override { return false; }
  bool heading = false;          // bold, over a rule: opens the group of the controls that follow it
  TControl* labelled = nullptr;  // the control it stands before, which its accelerator leads to; null: none
};

// Containers. A panel shows nothing of its own, a group its caption as a heading.
class QX_API TPanel : public TControl {
 public:
  ~TPanel() override;
  std::string_view Kind() const override { return "panel"; }
};
class QX_API TGroupBox : public TControl {
 public:
  ~TGroupBox() override;
  std::string_view Kind() const override { return "group"; }
};

class QX_API TButton : public TControl {
 public:
  ~TButton() override;
  std::string_view Kind() const override { return "button"; }
  std::function<void()> OnClick;

 protected:
  TUserAnswer Click() override;
};

class QX_API TEdit : public TControl {
 public:
  ~TEdit() override;
  std::string_view Kind() const override { return "edit"; }
  bool masked = false;        // views show "*" for every character
  bool rightAligned = false;  //
  const std::string& Text() const { return text_; }
  void SetText(std::string text) { text_ = std::move(text); }

 protected:
  TUserAnswer Type(const std::string& text) override;

 private:
  std::string text_;
};

// A button inside an edit. Its handler reads and sets the edit's text itself.
struct TEditButton {
  enum class Picture { Folder, Refresh };
  Picture picture = Picture::Folder;
  std::string hint;
  std::function<void()> OnClick;
};

class QX_API TButtonEdit : public TEdit {
 public:
  ~TButtonEdit() override;
  std::string_view Kind() const override { return "buttonEdit"; }
  std::vector<TEditButton> buttons;  // from left to right; the folder button first

 protected:
  TUserAnswer PressButton(int index) override;
};

enum class TComboStyle { Editable, DropDownList };

// Without a selected item the index is -1. A drop-down list's text is its selected item.
class QX_API TComboBox : public TControl {
 public:
  ~TComboBox() override;
  std::string_view Kind() const override {
    return style == TComboStyle::Editable ? "comboBox" : "dropDownList";
  }
  TComboStyle style = TComboStyle::Editable;

  const std::vector<std::string>& Items() const { return items_; }
  int Count() const { return static_cast<int>(items_.size()); }
  // Adding never changes text or index.
  void AddItem(std::string text) { items_.push_back(std::move(text)); }
  // No item stays selected. What stands in an editable box stays; a drop-down list is empty then.
  void ClearItems();
  // Index of the first item that equals the text, letter case aside; -1 when there is none.
  int IndexOf(std::string_view text) const;

  int ItemIndex() const { return index_; }
  // Selects the item and shows its text; -1, or any index that is none, selects nothing and empties the text.
  void SetItemIndex(int index);
  const std::string& Text() const { return text_; }
  // Selects the item that equals the text, letter case aside, if there is one. An editable box then shows the
  // text as given, whether it is an item or not; a drop-down list that has no such item stays as it is.
  void SetText(const std::string& text);

  std::function<void()> OnChange;

 protected:
  TUserAnswer Type(const std::string& text) override;
  TUserAnswer Select(int index) override;

 private:
  std::vector<std::string> items_;
  std::string text_;
  int index_ = -1;
};

class QX_API TCheckBox : public TControl {
 public:
  ~TCheckBox() override;
  std::string_view Kind() const override { return "checkBox"; }
  bool captionOnLeft = false;
  bool Checked() const { return checked_; }
  void SetChecked(bool checked);
  std::function<void()> OnClick;

 protected:
  TUserAnswer Click() override;  // the other state

 private:
  bool checked_ = false;
};

// One of its siblings: the radio buttons with the same parent. Checking one unchecks the others.
class QX_API TRadioButton : public TControl {
 public:
  ~TRadioButton() override;
  std::string_view Kind() const override { return "radioButton"; }
  bool Checked() const { return checked_; }
  void SetChecked(bool checked);
  std::function<void()> OnClick;

 protected:
  TUserAnswer Click() override;  // checks it

 private:
  bool checked_ = false;
};

// Items with ticks; beside them stands which rows are selected, which no rule reads. An index that is none
// raises "List index out of bounds (INDEX)".
class QX_API TCheckListBox : public TControl {
 public:
  ~TCheckListBox() override;
  std::string_view Kind() const override { return "checkList"; }
  bool multiSelect = false;

  int Count() const { return static_cast<int>(items_.size()); }
  const std::string& Item(int index) const { return At(index).text; }
  bool IsChecked(int index) const { return At(index).checked; }
  bool IsSelected(int index) const { return At(index).selected; }
  void AddItem(std::string text, bool checked = false);
  void ClearItems() { items_.clear(); }
  void SetChecked(int index, bool checked);
  void CheckAll();
  void UncheckAll();

  // The item and its new state. The handler may rebuild the list.
  std::function<void(int index, bool checked)> OnTick;

 protected:
  TUserAnswer Tick(int index, bool checked) override;
  TUserAnswer Select(int index) override;  // selects that row alone

 private:
  struct Row {
    std::string text;
    bool checked = false;
    bool selected = false;
  };
  const Row& At(int index) const;
  std::vector<Row> items_;
};

// A whole number that is held within its range, whoever sets it.
class QX_API TSpinEdit : public TControl {
 public:
  ~TSpinEdit() override;
  std::string_view Kind() const override { return "spinEdit"; }
  std::int32_t Min() const { return min_; }
  std::int32_t Max() const { return max_; }
  // Brings the value into the new range, which may run OnChange.
  void SetRange(std::int32_t min, std::int32_t max);
  std::int32_t Value() const { return value_; }
  void SetValue(std::int32_t value);
  std::function<void()> OnChange;

 protected:
  TUserAnswer Type(const std::string& text) override;  // a number outside the range gives the nearer end

 private:
  std::int32_t min_ = 0;
  std::int32_t max_ = 100;
  std::int32_t value_ = 0;
};

// Cells of text; row 0 is the heading row, which the user cannot edit. A cell that is none raises "Grid index
// out of range".
class QX_API TStringGrid : public TControl {
 public:
  ~TStringGrid() override;
  std::string_view Kind() const override { return "grid"; }
  int ColCount() const { return columns_; }
  int RowCount() const { return rows_; }
  void SetSize(int columns, int rows);  // all cells are empty then
  const std::string& Cell(int column, int row) const;
  void SetCell(int column, int row, std::string text);

 protected:
  TUserAnswer EditCell(int column, int row, const std::string& text) override;

 private:
  std::size_t At(int column, int row) const;
  int columns_ = 0;
  int rows_ = 0;
  std::vector<std::string> cells_;
};

// Dialogs. Each waits until the user has answered; without a user interface nothing is shown and nothing is
// picked. File and folder pickers of the host: QXBrowseForFile and QXBrowseForDirectory in Qxutils.h.

// A message with an OK button.
QX_API void QXShowMessage(const std::string& text);
// An error with an OK button and no help.
QX_API void QXShowError(const std::string& text);

// A dialog that opens a file.
struct QX_API TOpenDialog {
  std::string title;
  std::string filter;  // pairs of name and patterns: "Solutions (*.sln)|*.sln|All files|*.*"
  // Added to a name that was typed without one; with or without its dot; empty: none.
  std::string defaultExtension;
  std::string fileName;  // what the dialog starts with, and what was picked
  // False when the user cancelled; fileName is as it was then.
  bool Execute();
};

}  // namespace qx
