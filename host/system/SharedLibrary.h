// A library loaded at run time. One source a system: SharedLibraryPosix.cpp, SharedLibraryWindows.cpp.
#pragma once

#include <string>
#include <string_view>

#include "plugin/Qxtypes.h"

namespace qx {

class SharedLibrary {
 public:
  // Loads the file; libraries that it needs are looked for beside it too. Raises Exception with the system's reason.
  explicit SharedLibrary(const std::string& path);
  ~SharedLibrary();
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;

  // What the file names of such libraries end in on this system: ".so", ".dll".
  static std::string_view Ending();

  // The address of an exported function; null when there is none of that name.
  template <class Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(FindAddress(name));
  }

 private:
  using Address = void (*)();
  Address FindAddress(const char* name) const;
  void* handle_;
};

}  // namespace qx
