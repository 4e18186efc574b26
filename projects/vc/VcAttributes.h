// Every attribute of Visual C++ projects that has been seen, and what is made of it outside Windows. The
// table of docs/vcproj.md is written from this one.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace qx {

enum class VcUse {
  Followed,  // the build does what it says
  Partly,    // some of its values, or in another way; the remark says which
  Ignored,   // it changes nothing; the remark says why
  Refused,   // a project that needs it is not built, and is told so
};

struct VcAttribute {
  std::string_view element;    // a tool ("VCLinkerTool"), or an element ("Configuration")
  std::string_view attribute;  // empty: every attribute that has no row of its own
  VcUse use;
  std::string_view remark;
};

std::span<const VcAttribute> VcAttributes();

// Null: it has not been seen.
const VcAttribute* FindVcAttribute(std::string_view element, std::string_view attribute);

// The table as Markdown.
std::string VcAttributesAsMarkdown();

}  // namespace qx
