#include "pages/ProjectCheckList.h"

#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/Texts.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

// Former ticks by name, in the manner of a list of NAME=1 and NAME=0 lines: such a list is searched for what
// stands before a line's first "=", letter case aside, and its first match holds. A name that holds a "=" is
// therefore never found again and counts as new; saved pages have always behaved so.
class FormerTicks {
 public:
  explicit FormerTicks(const TCheckListBox& list) {
    for (int i = 0; i < list.Count(); ++i) {
      const std::string_view name = list.Item(i);
      ticks_.emplace(FoldCase(name.substr(0, name.find('='))),
                     name.find('=') != std::string_view::npos || list.IsChecked(i));
    }
  }
  bool Of(const std::string& name) const {
    const auto found = ticks_.find(FoldCase(name));
    return found == ticks_.end() || found->second;
  }

 private:
  std::unordered_map<std::string, bool> ticks_;
};

}  // namespace

void ProjectCheckList::Rebuild(IVSDotNetSolution& solution) {
  const FormerTicks former(list_);
  list_.ClearItems();
  identifiers_.Clear();
  const InterfacePtr<IVSDotNetProjects> projects = solution.GetProjects();
  for (int i = 0; i < projects->GetCount(); ++i) {
    const InterfacePtr<IVSDotNetProject> project = projects->GetItem(i);
    const std::string name = project->GetName();
    list_.AddItem(name, former.Of(name));
    identifiers_.Add(project->GetGUID());
  }
}

void ProjectCheckList::TickOnly(const TStringList& identifiers) {
  std::unordered_map<std::string, int> firsts;
  for (int i = 0; i < identifiers_.Count(); ++i) firsts.emplace(FoldCase(identifiers_.Get(i)), i);
  list_.UncheckAll();
  for (const std::string& identifier : identifiers.Items()) {
    const auto found = firsts.find(FoldCase(identifier));
    if (found != firsts.end()) list_.SetChecked(found->second, true);
  }
}

TStringList ProjectCheckList::Ticked() const {
  TStringList ticked;
  for (int i = 0; i < list_.Count(); ++i)
    if (list_.IsChecked(i)) ticked.Add(identifiers_.Get(i));
  return ticked;
}

}  // namespace qx
