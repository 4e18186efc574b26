// The names under which embedded resources stand in an assembly, as Visual Studio gave them.
#pragma once

#include <string>
#include <string_view>

#include "projects/net/NetProject.h"

namespace qx {

struct NetResourceName {
  std::string name;     // "Root.Folder.picture.bmp", "Root.Form1.resources", "Root.Form1.de.resources"
  std::string culture;  // "de-AT": belongs into a satellite assembly of that culture; empty: into the program
};

// `classOfSource` is the full name of the first class in the source that the resource depends on
// (NetSource.h); empty: there is none, and the file's own name counts.
NetResourceName NameOfResource(const NetProject& project, const NetFile& file,
                               std::string_view classOfSource);

// The culture that stands before a name's extension ("Form1.de-AT.resx": "de-AT"); empty: none.
std::string CultureOfName(std::string_view fileName);

}  // namespace qx
