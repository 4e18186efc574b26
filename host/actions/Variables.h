// The variables of a build: three layers (the command line's, the build project's, the environment) and the
// expansion of %NAME% in a text.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/Environment.h"
#include "plugin/Qxtypes.h"

namespace qx {

// Names are compared without regard to letter case, as everywhere on the host's own system; a name that
// matches exactly is preferred within its layer. Reading is safe from any thread while nobody writes.
class Variables {
 public:
  using Lookup = std::function<std::optional<std::string>(const std::string& name)>;

  Variables() : environment_(ReadEnvironment) {}
  // With another environment than the process's; a null lookup is an empty one.
  explicit Variables(Lookup environment) : environment_(std::move(environment)) {}

  // The layer of `--set`, which wins over the two others. Setting a name again replaces its value.
  void SetOverride(std::string name, std::string value);
  // The layer of the build project.
  void SetProject(std::string name, std::string value);
  void ClearProject() { project_ = {}; }

  std::optional<std::string> Find(std::string_view name) const;

  // Replaces each %NAME% by the variable's value and each %% by one percent sign. A name is at least one
  // character and holds neither a percent sign nor a line end; a percent sign that begins no such name stays
  // as it is. What is put in is expanded in turn when `nested` is set, and otherwise stands as it is. Raises
  // Exception: "Undefined variable : NAME"; a variable that contains itself, directly or through others
  // (nested only); a result that grows beyond kLargestResult, or takes more than kMostReplacements
  // replacements or kDeepestNesting levels.
  std::string Expand(std::string_view text, bool nested) const;

  // The names of overrides that no %NAME% in these texts means, nor in what is put in for their names.
  std::vector<std::string> UnusedOverrides(std::vector<std::string> texts) const;

  // Far above what a command line or a path holds; below what would harm the host.
  static constexpr std::size_t kLargestResult = std::size_t{16} << 20;
  static constexpr std::size_t kMostReplacements = 100'000;
  static constexpr std::size_t kDeepestNesting = 200;

 private:
  // In the order in which they came, each name once whatever its letter case.
  struct Layer {
    std::vector<std::pair<std::string, std::string>> variables;
    std::unordered_map<std::string, std::size_t> places;  // by the name as FoldCase has it

    const std::string* Find(std::string_view name) const;
    void Set(std::string name, std::string value);
  };
  Layer overrides_;
  Layer project_;
  Lookup environment_;
};

}  // namespace qx
