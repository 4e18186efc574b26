// Lines out of a stream of bytes that arrives in pieces: reads go straight into the splitter's own buffer and
// lines are handed out as views into it, so that a line is copied only when it is broken over two reads.
// Memory is bounded whatever the stream holds.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace qx {

// Takes one line without its line end. The view is valid during the call only.
using LineSink = std::function<void(std::string_view line)>;

class LineSplitter {
 public:
  // The most bytes of one line that are kept in memory. A longer line is delivered in pieces of at most this
  // size, as if it were several lines: no byte is lost, no UTF-8 sequence and no secret is divided, and where the pieces
  // end does not depend on how the stream was read. Build tools write lines of some kilobytes (a link
  // command), one mebibyte is far above.
  static constexpr std::size_t kLongestLine = std::size_t{1} << 20;
  // The size of one read: what a pipe holds.
  static constexpr std::size_t kReadSize = std::size_t{64} << 10;

  explicit LineSplitter(std::size_t longestLine = kLongestLine);

  // Where the next bytes go; at least kReadSize of room. Valid until the next call of a member.
  std::span<char> Space();
  // Says that `count` bytes were put there, and hands every complete line to `sink`. A line ends with LF or
  // CR LF; a CR anywhere else belongs to the line. What `sink` throws goes to the caller; the splitter is of
  // no use after that.
  void Commit(std::size_t count, const LineSink& sink);
  // The stream has ended: hands out a last line that has no line end.
  void Finish(const LineSink& sink);

 private:
  void CutLine(const LineSink& sink);
  void Deliver(std::string_view line, const LineSink& sink) const;

  std::size_t longestLine_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;    // the first byte that was not handed out
  std::size_t scanned_ = 0;  // up to here there is no line end
  std::size_t end_ = 0;
};

}  // namespace qx
