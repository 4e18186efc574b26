// The libraries a project names, found as files: in its library folders, among what it depends on, or in
// MinGW-w64's own folders, letter case aside.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/Project.h"
#include "engine/vc/Toolchain.h"
#include "platform/files/Paths.h"

namespace qx {

// The name of the file that is meant by a name in a project ("..\lib\x" is "x.lib").
std::string FileOfLibrary(const std::string& name);

class LibraryFinder {
 public:
  // `folders`: absolute, in the order they are searched.
  LibraryFinder(std::vector<std::string> folders, const std::vector<const BuiltProject*>& needs,
                const Toolchain& tools);

  enum class Found { File, Own, Unneeded, Missing };
  struct Library {
    Found found = Found::Missing;
    std::string argument;  // a path, or "-lNAME" for one of MinGW-w64's own
  };
  // Of a name in a project: "ws2_32.lib", "..\lib\x.lib", "foo.obj". Unneeded: a run-time library of the old
  // compiler, whose part gcc's own libraries play.
  Library Find(const std::string& name);

 private:
  std::vector<std::string> folders_;
  const std::vector<const BuiltProject*>& needs_;
  const Toolchain& tools_;
  PathFinder finder_;
};

}  // namespace qx
