// What the system says of the memory of secrets.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/prctl.h>

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

// Whether a page that is locked is told as such: sanitizers put a call that does nothing in the place of the
// system's, and a user may be allowed to lock nothing.
bool PagesAreLocked() {
  alignas(4096) static char page[4096] = "in use";
  return mlock(page, sizeof page) == 0 && FlagsOf(page).find(" lo ") != std::string::npos;
}

TEST(LockedTextPosix, IsInNoDumpAndGone) {
  const void* place = nullptr;
  {
    const LockedText text("a secret of some length");
    place = text.Text();
    EXPECT_NE(FlagsOf(place).find(" dd "), std::string::npos) << FlagsOf(place);
  }
  EXPECT_EQ(FlagsOf(place), "");
}

TEST(LockedTextPosix, IsLocked) {
  if (!PagesAreLocked()) GTEST_SKIP() << "no page can be locked here, or a sanitizer makes nothing of it";
  const LockedText text("a secret of some length");
  EXPECT_NE(FlagsOf(text.Text()).find(" lo "), std::string::npos) << FlagsOf(text.Text());
}

TEST(LockedTextPosix, AProcessCanBeKeptOutOfDumps) {
  KeepOutOfDumps();
  EXPECT_EQ(prctl(PR_GET_DUMPABLE), 0);
  prctl(PR_SET_DUMPABLE, 1);
}

}  // namespace
}  // namespace qx
