#include "programs/ByteSource.h"

#include <algorithm>

#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// What is read at once: a small file whole; of others first the headers, then records of which those wanted
// together mostly stand within so much. A question to the system costs more than some bytes too many.
constexpr std::size_t kSmallFile = 16384, kFirstWindow = 4096, kWindow = 1536;

}  // namespace

std::string_view ByteSource::Part(std::uint64_t offset, std::size_t size, const char* what) {
  const std::string_view part = UpTo(offset, size);
  if (part.size() < size) throw Exception(std::string("it is cut off: ") + what + " lies behind its end");
  return part;
}

std::string_view FileBytes::UpTo(std::uint64_t offset, std::size_t size) {
  if (offset >= file_.Size()) return {};
  size = static_cast<std::size_t>(std::min<std::uint64_t>(size, file_.Size() - offset));
  for (const Window& window : windows_) {
    const bool holds = offset >= window.offset && offset - window.offset + size <= window.bytes.size();
    if (holds) return std::string_view(window.bytes).substr(offset - window.offset, size);
  }
  const std::uint64_t left = file_.Size() - offset;
  const std::size_t first = file_.Size() <= kSmallFile ? kSmallFile : kFirstWindow;
  const std::size_t wanted = std::max(size, windows_.empty() ? first : kWindow);
  Window& window = windows_.emplace_back();
  window.offset = offset;
  window.bytes.resize(static_cast<std::size_t>(std::min<std::uint64_t>(wanted, left)));
  window.bytes.resize(file_.Read(offset, window.bytes));
  return std::string_view(window.bytes).substr(0, size);
}

void Fields::RaiseTooShort() { throw Exception("it is damaged: a record ends too early"); }

}  // namespace qx
