// How a record of the log is written: as text for people, or as one JSON object a line. Text in, text out;
// the streams and the list in memory share it.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/log/ActionLog.h"
#include "platform/VisibleText.h"

namespace qx {

enum class LogColour { Off, On };

// Appends the record as text with its line ends (LF): a message as it is; a status's heading on a line of its
// own and its details under it, indented by four blanks when there is a heading; an exception's text;
// "SUBJECT: MESSAGE" of a validation error; "NAME: succeeded (1.2 s)" or "NAME: failed (1.2 s)" of a result;
// nothing of a beginning. Bytes stay as they stand.
void AppendAsText(std::string& out, const LogRecord& record, LogColour colour);

// Whether a terminal may get the record's texts as they are. Fast: of a build's lines nearly all are such.
bool IsVisible(const LogRecord& record);
// What a line of a build's output is to whoever looks at it.
enum class LineTone { Plain, Warning, Error };
using ToneOfLine = std::function<LineTone(std::string_view line)>;

// Paints the lines of a text, each ended by LF, from `begin` on: errors red, warnings yellow. A line that brings colours of
// its own keeps them.
void PaintLines(std::string& text, std::size_t begin, const ToneOfLine& toneOf);

// A record with everything in its texts visible (platform/VisibleText.h), as it may go to a terminal.
class VisibleRecord {
 public:
  // `record` outlives it.
  VisibleRecord(const LogRecord& record, ColourSequences colours);
  VisibleRecord(const VisibleRecord&) = delete;
  VisibleRecord& operator=(const VisibleRecord&) = delete;
  const LogRecord& Get() const { return record_; }

 private:
  std::string text_;
  std::string subject_;
  std::string details_;
  std::vector<std::size_t> ends_;
  LogRecord record_;
};

// Appends the record as a JSON object and LF. A byte that is not valid UTF-8 becomes U+FFFD; the rest stays.
void AppendAsJson(std::string& out, const LogRecord& record);

// The text as the inside of a JSON string.
void AppendJsonEscaped(std::string& out, std::string_view text);

}  // namespace qx
