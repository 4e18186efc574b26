#include "host/process/LineSplitter.h"

#include <algorithm>
#include <cstring>

#include "host/system/SecretWords.h"
#include "platform/Texts.h"

namespace qx {
namespace {

// How many bytes of `text` make a piece of at most `limit` bytes that ends between two characters. Bytes that
// are no UTF-8 are divided anywhere. A longer line is not kept whole (docs/deliberate.md).
std::size_t CutBetweenCharacters(std::string_view text, std::size_t limit) {
  std::size_t size = limit;
  for (int back = 0; back < 3 && size > 1; ++back, --size) {
    if (BeginsCharacter(text[size])) return size;
  }
  return BeginsCharacter(text[size]) ? size : limit;
}

// Half a secret is not masked.
std::size_t PieceSize(std::string_view text, std::size_t limit) {
  const std::size_t size = CutBetweenCharacters(text, limit);
  const std::size_t cut = CutBetweenSecrets(text, size);
  return cut > 0 ? cut : size;
}

}  // namespace

LineSplitter::LineSplitter(std::size_t longestLine)
    : longestLine_(std::max<std::size_t>(longestLine, 4)), buffer_(kReadSize + kReadSize / 16) {}

std::span<char> LineSplitter::Space() {
  if (buffer_.size() - end_ < kReadSize && begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    scanned_ -= begin_;
    begin_ = 0;
  }
  // At most twice longestLine_ and a read: Commit leaves little more than longestLine_ behind.
  if (buffer_.size() - end_ < kReadSize) buffer_.resize(std::max(end_ + kReadSize, end_ * 2));
  return {buffer_.data() + end_, kReadSize};
}

void LineSplitter::Commit(std::size_t count, const LineSink& sink) {
  end_ += count;
  const char* const base = buffer_.data();
  while (const void* found = std::memchr(base + scanned_, '\n', end_ - scanned_)) {
    const auto lineEnd = static_cast<std::size_t>(static_cast<const char*>(found) - base);
    std::string_view line(base + begin_, lineEnd - begin_);
    if (line.ends_with('\r')) line.remove_suffix(1);
    begin_ = scanned_ = lineEnd + 1;
    Deliver(line, sink);
  }
  scanned_ = end_;
  if (end_ - begin_ > longestLine_ + 1) CutLine(sink);
  if (begin_ == end_) begin_ = scanned_ = end_ = 0;
}

void LineSplitter::CutLine(const LineSink& sink) {
  const char* const base = buffer_.data();
  // One byte more than the limit may still be the CR of a line end, and as many as a secret has may be of one.
  const std::size_t kept = longestLine_ + 1 + LongestSecret();
  while (end_ - begin_ > kept) {
    const std::string_view rest(base + begin_, end_ - begin_);
    const std::size_t size = PieceSize(rest, longestLine_);
    begin_ += size;
    sink(rest.substr(0, size));
  }
}

void LineSplitter::Finish(const LineSink& sink) {
  if (begin_ == end_) return;
  const std::string_view line(buffer_.data() + begin_, end_ - begin_);
  begin_ = scanned_ = end_ = 0;
  Deliver(line, sink);
}

void LineSplitter::Deliver(std::string_view line, const LineSink& sink) const {
  while (line.size() > longestLine_) {
    const std::size_t size = PieceSize(line, longestLine_);
    sink(line.substr(0, size));
    line.remove_prefix(size);
  }
  sink(line);
}

}  // namespace qx
