// What the *Windows.cpp files share: 8-bit texts and the system's wide ones, the system's errors as texts,
// the owner of a handle and writing to one. On Windows only.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace qx::system {

// UTF-8 (lone surrogates too); text that is not UTF-8 is taken in the system's code page.
std::wstring ToWide(std::string_view text);
std::string FromWide(std::wstring_view text);
// A path for the wide file calls: as ToWide, and absolute with the prefix for long paths where it needs one.
std::wstring WidePath(std::string_view path);
// The system's text for an error number, without line ends and the last point; LastError for the one of now.
std::string ErrorText(unsigned long error);
std::string LastError();

// An open handle, closed with its owner. Either sign by which the system says that there is none makes none.
class Handle {
 public:
  Handle() = default;
  explicit Handle(void* handle);
  Handle(Handle&& other) noexcept : handle_(other.Release()) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() { Close(); }

  // Null for none.
  void* Get() const { return handle_; }
  bool IsOpen() const { return handle_ != nullptr; }
  // Gives it up without closing it.
  void* Release() { return std::exchange(handle_, nullptr); }
  // False when the system refuses.
  bool Close();

 private:
  void* handle_ = nullptr;
};

// Calls of the system move at most 4 GB at once; 64 MB leaves no doubt. In bytes.
inline constexpr std::size_t kMostAtOnce = 1 << 26;

// Writes all of the bytes, in as many calls as that takes; false, and the system's last error, when it refuses.
bool WriteAll(const Handle& file, std::string_view bytes);

}  // namespace qx::system
