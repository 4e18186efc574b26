#include <windows.h>

#include "host/runtime/SharedLibrary.h"
#include "platform/Texts.h"

namespace qx {
namespace {

std::string Reason(DWORD error) {
  wchar_t* text = nullptr;
  const DWORD size = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
      error, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  if (size == 0) return "error " + std::to_string(error);
  std::string reason = Trim(ToUtf8(std::u16string_view(reinterpret_cast<char16_t*>(text), size)));
  LocalFree(text);
  return reason;
}

}  // namespace

// With the altered search path the libraries that a package needs are found beside it; the path must be
// absolute.
SharedLibrary::SharedLibrary(const std::string& path) {
  const std::u16string wide = ToUtf16(path);
  handle_ =
      LoadLibraryExW(reinterpret_cast<const wchar_t*>(wide.c_str()), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (handle_ == nullptr) throw Exception(Reason(GetLastError()));
}

std::string_view SharedLibrary::Ending() { return ".dll"; }

SharedLibrary::~SharedLibrary() { FreeLibrary(static_cast<HMODULE>(handle_)); }

SharedLibrary::Address SharedLibrary::FindAddress(const char* name) const {
  return reinterpret_cast<Address>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

}  // namespace qx
