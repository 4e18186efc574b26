#include "platform/files/StagedFile.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace qx::system {
namespace {

using Clock = std::chrono::steady_clock;

// A disk that takes longer for one file is waited for by several threads: it writes what they ask for at once
// together.
constexpr std::chrono::microseconds kSlow{200};
constexpr std::size_t kThreads = 8;
// One call for all waits for the disk about as often as for a few files.
constexpr std::size_t kWorthOneCall = 8;

}  // namespace

bool FlushAll(std::span<StagedFile* const> files, std::size_t& failed, std::string& reason) {
  std::size_t first = 0;
  while (first < files.size()) {
    const Clock::time_point begin = Clock::now();
    failed = first;
    if (!files[first]->Flush(reason)) return false;
    ++first;
    if (Clock::now() - begin > kSlow) break;
  }
  if (files.size() - first >= kWorthOneCall && FlushTogether(files.subspan(first))) return true;

  std::atomic<std::size_t> next{first};
  std::mutex mutex;
  failed = files.size();
  const auto flush = [&] {
    for (std::size_t i = next++; i < files.size(); i = next++) {
      std::string why;
      if (files[i]->Flush(why)) continue;
      const std::lock_guard guard(mutex);
      if (i >= failed) continue;
      failed = i;
      reason = why;
    }
  };
  std::vector<std::thread> threads;
  for (std::size_t i = first + 1; i < files.size() && threads.size() + 1 < kThreads; ++i) {
    threads.emplace_back(flush);
  }
  flush();
  for (std::thread& thread : threads) thread.join();
  return failed == files.size();
}

bool Replace(const std::string& target, std::span<const std::string_view> pieces, const FileFacts* model,
             bool leaveToWrite, std::string& reason) {
  const std::unique_ptr<StagedFile> file = Stage(target, pieces, model, leaveToWrite, reason);
  return file != nullptr && file->Flush(reason) && file->Place(reason);
}

}  // namespace qx::system
