// What Ninja and the GNU tools print, in the form in which the old products report errors and warnings, so
// that tools that read theirs read ours.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace qx {

// The number that the old compiler would have given to what gcc says; C2000 and C4000 stand for all that have none.
std::string_view CompilerErrorCode(std::string_view text);
std::string_view CompilerWarningCode(std::string_view text);

class Diagnostics {
 public:
  using Printer = std::function<void(std::string_view)>;

  // `status`: what Ninja prints before the description of an edge.
  Diagnostics(std::string status, Printer print);

  // One line of Ninja's output. Lines that say nothing to a user print nothing.
  void Line(std::string_view line);
  // The header that was not there, of those that the first missing one is; empty: none was missing.
  const std::set<std::string>& MissingHeaders() const { return missingHeaders_; }
  // The first error, without its place; empty: none.
  const std::string& FirstError() const { return firstError_; }

 private:
  bool Compiler(std::string_view line);
  bool Linker(std::string_view line);
  bool Ninja(std::string_view line);
  void Print(const std::string& place, std::string_view category, std::string_view code,
             std::string_view text);

  std::string status_;
  Printer print_;
  bool skipNext_ = false;
  int unresolved_ = 0;
  std::set<std::string> missingHeaders_;
  std::set<std::string> reported_;  // unresolved symbols with their object: ld repeats them
  std::string firstError_, step_;
};

}  // namespace qx
