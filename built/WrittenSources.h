// The versions that a project's sources give its program, and the files they stand in: those that are stamped.
#pragma once

#include <string>

#include "projects/OutputPlaces.h"

namespace qx {

// A version and the file that it stands in.
struct WrittenVersion {
  std::string text;  // "1.2.*"; empty: the file does not say it, or not as a plain number
  std::string file;  // absolute; empty: there is none
};

struct WrittenSources {
  WrittenVersion assembly;        // of the AssemblyInfo file
  WrittenVersion fileOfAssembly;  // the same file's AssemblyFileVersion
  WrittenVersion fileOfScript;    // FILEVERSION of a resource script
};

// `script` is the project's resource script with a version block; empty: it has none. Files that cannot be
// read say nothing.
WrittenSources ReadWrittenSources(const OutputPlace& project, const std::string& script);

}  // namespace qx
