// The parser, and what a parsed command line tells.
#include "platform/commandline/Invocation.h"

#include <algorithm>
#include <charconv>

#include "platform/Nearest.h"
#include "platform/Texts.h"

namespace qx::cli {
namespace {

class Parser {
 public:
  Parser(const ProgramRow& program, const std::vector<std::string>& arguments)
      : program_(program), arguments_(arguments) {}

  Invocation Parse() {
    bool onlyOperands = false;
    for (; at_ < arguments_.size(); ++at_) {
      const std::string& word = arguments_[at_];
      if (!onlyOperands && word == "--") {
        onlyOperands = true;
      } else if (!onlyOperands && word.size() > 1 && word[0] == '-') {
        TakeOption(word);
      } else if (result_.command == nullptr && !program_.commands.empty()) {
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
  using Kind = UsageFault::Kind;

  UsageFault Fault(Kind kind, const std::string& message, const std::string& word = {}) const {
    return UsageFault(kind, message, word, result_.command);
  }
  std::string See() const {
    const std::string name(program_.name);
    return "; see " + (result_.command == nullptr ? name + " --help"
                                                  : name + " help " + std::string(result_.command->name));
  }
  // Who is at fault: "qxhost run".
  std::string Subject() const {
    return std::string(program_.name) +
           (result_.command == nullptr ? "" : " " + std::string(result_.command->name));
  }

  void TakeCommand(const std::string& word) {
    result_.command = FindCommand(program_, word);
    if (result_.command != nullptr) return;
    std::vector<std::string> names;
    for (const CommandRow& row : program_.commands) names.emplace_back(row.name);
    throw Fault(Kind::UnknownCommand, "Unknown command " + Quoted(word) + NameAdvice(word, names) + See(),
                word);
  }

  // Options of a command may stand before its name: which command it is, the first word that is no option says.
  void TakeOption(const std::string& word) {
    const std::size_t equals = word.find('=');
    const std::string name = word == "-h" ? std::string(kHelpOption.name) : word.substr(0, equals);
    const OptionRow* row = FindOption(name);
    if (row == nullptr) {
      throw Fault(Kind::UnknownOption,
                  "Unknown option " + Quoted(name) + NameAdvice(name, OptionNames()) + See(), name);
    }
    std::string value;
    if (equals != std::string::npos) {
      if (row->kind == ValueKind::None) throw Fault(Kind::WrongValue, name + " takes no value");
      value = word.substr(equals + 1);
    } else if (row->kind != ValueKind::None) {
      if (at_ + 1 == arguments_.size()) {
        throw Fault(Kind::WrongValue, name + " needs a value: " + name + " " + std::string(row->placeholder));
      }
      value = arguments_[++at_];
    }
    CheckValue(*row, value);
    if (!row->repeats && row->kind != ValueKind::None && result_.Has(row->name)) {
      throw Fault(Kind::WrongValue, name + " is given twice");
    }
    result_.options.emplace_back(row->name, std::move(value));
  }

  void CheckValue(const OptionRow& row, const std::string& value) const {
    const std::string name(row.name);
    const auto refuse = [this](const std::string& message) -> void {
      throw Fault(Kind::WrongValue, message);
    };
    if (row.kind == ValueKind::Choice &&
        std::find(row.choices.begin(), row.choices.end(), value) == row.choices.end()) {
      refuse(name + " cannot be " + Quoted(value) +
             NameAdvice(value, std::vector<std::string>(row.choices.begin(), row.choices.end())));
    }
    if (row.kind == ValueKind::Number && ToInteger(value).value_or(0) < 1) {
      refuse(name + " takes a whole number from 1 on, not " + Quoted(value));
    }
    if (row.kind == ValueKind::Seconds && !ToSeconds(value)) {
      refuse(name + " takes a number of seconds above 0, not " + Quoted(value));
    }
    if (row.kind == ValueKind::Assignment) SplitAssignment(value);
    if (row.kind == ValueKind::File && value.empty()) refuse(name + " needs the name of a file");
  }

  // A row of the command, of the program, or, while no command is known, of any command.
  const OptionRow* FindOption(std::string_view name) const {
    const auto in = [&](std::span<const OptionRow> rows) -> const OptionRow* {
      const auto found =
          std::find_if(rows.begin(), rows.end(), [&](const OptionRow& row) { return row.name == name; });
      return found == rows.end() ? nullptr : &*found;
    };
    if (const OptionRow* row = in(program_.options)) return row;
    if (result_.command != nullptr) return in(result_.command->options);
    for (const CommandRow& command : program_.commands) {
      if (const OptionRow* row = in(command.options)) return row;
    }
    return nullptr;
  }

  std::vector<std::string> OptionNames() const {
    std::vector<std::string> names;
    for (const OptionRow& row : program_.options) names.emplace_back(row.name);
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
      throw Fault(Kind::UnknownOption,
                  Subject() + " has no option " + Quoted(name) + NameAdvice(name, OptionNames()) + See(),
                  std::string(name));
    }
  }

  void CheckOperands() const {
    if (result_.command == nullptr && !program_.commands.empty()) return;
    std::size_t least = 0;
    std::size_t most = 0;
    for (const OperandRow& row : result_.command == nullptr ? program_.operands : result_.command->operands) {
      if (result_.operands.size() < least + static_cast<std::size_t>(row.least)) {
        throw Fault(Kind::WrongOperands, Subject() + " needs " + std::string(row.name) + See());
      }
      least += static_cast<std::size_t>(row.least);
      most += static_cast<std::size_t>(row.most);
    }
    if (result_.operands.size() > most) {
      throw Fault(Kind::WrongOperands,
                  Subject() + " does not take " + Quoted(result_.operands[most]) + See());
    }
  }

  const ProgramRow& program_;
  const std::vector<std::string>& arguments_;
  std::size_t at_ = 0;
  Invocation result_;
};

}  // namespace

const CommandRow* FindCommand(const ProgramRow& program, std::string_view name) {
  const auto found = std::find_if(program.commands.begin(), program.commands.end(),
                                  [&](const CommandRow& row) { return row.name == name; });
  return found == program.commands.end() ? nullptr : &*found;
}

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

int Invocation::Number(std::string_view option, int otherwise) const {
  return ToInteger(Value(option).value_or("")).value_or(otherwise);
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

Invocation ParseArguments(const ProgramRow& program, const std::vector<std::string>& arguments) {
  return Parser(program, arguments).Parse();
}

}  // namespace qx::cli
