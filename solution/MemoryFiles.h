// A file system of a few texts for tests, benches and fuzzers of the solution reader.
#pragma once

#include <map>
#include <string>

#include "platform/System.h"
#include "platform/files/Paths.h"
#include "solution/SolutionFile.h"

namespace qx {

class MemoryFiles final : public SolutionFiles {
 public:
  // A name relative to the folder of kSolution, with either delimiter.
  void Put(const std::string& name, std::string bytes) { files_[Full(name)] = std::move(bytes); }

  bool FindFile(std::string& path) override {
    ++looks;
    return files_.contains(path);
  }
  bool Read(const std::string& path, std::string& bytes, std::string& reason) override {
    ++reads[path];
    const auto found = files_.find(path);
    reason = "no such file";
    if (found == files_.end() || found->second == kUnreadable) return false;
    bytes = found->second;
    return true;
  }
  bool ReadParts(const std::string& path, const std::function<bool(std::string_view)>& take) override {
    std::string bytes, reason;
    if (!Read(path, bytes, reason)) return false;
    for (std::size_t at = 0; at < bytes.size() && !take(std::string_view(bytes).substr(at, 7)); at += 7) {
    }
    return true;
  }

  // The full path that a name has in the model.
  static std::string Full(const std::string& name) { return ExpandPath(FolderPart(Solution()), name); }
  static std::string Solution() { return kIsWindows ? "C:\\code\\here\\App.sln" : "/code/here/App.sln"; }

  // The bytes of a file that exists and cannot be read.
  static constexpr const char* kUnreadable = "(unreadable)";

  int looks = 0;
  std::map<std::string, int> reads;

 private:
  std::map<std::string, std::string> files_;
};

}  // namespace qx
