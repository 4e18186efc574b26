// Reads the #include lines of sources and of the headers they name, and finds those that gcc would not: names
// with backslashes, in other letter case, or beside a file that includes the includer. Each becomes a
// forwarding header in a folder of the project's own; no source is changed.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/Paths.h"

namespace qx {

// What one file says to the preprocessor, as it is written. Comments are not recognised: a name too many does
// no harm.
struct ScannedText {
  struct Include {
    std::string name;
    bool quoted = false;
  };
  std::vector<Include> includes;
  std::vector<std::string> libraries;  // #pragma comment(lib, "...")
  bool hasWideMain = false;            // names wmain or wWinMain
  bool hasGenericMain = false;         // names _tmain or _tWinMain
  bool hasOldLiterals = false;         // "10i64" and the like
};
ScannedText ScanSource(std::string_view text);

class IncludeScan {
 public:
  // Folders with their delimiters, in the order they are searched.
  IncludeScan(std::vector<std::string> folders, std::vector<std::string> systemFolders);

  // Reads a source and all it includes. A file that cannot be read is left to the compiler to name.
  void Add(const std::string& source);
  // A header that is included before the first line of every source.
  void AddForced(const std::string& name, const std::string& folder);

  // The file that each name means which gcc would not find.
  const std::map<std::string, std::string>& Forwards() const { return forwards_; }
  // Names among them that mean different files to different includers.
  const std::set<std::string>& Ambiguous() const { return ambiguous_; }
  const std::vector<std::string>& Libraries() const { return libraries_; }
  bool HasOldLiterals() const { return hasOldLiterals_; }
  bool HasWideMain() const { return hasWideMain_; }
  bool HasGenericMain() const { return hasGenericMain_; }

 private:
  void Follow(const std::string& path, std::vector<std::string>& includers);
  void Resolve(const ScannedText::Include& include, std::vector<std::string>& includers);
  bool IsExact(const std::string& path);
  // In one of the folders that every file searches.
  bool IsInFolders(const std::string& name);

  std::vector<std::string> folders_, systemFolders_;
  std::map<std::string, std::string> forwards_;
  std::map<std::string, bool> exact_, inFolders_;
  std::set<std::string> read_, knownLibraries_;
  std::set<std::string> resolved_;  // names that gcc would not find, with the folder of their includer
  std::set<std::string> ambiguous_;
  std::vector<std::string> libraries_;
  PathFinder finder_;
  bool hasWideMain_ = false, hasGenericMain_ = false, hasOldLiterals_ = false;
};

// Writes the forwarding headers below `folder`, which holds nothing else, and removes those of earlier
// builds; the folder to search, empty when there is none to write.
std::string WriteForwards(const std::map<std::string, std::string>& forwards, const std::string& folder);

}  // namespace qx
