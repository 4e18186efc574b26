// Writes build.ninja: rules and edges, with every text of a project quoted, so that neither Ninja nor the
// shell that Ninja starts its commands with reads anything in it but a name.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

// One argument for the shell: as it stands where that is harmless, else in single quotes.
std::string ShellQuoted(std::string_view argument);
// All of them, with a blank between two.
std::string ShellQuoted(const std::vector<std::string>& arguments);

class NinjaFile {
 public:
  using Variables = std::vector<std::pair<std::string, std::string>>;

  // Values are Ninja's own text: $in, $out and what Escaped returns. Its command takes a turn (engine/Turns.h)
  // where the engine hands some out; when somebody starts Ninja by hand, there are none to wait for.
  void Rule(std::string_view name, const Variables& variables);

  struct Edge {
    std::string rule;
    std::vector<std::string> outputs, inputs;
    std::vector<std::string> implicit;  // it depends on them, $in does not have them
    std::vector<std::string> first;     // to be there before, no matter how old
    Variables variables;
  };
  // Paths as they are. Raises Exception for one that Ninja cannot name (it holds a line end or "|").
  void Build(const Edge& edge);
  void Default(const std::string& target);

  // A text as the value of a variable. A line end becomes a blank.
  static std::string Escaped(std::string_view text);
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace qx
