// What a finished build of one project rested on: every file with its time and size, every environment variable
// it asked for. While nothing of it has changed, there is nothing to do, and not even Ninja need be asked.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace qx {

struct FileStamp {
  std::int64_t time = 0;  // nanoseconds since 1970
  std::int64_t size = -1;
  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};
// Size -1: there is no such file.
FileStamp StampOf(const std::string& path);
// The time that a file made now is given, read off one that is made (and made anew where it stands). The system's
// clock would not do: the times that the kernel gives to files may run milliseconds ahead of it.
std::int64_t TimeOfFileMadeNow(const std::string& path);

struct BuildRecord {
  std::string key;  // whatever else must be the same: configuration, tools, options of the engine
  std::map<std::string, std::optional<std::string>> environment;
  std::map<std::string, FileStamp> files;  // read or made
  std::string output, importLibrary;
  std::vector<std::string> libraries;

  void Add(const std::string& path) { files.insert_or_assign(path, StampOf(path)); }
  // Every file is as it was, and so is the environment.
  bool IsCurrent() const;

  // Raises as ReplaceFile does. None: there is no such record, or it cannot be understood.
  void Save(const std::string& path) const;
  static std::optional<BuildRecord> Load(const std::string& path);
};

// The files that a compiler's dependency file (.d) names behind its colon.
std::vector<std::string> DependenciesIn(std::string_view text);

}  // namespace qx
