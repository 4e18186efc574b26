// Every element and attribute of C# and Visual Basic project files that is known here, and what becomes of
// it. The readers check what they meet against it, and docs/engine-dotnet.md is made from it.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "projects/net/NetProject.h"

namespace qx {

struct NetFormEntry {
  NetForm form;
  const char* name;  // "Config@Optimize"; of MSBuild: a property, or "Item/Metadata", or an element
  bool isUsed;
  const char* what;  // what it becomes, or why it is passed over
};

std::span<const NetFormEntry> NetFormTable();
// Letter case aside. MSBuild lets a project have properties and items of its own: only its structure is
// looked up.
const NetFormEntry* FindNetFormEntry(NetForm form, std::string_view name);
// As the rows of a Markdown table, the older form first.
std::string NetFormTableText();

}  // namespace qx
