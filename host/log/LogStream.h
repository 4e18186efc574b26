// The log's sink into a stream: standard output or a log file, as text, as JSON or in a form of the caller's, through
// a buffer of 64 KiB.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "host/log/ActionLog.h"
#include "host/log/LogFormat.h"

namespace qx {

enum class LogStyle { Text, Json };
enum class ColourChoice { Automatic, Always, Never };

// A file or a stream of this process opened for writing. Its two systems are LogFilePosix.cpp and
// LogFileWindows.cpp. A pipe or terminal that takes nothing any more is waited for until a stop is asked for.
class LogFile {
 public:
  // How long a write may still wait for its reader once a stop is asked for (Stopping.h).
  static constexpr std::chrono::milliseconds kPatienceAfterStop{1000};

  // This process's own streams; they are not closed.
  static LogFile StandardOutput();
  static LogFile StandardError();
  // Creates the file or empties it. A named pipe is waited for until somebody reads it or a stop is asked for.
  // Raises Exception "Cannot write FILE: reason".
  static LogFile Create(const std::string& path);
  LogFile(LogFile&& other) noexcept;
  LogFile& operator=(LogFile&&) = delete;
  ~LogFile();

  // Writes all of it, or tells the reason why not; empty: written. What was not taken when the patience ended
  // is lost.
  std::string Write(std::string_view bytes);
  bool IsTerminal() const { return terminal_; }
  const std::string& Name() const { return name_; }

 private:
  // How the system lets this one be written without waiting for ever.
  enum class Way { Whole, Parts, Socket };
  LogFile(std::string name, std::intptr_t native, bool terminal, bool owned, Way way)
      : name_(std::move(name)), native_(native), terminal_(terminal), owned_(owned), way_(way) {}
  static LogFile Own(std::string name, int stream);

  std::string name_;
  std::intptr_t native_;
  bool terminal_;
  bool owned_;
  Way way_;
};

// Appends a record in a form of its own, with its line ends.
using AppendRecord = std::function<void(std::string& out, const LogRecord& record)>;

class StreamSink : public LogSink {
 public:
  // Colour: always, never, or when the stream is a terminal, NO_COLOR is unset or empty and TERM is not
  // "dumb". JSON is never coloured.
  StreamSink(LogFile file, LogStyle style, ColourChoice colour);
  StreamSink(LogFile file, AppendRecord append);

  // Asked for each line of a build's output where there is colour.
  void SetTones(ToneOfLine toneOf) { toneOf_ = std::move(toneOf); }

  void Take(const LogRecord& record) override;
  void Flush() override;
  bool IsBuffered() const override { return true; }
  // Why the first write that failed did, naming the stream; empty when none failed. What comes after it is dropped.
  const std::string& Error() const { return error_; }

 private:
  LogFile file_;
  LogStyle style_ = LogStyle::Text;
  LogColour colour_ = LogColour::Off;
  ColourSequences sequences_ = ColourSequences::Escaped;  // of the build's programs
  ToneOfLine toneOf_;
  AppendRecord append_;  // takes the place of both
  std::string buffer_;
  std::string error_;
};

}  // namespace qx
