// The log of a build: every message, status entry, exception, validation error and result of its actions, in
// the order they came, into any number of sinks (text or JSON into a stream, a list in memory). It serialises
// its callers and takes the secrets of the run out of every text on the way.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/system/LockedText.h"
#include "plugin/Qxaction.h"

namespace qx {

enum class LogKind { Begin, Message, Status, Exception, Result, Validation, Summary };

// Detail lines that lie one behind the other in one text; `ends` holds where each one ends.
class LogDetails {
 public:
  LogDetails() = default;
  LogDetails(std::string_view joined, std::span<const std::size_t> ends) : joined_(joined), ends_(ends) {}
  std::size_t size() const { return ends_.size(); }
  std::string_view operator[](std::size_t index) const {
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    return joined_.substr(begin, ends_[index] - begin);
  }

 private:
  std::string_view joined_;
  std::span<const std::size_t> ends_;
};

// One entry as the sinks see it. Texts are views, valid during the call.
struct LogRecord {
  LogKind kind = LogKind::Message;
  int action = 0;         // 1-based place of the action in its build project; 0: none
  std::string_view text;  // of a message or exception; the heading of a status; the message of a validation
                          // error; the lines of a summary
  std::string_view subject;  // of a validation error; the action's name of a result or a beginning; a
                             // summary's JSON object
  LogDetails details;        // of a status
  bool success = false;      // of a result
  double seconds = 0;        // of a result
  int actions = 0;           // how many there are in all, of a beginning
};

// Where records go. The log calls one sink at a time, never two threads at once.
class LogSink {
 public:
  virtual ~LogSink() = default;
  virtual void Take(const LogRecord& record) = 0;
  // Hands on what is still held back.
  virtual void Flush() {}
  // True for a sink that holds records back, and so needs to be flushed now and then.
  virtual bool IsBuffered() const { return false; }
};

// What a sink in memory keeps of a record.
struct LogEntry {
  LogKind kind = LogKind::Message;
  int action = 0;
  std::string text;
  std::string subject;
  std::vector<std::string> details;
  bool success = false;
  double seconds = 0;

  // The record as the text log shows it, its lines joined by LF, without colour and without the last line end.
  std::string AsText() const;
};

// Keeps records in memory, for tests and for whoever shows a log himself.
class MemorySink : public LogSink {
 public:
  void Take(const LogRecord& record) override;
  // Read it when no thread is writing to the log.
  const std::vector<LogEntry>& Entries() const { return entries_; }
  // The entries as the text log shows them, one element an entry.
  std::vector<std::string> Lines() const;

 private:
  std::vector<LogEntry> entries_;
};

// Every operation may be called from any thread.
class ActionLog {
 public:
  ActionLog();
  // Flushes.
  ~ActionLog();
  ActionLog(const ActionLog&) = delete;
  ActionLog& operator=(const ActionLog&) = delete;

  // Before the first record. The log owns the sink and gives it back as a reference.
  LogSink& AddSink(std::unique_ptr<LogSink> sink);
  // A text that no sink may see: every place where it stands becomes "***", each line of a text of several
  // lines and its form in base64 too. The empty text is no secret. It holds from now on.
  void AddSecret(std::string_view secret);

  void AddMessage(int action, std::string_view text);
  void AddException(int action, std::string_view text);
  void AddValidation(int action, std::string_view subject, std::string_view message);
  // The first record of an action. Neither the text nor the JSON form shows it.
  void AddBegin(int action, std::string_view name, int actions);
  // The last record of an action; flushes.
  void AddResult(int action, std::string_view name, bool success, double seconds);
  // The end of a run, in both forms: lines for people, and one JSON object; each with its line ends.
  void AddSummary(std::string_view lines, std::string_view json);
  // A message that this runtime made (Qxaction.h); raises Exception for one of another host.
  void AddStatus(int action, const IQXActionLogMessage& message);
  void Add(const LogRecord& record);
  void Flush();

 private:
  struct Flusher;
  void AddMasked(const LogRecord& record);
  void WakeFlusher();
  void FlushNowAndThen();

  std::mutex mutex_;
  std::vector<std::unique_ptr<LogSink>> sinks_;
  std::vector<LockedText> secrets_;
  bool buffered_ = false;  // one of the sinks is
  std::unique_ptr<Flusher> flusher_;
};

// A new, empty message. Cheap: a released message is used again.
InterfacePtr<IQXActionLogMessage> CreateLogMessage();

}  // namespace qx
