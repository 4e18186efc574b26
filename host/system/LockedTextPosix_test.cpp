// What the system says of the memory of secrets.
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>

#include "host/system/LockedText.h"

namespace qx {
namespace {

// What the kernel says of the mapping that holds the address; empty where there is none.
std::string FlagsOf(const void* address) {
  std::ifstream maps("/proc/self/smaps");
  const auto wanted = reinterpret_cast<std::uintptr_t>(address);
  bool isIn = false;
  for (std::string line; std::getline(maps, line);) {
    unsigned long begin = 0, end = 0;
    if (std::sscanf(line.c_str(), "%lx-%lx ", &begin, &end) == 2) isIn = begin <= wanted && wanted < end;
    if (isIn && line.starts_with("VmFlags:")) return line + " ";
  }
  return "";
}

TEST(LockedTextPosix, IsLockedAndInNoDumpAndGone) {
  const void* place = nullptr;
  {
    const LockedText text("a secret of some length");
    place = text.Text();
    const std::string flags = FlagsOf(place);
    EXPECT_NE(flags.find(" dd "), std::string::npos) << flags;
    rlimit limit{};
    getrlimit(RLIMIT_MEMLOCK, &limit);
    if (limit.rlim_cur >= 65536) {
      EXPECT_NE(flags.find(" lo "), std::string::npos) << flags;
    }
  }
  EXPECT_EQ(FlagsOf(place), "");
}

TEST(LockedTextPosix, AProcessCanBeKeptOutOfDumps) {
  KeepOutOfDumps();
  EXPECT_EQ(prctl(PR_GET_DUMPABLE), 0);
  prctl(PR_SET_DUMPABLE, 1);
}

}  // namespace
}  // namespace qx
