// The log's stream as a handle. A console is written to in UTF-16, anything else gets the bytes.
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

#include "host/log/LogStream.h"
#include "host/system/Stopping.h"
#include "platform/Texts.h"
#include "platform/WindowsText.h"

namespace qx {
namespace {

HANDLE HandleOf(std::intptr_t native) { return reinterpret_cast<HANDLE>(native); }

// Whether it is a console; one is made to understand colours.
bool PrepareConsole(HANDLE handle) {
  DWORD mode = 0;
  if (GetConsoleMode(handle, &mode) == 0) return false;
  SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  return true;
}

std::string WriteToConsole(HANDLE handle, std::string_view bytes) {
  const std::u16string text = ToUtf16(bytes);
  // Consoles of older systems take no more than 64 KiB at once.
  for (std::size_t at = 0; at < text.size();) {
    const auto size = static_cast<DWORD>(std::min<std::size_t>(text.size() - at, 8192));
    DWORD written = 0;
    if (WriteConsoleW(handle, text.data() + at, size, &written, nullptr) == 0) return system::LastError();
    at += written;
  }
  return {};
}

// The threads that write into pipes. A write that a pipe's reader holds up is broken off when the patience after
// a stop is over: by a thread that is started with the first such write and goes with the process.
class StalledWrites {
 public:
  // While one is alive the calling thread is in a write.
  class Guarded {
   public:
    Guarded() : thread_(OpenThread(THREAD_TERMINATE, FALSE, GetCurrentThreadId())) {
      The().Add(thread_.Get());
    }
    ~Guarded() { The().Remove(thread_.Get()); }
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;

   private:
    system::Handle thread_;
  };

  static bool AreBrokenOff() {
    const auto asked = StopMoment();
    return asked && std::chrono::steady_clock::now() >= *asked + LogFile::kPatienceAfterStop;
  }

 private:
  // Never destroyed: its thread may outlive what is static.
  static StalledWrites& The() {
    static StalledWrites& writes = *new StalledWrites;
    return writes;
  }
  void Add(HANDLE thread) {
    const std::lock_guard lock(mutex_);
    writers_.push_back(thread);
    if (!started_ && StopHandle() != 0) std::thread([this] { BreakOff(); }).detach();
    started_ = started_ || StopHandle() != 0;
  }
  void Remove(HANDLE thread) {
    const std::lock_guard lock(mutex_);
    std::erase(writers_, thread);
  }
  [[noreturn]] void BreakOff() {
    constexpr std::chrono::milliseconds kAgain{20};
    for (;;) {
      while (!WaitForStop(std::chrono::hours(1))) continue;
      std::this_thread::sleep_for(kAgain);
      if (!AreBrokenOff()) continue;
      const std::lock_guard lock(mutex_);
      for (const HANDLE writer : writers_) CancelSynchronousIo(writer);
    }
  }

  std::mutex mutex_;
  std::vector<HANDLE> writers_;
  bool started_ = false;
};

std::string WriteToPipe(HANDLE handle, std::string_view bytes) {
  const StalledWrites::Guarded guarded;
  while (!bytes.empty()) {
    DWORD written = 0;
    // A broken-off write tells nothing of what it has written: small pieces, so that little is lost.
    const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), std::size_t{64} << 10));
    const bool isWritten = WriteFile(handle, bytes.data(), size, &written, nullptr) != 0;
    if (!isWritten && StalledWrites::AreBrokenOff()) return "nobody reads it";
    if (!isWritten) return system::LastError();
    bytes.remove_prefix(written);
  }
  return {};
}

}  // namespace

LogFile LogFile::Own(std::string name, int stream) {
  HANDLE handle = GetStdHandle(static_cast<DWORD>(stream));
  const Way way = GetFileType(handle) == FILE_TYPE_PIPE ? Way::Parts : Way::Whole;
  return LogFile(std::move(name), reinterpret_cast<std::intptr_t>(handle), PrepareConsole(handle), false,
                 way);
}

LogFile LogFile::StandardOutput() { return Own("standard output", static_cast<int>(STD_OUTPUT_HANDLE)); }
LogFile LogFile::StandardError() { return Own("standard error", static_cast<int>(STD_ERROR_HANDLE)); }

LogFile LogFile::Create(const std::string& path) {
  HANDLE handle = CreateFileW(system::WidePath(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                              CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) throw Exception("Cannot write " + path + ": " + system::LastError());
  return LogFile(path, reinterpret_cast<std::intptr_t>(handle), PrepareConsole(handle), true,
                 GetFileType(handle) == FILE_TYPE_PIPE ? Way::Parts : Way::Whole);
}

LogFile::~LogFile() {
  if (owned_) CloseHandle(HandleOf(native_));
}

std::string LogFile::Write(std::string_view bytes) {
  if (terminal_) return WriteToConsole(HandleOf(native_), bytes);
  if (way_ == Way::Parts) return WriteToPipe(HandleOf(native_), bytes);
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), std::size_t{1} << 20));
    if (WriteFile(HandleOf(native_), bytes.data(), size, &written, nullptr) == 0) return system::LastError();
    bytes.remove_prefix(written);
  }
  return {};
}

}  // namespace qx
