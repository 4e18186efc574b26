#include <dlfcn.h>

#include "host/system/SharedLibrary.h"

namespace qx {

// Everything is bound at once: a package that wants what the host does not have is refused here, not in the
// middle of a build.
SharedLibrary::SharedLibrary(const std::string& path) : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (handle_ != nullptr) return;
  const char* reason = dlerror();
  throw Exception(reason == nullptr ? "it cannot be loaded" : reason);
}

std::string_view SharedLibrary::Ending() { return ".so"; }

SharedLibrary::~SharedLibrary() { dlclose(handle_); }

SharedLibrary::Address SharedLibrary::FindAddress(const char* name) const {
  return reinterpret_cast<Address>(dlsym(handle_, name));
}

}  // namespace qx
