#include <algorithm>

#include "host/cli/Documents.h"

namespace qx::cli {
namespace {

// A text that the macros take as it stands.
std::string Troff(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '\\')
      out += "\\e";
    else if (c == '-')
      out += "\\-";
    else if (c == '\'' && (out.empty() || out.back() == '\n'))
      out += "\\&'";
    else if (c == '.' && (out.empty() || out.back() == '\n'))
      out += "\\&.";
    else
      out += c;
  }
  return out;
}

std::string OptionItems(std::span<const OptionRow> rows) {
  std::string text;
  for (const OptionRow& row : rows) {
    text += ".TP\n.B " + Troff(row.name);
    if (!row.placeholder.empty()) text += " \\fI" + Troff(row.placeholder) + "\\fR";
    text += "\n" + Troff(row.help) + (row.repeats ? " (may be repeated)" : "") + "\n";
  }
  return text;
}

std::string CommandItem(const CommandRow& row) {
  std::string text = ".SS qxhost " + Troff(row.name) + " " + Troff(OperandUsage(row)) + "\n";
  std::string summary = Troff(row.summary);
  summary[0] = static_cast<char>(summary[0] - 'a' + 'A');
  text += summary + ".\n";
  for (const std::string& paragraph : DetailsOf(row)) text += ".PP\n" + Troff(paragraph) + "\n";
  text += OptionItems(row.options);
  return text + ".PP\nExample: " + Troff(row.outcome) + "\n.PP\n.EX\n" + Troff(row.example) + "\n.EE\n";
}

}  // namespace

std::string ManPage() {
  std::string text = ".TH QXHOST 1 \"\" \"qxhost " QXHOST_VERSION
                     "\"\n"
                     ".SH NAME\n"
                     "qxhost \\- run build projects with the actions of packages\n"
                     ".SH SYNOPSIS\n"
                     ".B qxhost\n"
                     "[\\fIglobal option\\fR]... \\fIcommand\\fR ...\n"
                     ".SH DESCRIPTION\n"
                     "A build project is an XML file that lists actions with their properties. Actions come "
                     "from packages, libraries that "
                     "are loaded at start. Results go to standard output, complaints to standard error.\n"
                     ".SH GLOBAL OPTIONS\n";
  text += OptionItems(TheProgram().options) + ".SH COMMANDS\n";
  for (const CommandRow& row : TheProgram().commands) text += CommandItem(row);
  text += ".SH EXIT STATUS\n";
  for (const ExitCodeRow& row : ExitCodes()) {
    text += ".TP\n.B " + std::to_string(row.code) + "\n" + Troff(row.meaning) + "\n";
  }
  return text +
         ".SH ENVIRONMENT\n"
         ".TP\n.B QXHOST_OPTIONS\nThe options store, where \\-\\-options names none.\n"
         ".TP\n.B NO_COLOR\nWhen set and not empty, the log is not coloured unless \\-\\-color asks for "
         "it.\n";
}

}  // namespace qx::cli
