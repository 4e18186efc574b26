// The lines that the old products print around a build: the start of each project, its own count, what is
// passed over, and the last line with its totals. Programs read some of them, so each format has its own.
#pragma once

#include <string>
#include <string_view>

#include "engine/Console.h"
#include "engine/Project.h"
#include "projects/SolutionMap.h"

namespace qx {

struct BuildTotals {
  int succeeded = 0, failed = 0, skipped = 0;
};

class BuildReport {
 public:
  BuildReport(Console& console, SolutionFormat format, Goal goal)
      : console_(console), format_(format), goal_(goal) {}

  // "------ Build started: Project: Hello, Configuration: Release Win32 ------"
  void Started(std::string_view project, std::string_view configuration, std::string_view platform);
  // "------ Skipped Build: Project: Hello, Configuration: Release Win32 ------" and the reason.
  void Skipped(std::string_view project, std::string_view configuration, std::string_view platform,
               std::string_view reason);
  // "Hello - 0 error(s), 2 warning(s)"
  void Ended(std::string_view project, int errors, int warnings);
  // "    Build: 2 succeeded, 0 failed, 1 skipped", of 2005 "========== Build: ... ==========".
  void Closed(const BuildTotals& totals);
  // The same for what was to be deployed.
  void Deployed(const BuildTotals& totals);

 private:
  void Total(std::string_view name, const BuildTotals& totals);
  Console& console_;
  SolutionFormat format_;
  Goal goal_;
};

}  // namespace qx
