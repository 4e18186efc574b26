// The reader of solution files: text to values. It is shallow on purpose: fixed cut lengths and exact,
// case-sensitive markers, as saved projects and build scripts have come to rely on (docs/deliberate.md).
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/Qxstrings.h"

namespace qx {

struct SolutionProject {
  std::string name;
  std::string path;      // as written
  std::string typeGuid;  // the 38 characters behind `Project("`
  std::string guid;
  TStringList dependencies;     // identifiers of projects
  TStringList resourceScripts;  // full paths
  std::string versionInfoFile;  // the first of them with a version resource, or empty
};

struct SolutionModel {
  std::optional<std::vector<std::string>> configurations;  // none: the file has no such section
  std::vector<SolutionProject> projects;
};

// What the reader asks of the file system.
class SolutionFiles {
 public:
  virtual ~SolutionFiles() = default;
  // Whether a file exists under an expanded path, which is then made the one that it has on disk.
  virtual bool FindFile(std::string& path) = 0;
  // Fills the buffer with a file's bytes; false, with the reason, when it cannot.
  virtual bool Read(const std::string& path, std::string& bytes, std::string& reason) = 0;
  // Hands a file's bytes over in parts until `take` answers true; false when the file cannot be read.
  virtual bool ReadParts(const std::string& path, const std::function<bool(std::string_view)>& take) = 0;
};

// Reads a solution from its text (DecodeText gives it); paths are taken from the folder of `fileName`. Raises
// as OpenSolution does, but for the reading of the file itself.
SolutionModel ReadSolution(const std::string& fileName, std::string_view text, SolutionFiles& files);

}  // namespace qx
