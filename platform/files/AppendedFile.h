// A new file that grows at its end and is on the disk whenever its owner says so: for journals, which are read
// after a process was killed. One source a system.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace qx {

class AppendedFile {
 public:
  // Makes the file, for its owner's eyes only; its folder is there. Raises "Cannot write FILE: REASON", when a
  // file of that name is there too.
  explicit AppendedFile(const std::string& path);
  ~AppendedFile();
  AppendedFile(const AppendedFile&) = delete;
  AppendedFile& operator=(const AppendedFile&) = delete;

  // Raise "Cannot write FILE: REASON".
  void Append(std::string_view bytes);
  void Flush();  // what was appended is on the disk

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qx
