// What every page does as it builds its controls, in words short enough that a page's declaration reads as
// the page does: from top to bottom. Base is TFrame or a class derived from it.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include "plugin/Qxframe.h"

namespace qx {

template <class Base>
class Page : public Base {
 protected:
  // Opens a group of controls; they stay siblings of all others, so that tab order runs through the page.
  TLabel& Heading(TControl& parent, std::string name, std::string caption) {
    TLabel& label = this->template Add<TLabel>(parent, std::move(name), std::move(caption));
    label.heading = true;
    return label;
  }
  TLabel& Heading(std::string name, std::string caption) {
    return Heading(this->Root(), std::move(name), std::move(caption));
  }
  // A control of its own row.
  template <class Control>
  Control& Stop(TControl& parent, int tabOrder, std::string name, std::string caption = {}) {
    Control& control = this->template Add<Control>(parent, std::move(name), std::move(caption));
    control.tabOrder = tabOrder;
    return control;
  }
  template <class Control>
  Control& Stop(int tabOrder, std::string name, std::string caption = {}) {
    return Stop<Control>(this->Root(), tabOrder, std::move(name), std::move(caption));
  }
  // A control on the row of the one before it, which names it when it is a label.
  template <class Control>
  Control& Beside(TControl& before, int tabOrder, std::string name, std::string caption = {}) {
    Control& control = Stop<Control>(*before.Parent(), tabOrder, std::move(name), std::move(caption));
    control.sameRow = true;
    if (auto* label = dynamic_cast<TLabel*>(&before)) label->labelled = &control;
    return control;
  }
};

// Makes a combo box a drop-down list of these items with the first one selected.
inline void MakeDropDown(TComboBox& box, std::initializer_list<const char*> items) {
  box.style = TComboStyle::DropDownList;
  for (const char* item : items) box.AddItem(item);
  box.SetItemIndex(0);
}

}  // namespace qx
