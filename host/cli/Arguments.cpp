#include "host/cli/Arguments.h"

#include <algorithm>
#include <charconv>

#include "host/runtime/Nearest.h"
#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

namespace qx::cli {
namespace {

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string Advice(std::string_view given, const std::vector<std::string>& valid) {
  const std::string nearest = NearestName(given, valid);
  return nearest.empty() ? "" : " (nearest: " + nearest + ")";
}

std::string HelpOf(const CommandRow* command) {
  return command == nullptr ? "qxhost --help" : "qxhost help " + std::string(command->name);
}

class Parser {
 public:
  explicit Parser(const std::vector<std::string>& arguments) : arguments_(arguments) {}

  Invocation Parse() {
    bool onlyOperands = false;
    for (; at_ < arguments_.size(); ++at_) {
      const std::string& word = arguments_[at_];
      if (!onlyOperands && word == "--") {
        onlyOperands = true;
      } else if (!onlyOperands && word.size() > 1 && word[0] == '-') {
        TakeOption(word);
      } else if (result_.command == nullptr) {
        TakeCommand(word);
      } else {
        result_.operands.push_back(word);
      }
    }
    CheckOptions();
    if (!result_.Has("--help") && !result_.Has("--version")) CheckOperands();
    return std::move(result_);
  }

 private:
  void TakeCommand(const std::string& word) {
    result_.command = FindCommand(word);
    if (result_.command != nullptr) return;
    std::vector<std::string> names;
    for (const CommandRow& row : Commands()) names.emplace_back(row.name);
    throw Exception("Unknown command " + Quoted(word) + Advice(word, names) + "; see qxhost --help");
  }

  // Options of a command may stand before its name: which command it is, the first word that is no option
  // says.
  void TakeOption(const std::string& word) {
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    const OptionRow* row = FindOption(name);
    if (row == nullptr) {
      throw Exception("Unknown option " + Quoted(name) + Advice(name, OptionNames()) + "; see " +
                      HelpOf(result_.command));
    }
    std::string value;
    if (equals != std::string::npos) {
      if (row->kind == ValueKind::None) throw Exception(name + " takes no value");
      value = word.substr(equals + 1);
    } else if (row->kind != ValueKind::None) {
      if (at_ + 1 == arguments_.size()) {
        throw Exception(name + " needs a value: " + name + " " + std::string(row->placeholder));
      }
      value = arguments_[++at_];
    }
    CheckValue(*row, value);
    if (!row->repeats && row->kind != ValueKind::None && result_.Has(row->name)) {
      throw Exception(name + " is given twice");
    }
    result_.options.emplace_back(row->name, std::move(value));
  }

  static void CheckValue(const OptionRow& row, const std::string& value) {
    const std::string name(row.name);
    if (row.kind == ValueKind::Choice &&
        std::find(row.choices.begin(), row.choices.end(), value) == row.choices.end()) {
      throw Exception(name + " cannot be " + Quoted(value) +
                      Advice(value, std::vector<std::string>(row.choices.begin(), row.choices.end())));
    }
    if (row.kind == ValueKind::Number && ToInteger(value).value_or(0) < 1) {
      throw Exception(name + " takes a whole number from 1 on, not " + Quoted(value));
    }
    if (row.kind == ValueKind::Seconds && !ToSeconds(value)) {
      throw Exception(name + " takes a number of seconds above 0, not " + Quoted(value));
    }
    if (row.kind == ValueKind::Assignment) SplitAssignment(value);
    if (row.kind == ValueKind::File && value.empty()) throw Exception(name + " needs the name of a file");
  }

  // A row of the command, of a global option, or, while no command is known, of any command.
  const OptionRow* FindOption(std::string_view name) const {
    const auto in = [&](std::span<const OptionRow> rows) -> const OptionRow* {
      const auto found =
          std::find_if(rows.begin(), rows.end(), [&](const OptionRow& row) { return row.name == name; });
      return found == rows.end() ? nullptr : &*found;
    };
    if (const OptionRow* row = in(GlobalOptions())) return row;
    if (result_.command != nullptr) return in(result_.command->options);
    for (const CommandRow& command : Commands()) {
      if (const OptionRow* row = in(command.options)) return row;
    }
    return nullptr;
  }

  std::vector<std::string> OptionNames() const {
    std::vector<std::string> names;
    for (const OptionRow& row : GlobalOptions()) names.emplace_back(row.name);
    if (result_.command != nullptr) {
      for (const OptionRow& row : result_.command->options) names.emplace_back(row.name);
    }
    return names;
  }

  // What stood before the command's name was accepted for any command.
  void CheckOptions() const {
    if (result_.command == nullptr) return;
    for (const auto& [name, value] : result_.options) {
      if (FindOption(name) != nullptr) continue;
      throw Exception("qxhost " + std::string(result_.command->name) + " has no option " + Quoted(name) +
                      Advice(name, OptionNames()) + "; see " + HelpOf(result_.command));
    }
  }

  void CheckOperands() const {
    if (result_.command == nullptr) return;
    std::size_t least = 0;
    std::size_t most = 0;
    for (const OperandRow& row : result_.command->operands) {
      if (result_.operands.size() < least + static_cast<std::size_t>(row.least)) {
        throw Exception("qxhost " + std::string(result_.command->name) + " needs " + std::string(row.name) +
                        "; see " + HelpOf(result_.command));
      }
      least += static_cast<std::size_t>(row.least);
      most += static_cast<std::size_t>(row.most);
    }
    if (result_.operands.size() > most) {
      throw Exception("qxhost " + std::string(result_.command->name) + " does not take " +
                      Quoted(result_.operands[most]) + "; see " + HelpOf(result_.command));
    }
  }

  const std::vector<std::string>& arguments_;
  std::size_t at_ = 0;
  Invocation result_;
};

}  // namespace

bool Invocation::Has(std::string_view option) const { return Value(option).has_value(); }

std::optional<std::string> Invocation::Value(std::string_view option) const {
  std::optional<std::string> found;
  for (const auto& [name, value] : options) {
    if (name == option) found = value;
  }
  return found;
}

std::vector<std::string> Invocation::Values(std::string_view option) const {
  std::vector<std::string> found;
  for (const auto& [name, value] : options) {
    if (name == option) found.push_back(value);
  }
  return found;
}

int ActionNumber(const Invocation& invocation) {
  return ToInteger(invocation.Value("--action").value_or("1")).value_or(1);
}

std::optional<double> ToSeconds(std::string_view text) {
  constexpr double kLongest = 1e9;  // thirty years
  double seconds = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), seconds, std::chars_format::fixed);
  if (error != std::errc() || end != text.data() + text.size() || !(seconds > 0 && seconds <= kLongest)) {
    return std::nullopt;
  }
  return seconds;
}

std::pair<std::string, std::string> SplitAssignment(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0)
    throw Exception(Quoted(text) + " is not of the form NAME=VALUE");
  return {text.substr(0, equals), text.substr(equals + 1)};
}

Invocation ParseArguments(const std::vector<std::string>& arguments) { return Parser(arguments).Parse(); }

}  // namespace qx::cli
