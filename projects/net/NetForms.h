// The two forms of project files, one reader each; for the Net*.cpp files alone (NetProject.h is the door).
#pragma once

#include <string>
#include <string_view>

#include "platform/xml/XmlDocument.h"
#include "projects/net/NetProject.h"

namespace qx {

// Both fill a project whose `file` and `language` are set already. `root` is the document element. Raise
// Exception with the bare reason.
void ReadAttributesForm(const XmlElement& root, const NetSelection& selection, NetProject& project);
void ReadMsBuildForm(const XmlElement& root, const NetSelection& selection, const ReadNetFile& read,
                     NetProject& project);

// Notes an element or attribute that the table does not know.
void NoteIfUnfamiliar(NetProject& project, const std::string& name);

inline constexpr std::string_view kTrue = "true";

}  // namespace qx
