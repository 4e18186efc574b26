// The properties of an MSBuild project while it is evaluated from top to bottom, and its conditions. A value
// that hangs on something that cannot be known here carries that as a doubt, and so does whatever is made
// from it.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "projects/net/NetProject.h"

namespace qx {

enum class Truth { No, Yes, Unknown };

class MsBuildProperties {
 public:
  // `folder`: of the project, absolute; Exists('...') is asked from there.
  explicit MsBuildProperties(std::string folder) : folder_(std::move(folder)) {}

  // Given from outside: no later Set changes it.
  void Fix(std::string_view name, std::string_view value);
  // Something nobody here knows the value of, and why.
  void Doubt(std::string_view name, std::string doubt);
  // From here on any property may have any value, until it is set anew.
  void DoubtAll(const std::string& doubt);
  // An assignment whose text is still to be expanded; with a doubt when its condition cannot be decided.
  void Set(std::string_view name, std::string_view text, const std::string& conditionDoubt = {});

  // Names without regard to letter case. What was never set is empty, and certain unless everything is in doubt.
  NetText Get(std::string_view name) const;
  // With $(NAME) and %XX replaced. Item lists (@) and metadata (%(...)) are not known: they are a doubt.
  NetText Expand(std::string_view text) const;

  // An empty condition is Yes. The reason for Unknown goes to `doubt`.
  Truth Decide(std::string_view condition, std::string& doubt) const;

 private:
  std::string folder_;
  std::map<std::string, NetText> values_;  // by their names in lower case
  std::map<std::string, bool> fixed_;
  std::string allDoubt_;
  std::size_t size_ = 0;  // of all values that were ever set
};

}  // namespace qx
