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
  bool has_wide_main = false;          // names wmain or wWinMain
  bool has_generic_main = false;       // names _tmain or _tWinMain
  bool has_old_literals = false;       // "10i64" and the like
};
ScannedText ScanSource(std::string_view text);

class IncludeScan {
 public:
  // Folders with their delimiters, in the order they are searched.
  IncludeScan(std::vector<std::string> folders, std::vector<std::string> system_folders);

  // Reads a source and all it includes. A file that cannot be read is left to the compiler to name.
  void Add(const std::string& source);
  // A header that is included before the first line of every source.
  void AddForced(const std::string& name, const std::string& folder);

  // The file that each name means which gcc would not find.
  const std::map<std::string, std::string>& Forwards() const { return forwards_; }
  // Names among them that mean different files to different includers.
  const std::set<std::string>& Ambiguous() const { return ambiguous_; }
  const std::vector<std::string>& Libraries() const { return libraries_; }
  bool HasOldLiterals() const { return has_old_literals_; }
  bool HasWideMain() const { return has_wide_main_; }
  bool HasGenericMain() const { return has_generic_main_; }

 private:
  void Follow(const std::string& path, std::vector<std::string>& includers);
  void Resolve(const ScannedText::Include& include, std::vector<std::string>& includers);
  bool IsExact(const std::string& path);
  // In one of the folders that every file searches.
  bool IsInFolders(const std::string& name);

  std::vector<std::string> folders_, system_folders_;
  std::map<std::string, std::string> forwards_;
  std::map<std::string, bool> exact_, in_folders_;
  std::set<std::string> read_, known_libraries_;
  std::set<std::string> resolved_;  // names that gcc would not find, with the folder of their includer
  std::set<std::string> ambiguous_;
  std::vector<std::string> libraries_;
  PathFinder finder_;
  bool has_wide_main_ = false, has_generic_main_ = false, has_old_literals_ = false;
};

// Writes the forwarding headers below `folder`, which holds nothing else, and removes those of earlier
// builds; the folder to search, empty when there is none to write.
std::string WriteForwards(const std::map<std::string, std::string>& forwards, const std::string& folder);

}  // namespace qx
