// Any bytes as a build project: refused, or read, changed, written and read again without a loss.
#include "host/runtime/BuildProject.h"

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
  } catch (const qx::Exception&) {
    // refused, by name and line
  }
  return 0;
}
