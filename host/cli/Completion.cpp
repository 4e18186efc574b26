#include <string_view>
#include <vector>

#include "host/cli/Documents.h"
#include "host/cli/Session.h"
#include "host/settings/HostSettings.h"
#include "platform/Texts.h"

namespace qx::cli {
namespace {

// The names of a table's rows.
template <class Rows>
std::string NamesIn(const Rows& rows) {
  std::vector<std::string_view> names;
  for (const auto& row : rows) names.push_back(row.name);
  return Join(names, " ");
}

// What bash runs to offer values of a kind.
std::string BashOffer(ValueKind kind, std::span<const std::string_view> choices) {
  switch (kind) {
    case ValueKind::File:
      return "compopt -o filenames; COMPREPLY=($(compgen -f -- \"$word\"))";
    case ValueKind::Choice:
      return "COMPREPLY=($(compgen -W '" + Join(choices, " ") + "' -- \"$word\"))";
    case ValueKind::Command:
      return "COMPREPLY=($(compgen -W '" + NamesIn(TheProgram().commands) + "' -- \"$word\"))";
    case ValueKind::Action:
      return "_qxhost_actions";
    default:
      return ":";
  }
}

// One branch of the case over "the option before the word".
std::string BashOptionBranches(std::span<const OptionRow> rows, std::string_view indent) {
  std::string text;
  for (const OptionRow& row : rows) {
    if (row.kind == ValueKind::None) continue;
    text.append(indent)
        .append(row.name)
        .append(") ")
        .append(BashOffer(row.kind, row.choices))
        .append("; return ;;\n");
  }
  return text;
}

// Whether an operand sets what the program can name: properties of an action, options.
bool AssignsProperties(const CommandRow& command, const OperandRow& row) {
  return row.kind == ValueKind::Assignment && command.name != "var";
}

std::string BashCommand(const CommandRow& command) {
  std::string text = "    " + std::string(command.name) + ")\n";
  if (!command.options.empty()) {
    text += "      case $before in\n" + BashOptionBranches(command.options, "        ") + "      esac\n";
  }
  text += "      options=\"$globals " + NamesIn(command.options) + "\"\n";
  if (!command.operands.empty()) {
    text += "      case $operand in\n";
    int first = 1;
    for (const OperandRow& row : command.operands) {
      text += "        " + (row.most == kAny ? "*" : std::to_string(first)) + ") offer='" + std::string() +
              (row.kind == ValueKind::File       ? "file"
               : row.kind == ValueKind::Action   ? "action"
               : row.kind == ValueKind::Command  ? "command"
               : AssignsProperties(command, row) ? "assignment"
                                                 : "") +
              "' ;;\n";
      first += row.most;
    }
    text += "      esac\n";
  }
  return text + "      ;;\n";
}

// A text in zsh's single quotes, as a part of an _arguments specification.
std::string ZshText(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '\'')
      out += "'\\''";
    else if (c == '[' || c == ']' || c == ':')
      out += {'\\', c};
    else
      out += c;
  }
  return out;
}

std::string ZshAction(ValueKind kind, std::span<const std::string_view> choices) {
  switch (kind) {
    case ValueKind::File:
      return "_files";
    case ValueKind::Choice:
      return "(" + Join(choices, " ") + ")";
    case ValueKind::Command:
      return "(" + NamesIn(TheProgram().commands) + ")";
    case ValueKind::Action:
      return "_qxhost_actions";
    default:
      return " ";
  }
}

std::string ZshOption(const OptionRow& row) {
  std::string spec = "'" + std::string(row.repeats ? "*" : "") + std::string(row.name);
  spec += (row.kind == ValueKind::None ? "[" : "=[") + ZshText(row.help) + "]";
  if (row.kind != ValueKind::None)
    spec += ":" + ZshText(row.placeholder) + ":" + ZshAction(row.kind, row.choices);
  return spec + "'";
}

std::string ZshCommand(const CommandRow& command) {
  std::string text = "    " + std::string(command.name) + ")\n      _arguments";
  for (const OptionRow& row : command.options) text += " \\\n        " + ZshOption(row);
  int place = 1;
  for (const OperandRow& row : command.operands) {
    const std::string where = row.most == kAny ? "*" : std::to_string(place++) + (row.least == 0 ? ":" : "");
    text += " \\\n        '" + where + ":" + ZshText(row.name) + ":" + ZshAction(row.kind, {}) + "'";
  }
  return text + "\n      ;;\n";
}

// Every option that takes a value, once, as a pattern of case: "--set|--options".
std::string OptionsWithValues() {
  std::string valued;
  const auto add = [&](std::span<const OptionRow> rows) {
    for (const OptionRow& row : rows) {
      const std::string name(row.name);
      if (row.kind == ValueKind::None || ("|" + valued + "|").find("|" + name + "|") != std::string::npos)
        continue;
      valued += (valued.empty() ? "" : "|") + name;
    }
  };
  add(TheProgram().options);
  for (const CommandRow& row : TheProgram().commands) add(row.options);
  return valued;
}

// "Name=" of each property that is set by hand, and "Name=Value" of each value that has a name.
std::string Assignments(PropertyTable table) {
  std::string lines;
  for (const PublishedProperty& property : table) {
    if (property.name.starts_with('_')) continue;  // kept for others, which are set
    const std::string name = std::string(property.name) + "=";
    lines += name + "\n";
    for (const std::string_view value : property.valueNames) lines += name + std::string(value) + "\n";
    if (property.kind == PropertyKind::Boolean) lines += name + "True\n" + name + "False\n";
  }
  return lines;
}

std::string OptionAssignments(Session& session) {
  std::string lines;
  for (const RegisteredOptions& entry : session.Packages().Options())
    lines += Assignments(entry.optionsClass->properties);
  for (const std::string& name : HostSettingNames()) lines += name + "=\n";
  return lines;
}

}  // namespace

std::string BashCompletion() {
  std::string text =
      "# bash completion for qxhost\n"
      "\n"
      "_qxhost_actions() {\n"
      "  local name\n"
      "  while IFS= read -r name; do\n"
      "    [[ $name == \"$word\"* ]] && COMPREPLY+=(\"$(printf %q \"$name\")\")\n"
      "  done < <(qxhost actions 2>/dev/null | sed -n 's/^    //p')\n"
      "}\n"
      "\n"
      "# NAME=VALUE, which readline parts at its \"=\".\n"
      "_qxhost_assignments() {\n"
      "  local line asked=(options) typed=$assigned$word\n"
      "  case $command in\n"
      "    add) asked=(action \"$second\") ;;\n"
      "    set) asked=(file \"$first\" \"$number\") ;;\n"
      "  esac\n"
      "  while IFS= read -r line; do\n"
      "    [[ $line == \"$typed\"* ]] || continue\n"
      "    if [[ $typed == *=* ]]; then [[ $line != *= ]] || continue; else [[ $line == *= ]] || continue; "
      "fi\n"
      "    COMPREPLY+=(\"$(printf %q \"${line#\"$assigned\"}\")\")\n"
      "  done < <(qxhost --print-words \"${asked[@]}\" 2>/dev/null)\n"
      "  [[ $typed == *=* ]] || compopt -o nospace 2>/dev/null\n"
      "}\n"
      "\n"
      "_qxhost() {\n"
      "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
      "  local first= second= number=1 assigned=\n"
      "  if [[ $word == '=' ]]; then assigned=$before= word=; "
      "elif [[ $before == '=' ]]; then assigned=${COMP_WORDS[COMP_CWORD-2]}=; fi\n"
      "  local command= operand=0 offer= i globals='" +
      NamesIn(TheProgram().options) +
      "'\n"
      "  local options=$globals\n"
      "  COMPREPLY=()\n"
      "  for ((i = 1; i < COMP_CWORD; i++)); do\n"
      "    case ${COMP_WORDS[i]} in\n";
  text += "      " + OptionsWithValues() +
          ") [[ ${COMP_WORDS[i]} != --action ]] || number=${COMP_WORDS[i+1]}; ((i++)) ;;\n"
          "      -*|=) ;;\n"
          "      *) if [[ -z $command ]]; then command=${COMP_WORDS[i]}; else ((operand++)); fi\n"
          "        [[ $operand != 1 ]] || first=${COMP_WORDS[i]//[\\\\\\\"\\']/}\n"
          "        [[ $operand != 2 ]] || second=${COMP_WORDS[i]//[\\\\\\\"\\']/} ;;\n"
          "    esac\n"
          "  done\n"
          "  ((operand++))\n"
          "  case $before in\n" +
          BashOptionBranches(TheProgram().options, "    ") +
          "  esac\n"
          "  case $command in\n"
          "    '') [[ $word == -* ]] || { COMPREPLY=($(compgen -W '" +
          NamesIn(TheProgram().commands) + "' -- \"$word\")); return; } ;;\n";
  for (const CommandRow& row : TheProgram().commands) text += BashCommand(row);
  return text +
         "  esac\n"
         "  if [[ $word == -* ]]; then COMPREPLY=($(compgen -W \"$options\" -- \"$word\")); return; fi\n"
         "  case $offer in\n"
         "    file) " +
         BashOffer(ValueKind::File, {}) +
         " ;;\n"
         "    action) _qxhost_actions ;;\n"
         "    assignment) _qxhost_assignments ;;\n"
         "    command) " +
         BashOffer(ValueKind::Command, {}) +
         " ;;\n"
         "  esac\n"
         "}\n"
         "\n"
         "complete -F _qxhost qxhost\n";
}

std::string ZshCompletion() {
  std::string text =
      "#compdef qxhost\n"
      "\n"
      "_qxhost_actions() {\n"
      "  local -a names\n"
      "  names=(\"${(@f)$(qxhost actions 2>/dev/null | sed -n 's/^    //p')}\")\n"
      "  compadd -a names\n"
      "}\n"
      "\n"
      "_qxhost() {\n"
      "  local context state state_descr line\n"
      "  typeset -A opt_args\n"
      "  local -a commands\n"
      "  commands=(\n";
  for (const CommandRow& row : TheProgram().commands) {
    text += "    '" + ZshText(row.name) + ":" + ZshText(row.summary) + "'\n";
  }
  text += "  )\n  _arguments -C";
  for (const OptionRow& row : TheProgram().options) text += " \\\n    " + ZshOption(row);
  text +=
      " \\\n    '1:command:->command' \\\n    '*::argument:->argument'\n"
      "  case $state in\n"
      "    command) _describe -t commands command commands; return ;;\n"
      "    argument) ;;\n"
      "    *) return ;;\n"
      "  esac\n"
      "  case $words[1] in\n";
  for (const CommandRow& row : TheProgram().commands) text += ZshCommand(row);
  return text + "  esac\n}\n\n_qxhost \"$@\"\n";
}

std::string CompletionWords(Session& session, std::span<const std::string> words) {
  try {
    if (words.size() == 1 && words[0] == "options") return OptionAssignments(session);
    if (words.size() == 2 && words[0] == "action")
      return Assignments(session.Packages().NeedAction(words[1]).actionClass->properties);
    if (words.size() != 3 || words[0] != "file") return "";
    OpenProject project = session.Open(words[1], {});
    const std::optional<std::int32_t> number = ToInteger(words[2]);
    return number ? Assignments(Session::ActionOf(project, *number).GetActionClass()->properties) : "";
  } catch (const Exception&) {
    return "";  // whoever types hears of it when the line is done
  }
}

}  // namespace qx::cli
