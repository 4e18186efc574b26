#include "engine/front/Neighbourhood.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace qx {
namespace {

// Something that waits on a thread of its own.
class Waiter {
 public:
  explicit Waiter(const std::function<void()>& wait)
      : thread_([this, wait] {
          wait();
          isDone_ = true;
        }) {}
  // Long enough for one that does not wait to be seen.
  bool StillWaits() const {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    return !isDone_;
  }
  void Join() { thread_.join(); }

 private:
  std::atomic<bool> isDone_ = false;
  std::jthread thread_;
};

Neighbours::Intent Makes(const std::string& file) { return {false, {file}}; }
Neighbours::Intent RunsCommands() { return {true, {}}; }

TEST(Neighbourhood, NoMoreAreBuiltThanThereIsRoomFor) {
  Neighbourhood all(3, 2);
  all.AwaitRoom(0);
  all.AwaitRoom(1);
  Waiter third([&] { all.AwaitRoom(2); });
  EXPECT_TRUE(third.StillWaits());
  all.End(1);
  third.Join();
}

TEST(Neighbourhood, TheNextIsLookedAtWhenOneHasSaidWhatItMakes) {
  Neighbourhood all(2, 2);
  all.AwaitRoom(0);
  Waiter next([&] { all.AwaitIntent(0); });
  EXPECT_TRUE(next.StillWaits());
  all.Of(0).Announce(Makes("/a.lib"));
  next.Join();
  all.AwaitRoom(1);
  all.End(1);
  all.AwaitIntent(1);  // one that had nothing to do has said nothing
}

TEST(Neighbourhood, WhatIsNeededHasToHaveEnded) {
  Neighbourhood all(2, 2);
  all.AwaitRoom(0);
  all.Of(0).Announce(Makes("/a.lib"));
  Waiter second([&] { all.AwaitEnds({0}); });
  EXPECT_TRUE(second.StillWaits());
  all.End(0);
  second.Join();
  all.AwaitAll();
}

TEST(Neighbourhood, TwoThatMakeTheSameFileFollowOneAnother) {
  Neighbourhood all(3, 3);
  for (const std::size_t each : {0, 1, 2}) all.AwaitRoom(each);
  all.Of(0).Announce(Makes("/a.lib"));
  all.Of(1).Announce(Makes("/b.lib"));
  Waiter third([&] { all.Of(2).Announce({false, {"/c.lib", "/a.lib"}}); });
  EXPECT_TRUE(third.StillWaits());
  all.End(0);
  third.Join();
}

TEST(Neighbourhood, OneThatRunsCommandsIsBuiltAlone) {
  Neighbourhood all(3, 3);
  all.AwaitRoom(0);
  all.Of(0).Announce(Makes("/a.lib"));
  all.AwaitRoom(1);
  Waiter second([&] { all.Of(1).Announce(RunsCommands()); });
  all.AwaitIntent(1);
  Waiter third([&] { all.AwaitRoom(2); });
  EXPECT_TRUE(second.StillWaits());
  all.End(0);
  second.Join();
  EXPECT_TRUE(third.StillWaits());
  all.End(1);
  third.Join();
}

TEST(Neighbourhood, AFileOfOneBeforeIsWaitedForAndOfOneBehindIsNot) {
  Neighbourhood all(3, 3);
  for (const std::size_t each : {0, 1, 2}) all.AwaitRoom(each);
  all.Of(0).Announce(Makes("/a.lib"));
  all.Of(2).Announce(Makes("/c.lib"));
  const auto isNamed = [](const char* name) {
    return [name](const std::string& made) { return made == name; };
  };
  all.Of(1).Await(isNamed("/c.lib"));
  all.Of(1).Await(isNamed("/d.lib"));
  Waiter second([&] { all.Of(1).Await(isNamed("/a.lib")); });
  EXPECT_TRUE(second.StillWaits());
  all.End(0);
  second.Join();
}

}  // namespace
}  // namespace qx
