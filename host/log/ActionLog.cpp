// The log: one lock around the sinks, and a thread that flushes what waits.
#include "host/log/ActionLog.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <thread>
#include <typeinfo>
#include <utility>

#include "host/system/SecretWords.h"
#include "platform/Texts.h"

namespace qx {
namespace {

// How long a line may wait in a buffer before it is shown.
constexpr std::chrono::milliseconds kFlushInterval{50};

// A message's details lie one behind the other in one text, so that a line costs no allocation of its own
// once the message has been used before. One released message is kept for the next call: output is forwarded
// line by line, each with a message of its own.
class LogMessage final : public IQXActionLogMessage {
 public:
  static InterfacePtr<IQXActionLogMessage> Make() {
    LogMessage* message = spare_.exchange(nullptr, std::memory_order_acquire);
    if (message == nullptr) message = new LogMessage;
    message->references_.store(1, std::memory_order_relaxed);
    return InterfacePtr<IQXActionLogMessage>::Adopt(message);
  }

  bool QueryInterface(const TGUID& iid, void** out) override {
    *out = nullptr;
    if (iid == IInterface::IID) *out = static_cast<IInterface*>(this);
    if (iid == IQXActionLogMessage::IID) *out = static_cast<IQXActionLogMessage*>(this);
    if (*out == nullptr) return false;
    _AddRef();
    return true;
  }
  std::int32_t _AddRef() override { return references_.fetch_add(1, std::memory_order_relaxed) + 1; }
  std::int32_t _Release() override {
    const std::int32_t left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) Recycle();
    return left;
  }

  void AppendDetail(std::string_view text) override {
    details_ += text;
    ends_.push_back(details_.size());
  }
  void SetHeading(std::string_view text) override { heading_ = text; }

  std::string_view Heading() const { return heading_; }
  LogDetails Details() const { return {details_, ends_}; }

 private:
  // A message of more than this is not kept: its memory is worth more than the time.
  static constexpr std::size_t kLargestKept = std::size_t{64} << 10;

  LogMessage() = default;
  ~LogMessage() = default;

  void Recycle() {
    if (details_.capacity() + heading_.capacity() > kLargestKept || ends_.capacity() > kLargestKept / 8) {
      delete this;
      return;
    }
    heading_.clear();
    details_.clear();
    ends_.clear();
    delete spare_.exchange(this, std::memory_order_acq_rel);
  }

  // A package makes a message without a host, and a build makes thousands: one that is done waits here for
  // the next.
  static std::atomic<LogMessage*> spare_;

  std::atomic<std::int32_t> references_{0};
  std::string heading_;
  std::string details_;
  std::vector<std::size_t> ends_;
};

constinit std::atomic<LogMessage*> LogMessage::spare_{nullptr};

constexpr std::string_view kMask = "***";

// Where secrets stand in the text, overlapping places joined, in ascending order.
std::vector<std::pair<std::size_t, std::size_t>> FindSecrets(std::string_view text,
                                                             const std::vector<LockedText>& secrets) {
  std::vector<std::pair<std::size_t, std::size_t>> places;
  for (const LockedText& locked : secrets) {
    const std::string_view secret = locked.View();
    for (std::size_t at = text.find(secret); at != std::string_view::npos; at = text.find(secret, at + 1)) {
      places.emplace_back(at, at + secret.size());
    }
  }
  std::sort(places.begin(), places.end());
  std::vector<std::pair<std::size_t, std::size_t>> joined;
  for (const auto& [begin, end] : places) {
    if (!joined.empty() && begin < joined.back().second) {
      joined.back().second = std::max(joined.back().second, end);
    } else {
      joined.emplace_back(begin, end);
    }
  }
  return joined;
}

std::string Mask(std::string_view text, const std::vector<LockedText>& secrets) {
  std::string masked;
  std::size_t kept = 0;
  for (const auto& [begin, end] : FindSecrets(text, secrets)) {
    masked += text.substr(kept, begin - kept);
    masked += kMask;
    kept = end;
  }
  masked += text.substr(kept);
  return masked;
}

std::string AsBase64(std::string_view bytes) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  unsigned bits = 0;
  unsigned held = 0;
  for (const char byte : bytes) {
    held = held << 8 | static_cast<unsigned char>(byte);
    for (bits += 8; bits >= 6; bits -= 6) text += kDigits[held >> (bits - 6) & 63];
  }
  return text;
}

// How the text stands within base64, as in a header that somebody prints: "name:password" may begin at each of three
// places of it. What is made of its neighbours too is left out, and what is too short to be told from other words.
std::vector<std::string> Base64Forms(std::string_view secret) {
  constexpr std::size_t kShortest = 5;
  std::vector<std::string> forms;
  for (std::size_t before = 0; before < 3; ++before) {
    const std::string form = AsBase64(std::string(before, '\0') + std::string(secret));
    const std::size_t begin = (before * 8 + 5) / 6;
    if (form.size() >= begin + kShortest) forms.push_back(form.substr(begin));
  }
  return forms;
}

}  // namespace

// The thread that calls Flush while records wait. It starts with the first record and sleeps when there are none.
struct ActionLog::Flusher {
  std::condition_variable wake;
  bool waiting = false;  // records came since the last flush
  bool ending = false;
  std::thread thread;
};

ActionLog::ActionLog() = default;

ActionLog::~ActionLog() {
  if (flusher_) {
    {
      const std::lock_guard lock(mutex_);
      flusher_->ending = true;
    }
    flusher_->wake.notify_one();
    flusher_->thread.join();
  }
  Flush();
}

LogSink& ActionLog::AddSink(std::unique_ptr<LogSink> sink) {
  const std::lock_guard lock(mutex_);
  buffered_ = buffered_ || sink->IsBuffered();
  sinks_.push_back(std::move(sink));
  return *sinks_.back();
}

void ActionLog::AddSecret(std::string_view secret) {
  const std::lock_guard lock(mutex_);
  const auto add = [this](std::string_view text) {
    const auto is = [&](const LockedText& one) { return one.View() == text; };
    if (text.empty() || std::any_of(secrets_.begin(), secrets_.end(), is)) return;
    secrets_.emplace_back(text);
    NeverDivide(text);
  };
  add(secret);
  ForEachLine(secret, add);
  for (std::string& form : Base64Forms(secret)) {
    add(form);
    Wipe(form);
  }
}

void ActionLog::AddMessage(int action, std::string_view text) {
  LogRecord record;
  record.kind = LogKind::Message;
  record.action = action;
  record.text = text;
  Add(record);
}

void ActionLog::AddException(int action, std::string_view text) {
  LogRecord record;
  record.kind = LogKind::Exception;
  record.action = action;
  record.text = text;
  Add(record);
}

void ActionLog::AddValidation(int action, std::string_view subject, std::string_view message) {
  LogRecord record;
  record.kind = LogKind::Validation;
  record.action = action;
  record.subject = subject;
  record.text = message;
  Add(record);
}

void ActionLog::AddBegin(int action, std::string_view name, int actions) {
  LogRecord record;
  record.kind = LogKind::Begin;
  record.action = action;
  record.subject = name;
  record.actions = actions;
  Add(record);
}

void ActionLog::AddResult(int action, std::string_view name, bool success, double seconds) {
  LogRecord record;
  record.kind = LogKind::Result;
  record.action = action;
  record.subject = name;
  record.success = success;
  record.seconds = seconds;
  Add(record);
  Flush();
}

void ActionLog::AddSummary(std::string_view lines, std::string_view json) {
  LogRecord record;
  record.kind = LogKind::Summary;
  record.text = lines;
  record.subject = json;
  Add(record);
  Flush();
}

void ActionLog::AddStatus(int action, const IQXActionLogMessage& message) {
  if (typeid(message) != typeid(LogMessage)) throw Exception("A log message of another host cannot be sent");
  const auto& own = static_cast<const LogMessage&>(message);
  LogRecord record;
  record.kind = LogKind::Status;
  record.action = action;
  record.text = own.Heading();
  record.details = own.Details();
  Add(record);
}

void ActionLog::Add(const LogRecord& record) {
  const std::lock_guard lock(mutex_);
  if (secrets_.empty()) {
    for (const auto& sink : sinks_) sink->Take(record);
  } else {
    AddMasked(record);
  }
  if (buffered_ && (flusher_ == nullptr || !flusher_->waiting)) WakeFlusher();
}

void ActionLog::AddMasked(const LogRecord& record) {
  const std::string text = Mask(record.text, secrets_);
  const std::string subject = Mask(record.subject, secrets_);
  std::string details;
  std::vector<std::size_t> ends;
  for (std::size_t i = 0; i < record.details.size(); ++i) {
    details += Mask(record.details[i], secrets_);
    ends.push_back(details.size());
  }
  LogRecord masked = record;
  masked.text = text;
  masked.subject = subject;
  masked.details = LogDetails(details, ends);
  for (const auto& sink : sinks_) sink->Take(masked);
}

void ActionLog::Flush() {
  const std::lock_guard lock(mutex_);
  for (const auto& sink : sinks_) sink->Flush();
}

void ActionLog::WakeFlusher() {
  if (flusher_ == nullptr) {
    flusher_ = std::make_unique<Flusher>();
    flusher_->thread = std::thread([this] { FlushNowAndThen(); });
  }
  flusher_->waiting = true;
  flusher_->wake.notify_one();
}

void ActionLog::FlushNowAndThen() {
  std::unique_lock lock(mutex_);
  Flusher& flusher = *flusher_;
  for (;;) {
    flusher.wake.wait(lock, [&] { return flusher.waiting || flusher.ending; });
    flusher.wake.wait_for(lock, kFlushInterval, [&] { return flusher.ending; });
    if (flusher.ending) return;
    flusher.waiting = false;
    for (const auto& sink : sinks_) sink->Flush();
  }
}

InterfacePtr<IQXActionLogMessage> CreateLogMessage() { return LogMessage::Make(); }

}  // namespace qx
