// The check list of a solution's projects that three pages show: names with ticks, and behind each name the
// project's identifier, which is what actions keep.
#pragma once

#include <optional>
#include <string>

#include "plugin/Qxcontrols.h"
#include "plugin/Qxstrings.h"

namespace qx {

class IVSDotNetProjects;
class IVSDotNetSolution;

// Works on a list that belongs to the page and outlives it. The list's enabled flag is never touched.
class ProjectCheckList {
 public:
  explicit ProjectCheckList(TCheckListBox& list) : list_(list) {}

  // Shows the solution's projects in its order. A project keeps its tick by its name, letter case aside; one
  // whose name was not listed before is ticked. Projects of one name take the first one's former tick.
  void Rebuild(IVSDotNetSolution& solution);
  // Ticks the projects with these identifiers, letter case aside, and no others; unknown ones are passed over.
  void TickOnly(const TStringList& identifiers);
  void TickAll() { list_.CheckAll(); }
  // To be called when somebody else has changed the list's items.
  void ItemsChanged() {
    shown_.clear();
    namesAreDistinct_.reset();
  }
  // The identifiers of the ticked projects in list order, as their solution writes them.
  TStringList Ticked() const;

 private:
  bool ShowsAll(IVSDotNetProjects& projects) const;
  bool NamesAreDistinct();

  TCheckListBox& list_;
  TStringList identifiers_;               // one an item, at the same index
  std::string shown_;                     // the names and identifiers as they were rebuilt last, in one piece
  std::optional<bool> namesAreDistinct_;  // of the list as it was rebuilt last; none: not looked at yet
};

}  // namespace qx
