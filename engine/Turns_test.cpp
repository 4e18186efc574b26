#include "engine/Turns.h"

#include <gtest/gtest.h>

#include <thread>

#include "engine/ChildCommand.h"
#include "host/testing/TestFolder.h"

namespace qx {
namespace {

TEST(Turns, NoMoreAreTakenThanThereAre) {
  const TestFolder folder;
  const Turns turns(1);
  const auto run = [&] {
    RunChild({{"sh", "-c",
               "for i in 1 2 3; do read -r turn <&8; mkdir busy || echo met; sleep 0.02; rmdir busy; echo "
               ">&9; done"},
              folder.Path(),
              {},
              &turns},
             [](std::string_view line) { ADD_FAILURE() << line; });
  };
  std::thread other(run);
  run();
  other.join();
}

TEST(Turns, AreAsManyAsAskedFor) {
  EXPECT_EQ(Turns(7).Count(), 7);
  EXPECT_GE(Turns(0).Count(), 2);
  const Turns turns(3);
  int taken = 0;
  const ChildResult result =
      RunChild({{"timeout", "0.5", "sh", "-c", "for i in 1 2 3 4; do read -r turn <&8; echo $i; done"},
                "",
                {},
                &turns},
               [&taken](std::string_view) { ++taken; });
  EXPECT_EQ(taken, 3);
  EXPECT_EQ(result.code, 124);  // it waits for the fourth until its time is up
}

TEST(Turns, ReachOnlyTheChildrenThatAreGivenThem) {
  const char* const hasThem = "[ \"$QX_TURNS\" = 1 ] && read -r turn <&8 && echo >&9";
  const auto nobody = [](std::string_view) {};
  const Turns turns(2);
  EXPECT_EQ(RunChild({{"sh", "-c", hasThem}, "", {}, &turns}, nobody).code, 0);
  EXPECT_NE(RunChild({{"sh", "-c", hasThem}, "", {}}, nobody).code, 0);
}

}  // namespace
}  // namespace qx
