#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "plugin/Qxprocess.h"

namespace qx {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

TEST(Event, StartsNotSignalled) {
  TEvent event;
  EXPECT_FALSE(event.WaitFor(0));
}

TEST(Event, AWaitThatSucceedsConsumesTheSignal) {
  TEvent event;
  event.SetEvent();
  EXPECT_TRUE(event.WaitFor(0));
  EXPECT_FALSE(event.WaitFor(0));
}

TEST(Event, TwoSignalsBeforeAWaitAreOne) {
  TEvent event;
  event.SetEvent();
  event.SetEvent();
  EXPECT_TRUE(event.WaitFor(0));
  EXPECT_FALSE(event.WaitFor(0));
}

TEST(Event, WaitsAsLongAsAsked) {
  TEvent event;
  const Clock::time_point start = Clock::now();
  EXPECT_FALSE(event.WaitFor(50));
  EXPECT_GE(Clock::now() - start, milliseconds(45));
}

TEST(Event, WakesAWaiterOnAnotherThread) {
  TEvent event;
  std::thread signaller([&] {
    std::this_thread::sleep_for(milliseconds(30));
    event.SetEvent();
  });
  EXPECT_TRUE(event.WaitFor(60000));
  signaller.join();
}

TEST(Event, OneSignalWakesOneOfSeveralWaiters) {
  TEvent event;
  std::atomic<int> woken = 0;
  std::vector<std::thread> waiters;
  for (int i = 0; i < 4; ++i) waiters.emplace_back([&] { woken += event.WaitFor(200) ? 1 : 0; });
  std::this_thread::sleep_for(milliseconds(20));
  event.SetEvent();
  for (std::thread& waiter : waiters) waiter.join();
  EXPECT_EQ(woken, 1);
}

}  // namespace
}  // namespace qx
