#include <windows.h>

#include "host/system/SharedLibrary.h"
#include "platform/WindowsText.h"

namespace qx {

// With the altered search path the libraries that a package needs are found beside it; the path must be absolute.
SharedLibrary::SharedLibrary(const std::string& path) {
  handle_ = LoadLibraryExW(system::ToWide(path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (handle_ == nullptr) throw Exception(system::LastError());
}

std::string_view SharedLibrary::Ending() { return ".dll"; }

SharedLibrary::~SharedLibrary() { FreeLibrary(static_cast<HMODULE>(handle_)); }

SharedLibrary::Address SharedLibrary::FindAddress(const char* name) const {
  return reinterpret_cast<Address>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

}  // namespace qx
