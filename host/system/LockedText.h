// A secret in memory: locked so that it is not swapped, left out of dumps, and wiped when it goes. One source a system.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace qx {

class LockedText {
 public:
  LockedText() = default;
  LockedText(std::string_view text);
  LockedText(const std::string& text) : LockedText(std::string_view(text)) {}
  LockedText(const char* text) : LockedText(std::string_view(text)) {}
  LockedText(const LockedText& other) : LockedText(other.View()) {}
  LockedText(LockedText&& other) noexcept
      : bytes_(std::exchange(other.bytes_, nullptr)), size_(std::exchange(other.size_, 0)) {}
  LockedText& operator=(LockedText other) noexcept {
    std::swap(bytes_, other.bytes_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~LockedText();

  std::string_view View() const { return {Text(), size_}; }
  // With a zero at its end.
  const char* Text() const { return bytes_ == nullptr ? "" : bytes_; }
  bool IsEmpty() const { return size_ == 0; }

 private:
  char* bytes_ = nullptr;
  std::size_t size_ = 0;
};

// Overwrites the text, and makes it empty.
void Wipe(std::string& text);

// From now on the system writes no dump of this process: for copies that libraries make. Programs that it starts have
// theirs. Called when a secret is about to be decrypted; any thread.
void KeepOutOfDumps();

}  // namespace qx
