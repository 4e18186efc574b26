// Finds the resource scripts that a Visual C++ project file lists.
#pragma once

#include <string>
#include <vector>

#include "platform/xml/XmlDocument.h"

namespace qx {

// The "RelativePath" of every ".rc" file (any letter case) that stands in a filter which is a direct child of
// the element "Files", as written, in document order, doublets kept. Empty for a root element other than
// "VisualStudioProject". `bytes` is the whole file; it is used up, its memory is the caller's to use again.
// Raises Exception with "Error parsing project file : " and the parser's reason.
std::vector<std::string> ListedResourceScripts(std::string& bytes, XmlDocument& document);

}  // namespace qx
