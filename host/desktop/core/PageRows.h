// How the controls of a page stand: sections that headings open, rows inside them, columns inside the rows.
// Taken from the models alone, so that the pages of every package come out alike. No pixel.
#pragma once

#include <string>
#include <vector>

#include "plugin/Qxcontrols.h"

namespace qx::desktop {

// A row stands in the columns of its section, or across all of them.
struct PageRow {
  enum class Kind {
    Single,   // one control, across all columns
    Fields,   // one control a column, with at least one that is typed into or picked from
    Columns,  // labels that name the columns of the rows below, or boxes that stand under others
    Flow,     // boxes or buttons one after the other
  };
  Kind kind = Kind::Single;
  std::vector<TControl*> controls;
  int firstColumn = 0;
  bool indented = false;  // belongs to the choice above it
};

struct PageSection {
  TLabel* heading = nullptr;  // null: what comes before the first heading
  std::vector<PageRow> rows;
  int columns = 1;
};

// What stands directly in a container.
std::vector<PageSection> SectionsOf(const TControl& container);

// What is typed into or picked from.
bool IsField(const TControl& control);
// A field that takes what width there is; others are as wide as what they hold.
bool IsStretchy(const TControl& control);
// Takes what height there is.
bool IsTall(const TControl& control);

// The order in which the user's Tab key visits what stands directly in a container, labels right before what
// they name.
std::vector<TControl*> InTabOrder(const TControl& container);

// What a user who sees the page would call the control: its label, its caption, or what stands at the head of
// its row, its column or its section. Without accelerator marks; empty only for a control that nothing names.
std::string SpokenName(const TControl& control);

}  // namespace qx::desktop
