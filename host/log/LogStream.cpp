// The sink into a stream: formats into a buffer and writes it when it is full or when the log says so.
#include "host/log/LogStream.h"

#include <utility>

#include "platform/Environment.h"
#include "platform/Texts.h"

namespace qx {
namespace {

// As much as a pipe takes at once.
constexpr std::size_t kBufferSize = std::size_t{64} << 10;

LogColour ChooseColour(ColourChoice choice, bool terminal) {
  if (choice == ColourChoice::Always) return LogColour::On;
  if (choice == ColourChoice::Never || !terminal) return LogColour::Off;
  const bool refused = !ReadEnvironment("NO_COLOR").value_or("").empty();
  return refused || ReadEnvironment("TERM") == "dumb" ? LogColour::Off : LogColour::On;
}

}  // namespace

LogFile::LogFile(LogFile&& other) noexcept
    : name_(std::move(other.name_)),
      native_(other.native_),
      terminal_(other.terminal_),
      owned_(std::exchange(other.owned_, false)),
      way_(other.way_) {}

StreamSink::StreamSink(LogFile file, LogStyle style, ColourChoice colour)
    : file_(std::move(file)),
      style_(style),
      colour_(ChooseColour(colour, file_.IsTerminal())),
      sequences_(colour == ColourChoice::Always ? ColourSequences::Kept : ColourSequences::Escaped) {
  buffer_.reserve(kBufferSize + kBufferSize / 4);
}

StreamSink::StreamSink(LogFile file, AppendRecord append)
    : file_(std::move(file)), append_(std::move(append)) {}

void StreamSink::Take(const LogRecord& record) {
  const std::size_t begin = buffer_.size();
  if (append_) {
    append_(buffer_, record);
  } else if (style_ == LogStyle::Json) {
    AppendAsJson(buffer_, record);
  } else {
    if (IsVisible(record)) {
      AppendAsText(buffer_, record, colour_);
    } else {
      AppendAsText(buffer_, VisibleRecord(record, sequences_).Get(), colour_);
    }
    const bool isOutput = record.kind == LogKind::Message || record.kind == LogKind::Status;
    if (isOutput && toneOf_ && colour_ == LogColour::On) PaintLines(buffer_, begin, toneOf_);
    // A file keeps the bytes as they came; a terminal would be garbled by them.
    if (file_.IsTerminal() && !IsValidUtf8(std::string_view(buffer_).substr(begin))) {
      buffer_.replace(begin, std::string::npos, AsValidUtf8(std::string_view(buffer_).substr(begin)));
    }
  }
  if (buffer_.size() >= kBufferSize) Flush();
}

void StreamSink::Flush() {
  if (buffer_.empty()) return;
  if (error_.empty()) {
    const std::string reason = file_.Write(buffer_);
    if (!reason.empty()) error_ = "Cannot write " + file_.Name() + ": " + reason;
  }
  buffer_.clear();
  if (buffer_.capacity() > 4 * kBufferSize) {
    buffer_ = std::string();
    buffer_.reserve(kBufferSize + kBufferSize / 4);
  }
}

}  // namespace qx
