// What kind of project a line of a solution speaks of, by its path and its type identifier.
#pragma once

#include <string_view>

namespace qx {

enum class ProjectKind { VisualCpp, CSharp, VisualBasic, JSharp, Setup, Web, Folder, Other };

// `path` as the solution writes it: a web project's is a URL, a solution folder's just a name.
ProjectKind KindOfProject(std::string_view path, std::string_view typeGuid);

// "C#", "Visual Basic" ...: for reading.
std::string_view NameOfKind(ProjectKind kind);
// "vc", "cs", "vb", "jsharp", "setup", "web", "folder", "other": for settings.
std::string_view KeyOfKind(ProjectKind kind);

}  // namespace qx
