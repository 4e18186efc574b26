#include <sodium.h>
#include <sys/prctl.h>

#include <cstring>
#include <new>

#include "host/system/LockedText.h"

namespace qx {

LockedText::LockedText(std::string_view text) : size_(text.size()) {
  if (text.empty()) return;
  if (sodium_init() < 0) throw std::bad_alloc();
  bytes_ = static_cast<char*>(sodium_malloc(text.size() + 1));
  if (bytes_ == nullptr) throw std::bad_alloc();
  std::memcpy(bytes_, text.data(), text.size());
  bytes_[text.size()] = '\0';
}

LockedText::~LockedText() { sodium_free(bytes_); }

void Wipe(std::string& text) {
  // What lies behind the end was text once.
  text.resize(text.capacity());
  sodium_memzero(text.data(), text.size());
  text.clear();
}

void KeepOutOfDumps() { prctl(PR_SET_DUMPABLE, 0); }

}  // namespace qx
