// The macros of Visual C++ projects, $(OutDir), and the lists that their attributes hold. Names are compared
// without regard to letter case. Text to values: looks at no file.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

class VcMacros {
 public:
  // The value of an environment variable; none when it is not set.
  using Environment = std::function<std::optional<std::string>(const std::string& name)>;

  explicit VcMacros(Environment environment) : environment_(std::move(environment)) {}

  // Macros that stand before those of `outer`, which has to outlive them.
  explicit VcMacros(const VcMacros* outer) : outer_(outer) {}

  // A value may hold macros itself.
  void Set(std::string_view name, std::string value);
  bool Has(std::string_view name) const;

  // With every macro in its place, those of values too. One that nobody knows, the environment neither, is
  // empty. Raises Exception where macros hold one another without end, or make a text of over a megabyte.
  std::string Expand(std::string_view text) const;
  // The same; adds the names of those that nobody knows, as written.
  std::string Expand(std::string_view text, std::set<std::string>& unknown) const;

 private:
  const std::string* Find(const std::string& folded) const;
  void ExpandInto(std::string& out, std::string_view text, int depth, std::set<std::string>& unknown) const;
  std::map<std::string, std::string> values_;  // by name in lower case
  const VcMacros* outer_ = nullptr;
  Environment environment_;
};

// What an attribute lists, and so how its items stand side by side. Double quotes hold an item together and go.
enum class VcList {
  Folders,  // divided by ";" and ","
  Defines,  // the same; a quote behind a backslash is part of the item
  Files,    // divided by blanks
  Options,  // the same; a quote behind a backslash is part of the item
};
std::vector<std::string> SplitVcList(std::string_view text, VcList kind);

}  // namespace qx
