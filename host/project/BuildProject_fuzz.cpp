// Any bytes as a build project: refused, or read, changed, written and read again without a loss.
#include "host/project/BuildProject.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "plugin/Qxtypes.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// The property's value, or its refusal, as one text.
std::string Describe(const qx::BuildProject& project, int action, const char* name) {
  try {
    return project.ReadText(action, name).value_or("(none)");
  } catch (const qx::Exception&) {
    return "(refused)";
  }
}

// What people do to the actions leaves the others, and every edited text can be read again.
void Edit(const std::string& text) {
  qx::BuildProject project = qx::BuildProject::Parse(text, "fuzz");
  std::vector<std::string> kept;
  for (int i = 0; i < project.ActionCount(); ++i)
    kept.push_back(project.ActionType(i) + Describe(project, i, "Kept"));
  const auto check = [&] {
    const qx::BuildProject again = qx::BuildProject::Parse(project.Text(), "fuzz");
    Require(again.ActionCount() == static_cast<int>(kept.size()));
    for (int i = 0; i < again.ActionCount(); ++i)
      Require(again.ActionType(i) + Describe(again, i, "Kept") == kept[static_cast<std::size_t>(i)]);
  };
  const int middle = static_cast<int>(kept.size() / 2);
  project.InsertAction(middle, "New");
  kept.insert(kept.begin() + middle, "New(none)");
  check();
  project.DuplicateAction(0);
  kept.insert(kept.begin(), kept.front());
  check();
  const int last = project.ActionCount() - 1;
  project.MoveAction(0, last);
  kept.push_back(kept.front());
  kept.erase(kept.begin());
  check();
  project.MoveAction(last, middle);
  kept.insert(kept.begin() + middle, kept.back());
  kept.pop_back();
  check();
  project.RemoveAction(middle);
  kept.erase(kept.begin() + middle);
  check();
  const std::vector<std::pair<std::string, std::string>> variables{{"B", text.substr(0, 9)}, {"A", ""}};
  project.SetVariables(variables);
  check();
  Require(qx::BuildProject::Parse(project.Text(), "fuzz").Variables() == variables);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    qx::BuildProject project = qx::BuildProject::Parse(text, "fuzz");
    Require(project.Text() == text);
    static_cast<void>(project.Unknown([](const std::string&) { return std::nullopt; }));
    const int count = project.ActionCount();
    std::string kept;
    for (int i = 0; i < count; ++i) kept += Describe(project, i, "Kept") + '\n';

    const int added = project.AppendAction("Added");
    const std::string tail = text.substr(text.size() / 2);
    project.WriteText(added, "Text", tail, "");
    project.WriteList(added, "List", {tail, "", text.substr(0, 7)}, "Text");
    if (count > 0) project.WriteText(0, "Text", tail, "Kept");

    const qx::BuildProject again = qx::BuildProject::Parse(project.Text(), "fuzz");
    Require(again.ActionCount() == count + 1);
    Require(again.ReadText(added, "Text") == tail);
    Require(again.ReadList(added, "List") == std::vector<std::string>{tail, "", text.substr(0, 7)});
    if (count > 0) Require(again.ReadText(0, "Text") == tail);
    std::string after;
    for (int i = 0; i < count; ++i) after += Describe(again, i, "Kept") + '\n';
    Require(after == kept);
    Require(again.Variables() == project.Variables());
    Edit(text);
  } catch (const qx::Exception&) {
    // refused, by name and line
  }
  return 0;
}
