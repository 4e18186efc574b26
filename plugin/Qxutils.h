// Small services of the host: text files into lines, paths, the temporary folder, this computer's name.
// Paths are Windows paths on every system: both delimiters are understood, and outside Windows a name that
// does not match exactly is looked up without regard to letter case, folder by folder.
#pragma once

#include <string>

#include "plugin/Qxstrings.h"
#include "plugin/Qxtypes.h"

namespace qx {

// Reads a text file into lines. A byte order mark (UTF-8, UTF-16 LE or BE) is honoured and is not part of the
// first line; UTF-16 becomes UTF-8; other files keep their bytes. Raises Exception naming the file and the reason.
QX_API void LoadUnicodeFile(const std::string& path, TStringList& lines);

// The absolute path of a path given relative to a folder, "." and ".." resolved, in the system's own delimiters
// and, where a file of that name exists, in the letter case it has on disk. Absolute paths pass through.
QX_API std::string ExpandRelativePath(const std::string& baseFolder, const std::string& relativePath);

// Show the host's file or folder picker; false when the user cancelled. User-interface thread.
QX_API bool QXBrowseForFile(const std::string& title, const std::string& filter, std::string& path);
QX_API bool QXBrowseForDirectory(const std::string& title, std::string& path);

// The folder for this run's temporary files, without a trailing delimiter: closed to other users, gone after the run.
QX_API std::string GetTemporaryPath();
// This computer's name, in the letter case the system gives it.
QX_API std::string MachineName();

}  // namespace qx
