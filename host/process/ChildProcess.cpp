#include "host/process/ChildProcess.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

#include "host/process/RunningChild.h"

namespace qx {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// From asking a tree to end until it is made to. Whoever presses Ctrl-C expects everything gone within two seconds.
constexpr milliseconds kGrace(800);
// A killed process vanishes in no time, unless the kernel holds it (a dead network drive): then we leave it.
constexpr milliseconds kKillPatience(500);
// What readers get, when the tree is gone, before pipes held by processes outside the tree are abandoned.
constexpr milliseconds kDrainPatience(200);
constexpr milliseconds kForEver = std::chrono::hours(24);

// Lines on their way from the readers to the calling thread. Bounded: a reader waits while it is full, and
// the pipe, and so the child, wait behind it.
class LineQueue {
 public:
  struct Entry {
    OutputStream stream;
    std::string line;
  };

  // From a reader. True when the calling thread must be woken.
  bool Push(OutputStream stream, std::string_view line) {
    std::unique_lock lock(mutex_);
    hasRoom_.wait(lock, [&] { return closed_ || bytes_ < kMostBytes; });
    if (closed_) return false;
    bytes_ += line.size() + sizeof(Entry);
    entries_.push_back({stream, std::string(line)});
    return entries_.size() == 1;
  }

  std::deque<Entry> TakeAll() {
    const std::lock_guard lock(mutex_);
    bytes_ = 0;
    hasRoom_.notify_all();
    return std::exchange(entries_, {});
  }

  // From now on lines are dropped and no reader waits.
  void Close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    hasRoom_.notify_all();
  }

 private:
  static constexpr std::size_t kMostBytes = std::size_t{256} << 10;

  std::mutex mutex_;
  std::condition_variable hasRoom_;
  std::deque<Entry> entries_;
  std::size_t bytes_ = 0;
  bool closed_ = false;
};

// One call of ChildProcess::Run after its child was started.
class ChildRun {
 public:
  explicit ChildRun(const ChildProcess& what) : what_(what), child_(what) {}
  ~ChildRun();

  int ToTheEnd();

 private:
  const LineSink& SinkOf(OutputStream stream) const {
    return stream == OutputStream::Output ? what_.onOutput : what_.onError;
  }
  void StartReader(OutputStream stream);
  void Pump(OutputStream stream);
  void DeliverQueued();
  void Fail(std::exception_ptr failure);
  bool Failed();
  void Pause(milliseconds patience);
  template <class Condition>
  bool PauseUntil(milliseconds patience, Condition condition);
  void EndTree();

  const ChildProcess& what_;
  TEvent notice_;  // a reader has ended or failed, or the queue is no longer empty
  RunningChild child_;
  LineQueue queue_;
  std::atomic<int> openReaders_ = 0;
  std::array<std::thread, 2> readers_;
  std::mutex failureMutex_;
  std::exception_ptr failure_;  // the first that a sink threw
};

// Readers are joined last of all; whatever brought us here, they must find an end.
ChildRun::~ChildRun() {
  queue_.Close();
  if (openReaders_ > 0) EndTree();
  for (std::thread& reader : readers_) {
    if (reader.joinable()) reader.join();
  }
}

int ChildRun::ToTheEnd() {
  if (what_.redirectOutput) {
    StartReader(OutputStream::Output);
    StartReader(OutputStream::Error);
  }
  // A grandchild that keeps a stream keeps the run going, whatever became of the child (docs/deliberate.md).
  bool exited = false;
  while (!exited || openReaders_ > 0) {
    const Woken woken = child_.Wait(what_.stop, notice_, !exited, kForEver);
    if (woken == Woken::Stop) {
      EndTree();
      DeliverQueued();
      return Failed() ? (std::rethrow_exception(failure_), 0) : kTerminatedExitCode;
    }
    exited = exited || woken == Woken::Exit;
    DeliverQueued();
    if (Failed()) {
      EndTree();
      std::rethrow_exception(failure_);
    }
  }
  DeliverQueued();
  if (Failed()) std::rethrow_exception(failure_);
  return child_.ExitCode();
}

void ChildRun::StartReader(OutputStream stream) {
  ++openReaders_;
  try {
    readers_[static_cast<std::size_t>(stream)] = std::thread([this, stream] {
      Pump(stream);
      --openReaders_;
      notice_.SetEvent();
    });
  } catch (const std::exception& error) {
    --openReaders_;
    throw Exception("Cannot read the output of \"" + what_.executable + "\": " + error.what());
  }
}

// A reader's life. After a failure it goes on reading, so that the child is not held up on its way out.
void ChildRun::Pump(OutputStream stream) {
  LineSplitter splitter;
  LineSink sink = SinkOf(stream);
  if (!sink) sink = [](std::string_view) {};
  std::function<void()> idle = what_.onIdle;
  if (what_.delivery == Delivery::CallingThread) {
    sink = [this, stream](std::string_view line) {
      if (queue_.Push(stream, line)) notice_.SetEvent();
    };
    idle = nullptr;
  }
  bool failed = false;
  for (;;) {
    const std::span<char> space = splitter.Space();
    const std::size_t count = child_.Read(stream, space);
    if (failed && count > 0) continue;
    if (failed) return;
    try {
      if (count == 0) splitter.Finish(sink);
      if (count > 0) splitter.Commit(count, sink);
      if (count < space.size() && idle) idle();
    } catch (...) {
      failed = true;
      Fail(std::current_exception());
    }
    if (count == 0) return;
  }
}

void ChildRun::DeliverQueued() {
  if (what_.delivery != Delivery::CallingThread || Failed()) return;
  try {
    const std::deque<LineQueue::Entry> entries = queue_.TakeAll();
    for (const LineQueue::Entry& entry : entries) {
      if (const LineSink& sink = SinkOf(entry.stream)) sink(entry.line);
    }
    if (!entries.empty() && what_.onIdle) what_.onIdle();
  } catch (...) {
    Fail(std::current_exception());
  }
}

void ChildRun::Fail(std::exception_ptr failure) {
  {
    const std::lock_guard lock(failureMutex_);
    if (!failure_) failure_ = std::move(failure);
  }
  queue_.Close();
  notice_.SetEvent();
}

bool ChildRun::Failed() {
  const std::lock_guard lock(failureMutex_);
  return failure_ != nullptr;
}

// Waits a little, delivering what comes meanwhile.
void ChildRun::Pause(milliseconds patience) {
  child_.Wait(nullptr, notice_, false, patience);
  DeliverQueued();
}

// Pauses until `condition` holds; false when the patience ends first.
template <class Condition>
bool ChildRun::PauseUntil(milliseconds patience, Condition condition) {
  const Clock::time_point end = Clock::now() + patience;
  for (milliseconds step(2); !condition(); step = std::min(step * 2, milliseconds(50))) {
    if (Clock::now() >= end) return false;
    Pause(step);
  }
  return true;
}

// Politely, then by force. What was written before the end is still delivered.
void ChildRun::EndTree() {
  if (child_.AskTreeToEnd()) PauseUntil(kGrace, [&] { return !child_.TreeIsAlive(); });
  PauseUntil(kKillPatience, [&] {
    child_.KillTree();
    return !child_.TreeIsAlive();
  });
  const auto readersAreThrough = [&] { return openReaders_ == 0; };
  if (PauseUntil(kDrainPatience, readersAreThrough)) return;
  while (!readersAreThrough()) {
    child_.AbandonPipes();
    Pause(milliseconds(20));
  }
}

}  // namespace

int ChildProcess::Run() const {
  // Before anything is looked for: a program that does not exist is no error then (docs/deliberate.md).
  if (stop != nullptr && stop->WaitFor(0)) return kTerminatedExitCode;
  return ChildRun(*this).ToTheEnd();
}

}  // namespace qx
