#include "pages/ProjectCheckList.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/Texts.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

// Ends a name or identifier; neither holds it, for they stand on one line of their solution.
constexpr char kEnd = '\n';

// Former ticks by name, in the manner of a list of NAME=1 and NAME=0 lines: such a list is searched for what
// stands before a line's first "=", letter case aside, and its first match holds. A name that holds a "=" is
// therefore never found again and counts as new; users know the list so (docs/deliberate.md).
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
    if (ticks_.empty()) return true;
    const auto found = ticks_.find(FoldCase(name));
    return found == ticks_.end() || found->second;
  }

 private:
  std::unordered_map<std::string, bool> ticks_;
};

}  // namespace

// A solution that was read anew mostly has the same projects, and then nothing changes: that is seen without
// looking up a thousand names.
void ProjectCheckList::Rebuild(IVSDotNetSolution& solution) {
  const InterfacePtr<IVSDotNetProjects> projects = solution.GetProjects();
  if (ShowsAll(*projects) && NamesAreDistinct()) return;

  const FormerTicks former(list_);
  const int count = projects->GetCount();
  list_.ClearItems();
  identifiers_.Clear();
  ItemsChanged();
  for (int i = 0; i < count; ++i) {
    const InterfacePtr<IVSDotNetProject> project = projects->GetItem(i);
    const std::string name = project->GetName();
    std::string identifier = project->GetGUID();
    shown_ += name + kEnd + identifier + kEnd;
    list_.AddItem(name, former.Of(name));
    identifiers_.Add(std::move(identifier));
  }
}

// Whether the list has exactly these projects in this order. Compares with one text, not with a thousand that
// lie all over the memory.
bool ProjectCheckList::ShowsAll(IVSDotNetProjects& projects) const {
  const int count = projects.GetCount();
  if (count != list_.Count() || count != identifiers_.Count()) return false;
  std::string_view rest = shown_;
  const auto follows = [&rest](const std::string& text) {
    if (!rest.starts_with(text) || rest.size() == text.size() || rest[text.size()] != kEnd) return false;
    rest.remove_prefix(text.size() + 1);
    return true;
  };
  for (int i = 0; i < count; ++i) {
    const InterfacePtr<IVSDotNetProject> project = projects.GetItem(i);
    if (!follows(project->GetName()) || !follows(project->GetGUID())) return false;
  }
  return rest.empty();
}

// Two names may be taken for one by chance; they are then looked up.
bool ProjectCheckList::NamesAreDistinct() {
  if (namesAreDistinct_) return *namesAreDistinct_;
  std::vector<std::size_t> hashes;
  bool holdsEquals = false;
  for (int i = 0; i < list_.Count(); ++i) {
    holdsEquals = holdsEquals || list_.Item(i).find('=') != std::string::npos;
    hashes.push_back(std::hash<std::string>()(FoldCase(list_.Item(i))));
  }
  std::sort(hashes.begin(), hashes.end());
  const bool isRepeated = std::adjacent_find(hashes.begin(), hashes.end()) != hashes.end();
  namesAreDistinct_ = !holdsEquals && !isRepeated;
  return *namesAreDistinct_;
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
