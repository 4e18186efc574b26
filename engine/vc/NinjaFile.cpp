#include "engine/vc/NinjaFile.h"

#include <algorithm>
#include <cctype>

#include "engine/Turns.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

bool IsHarmless(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || std::string_view("_-+=./,:@%").find(c) < 11;
}

std::string Path(std::string_view path) {
  if (path.find_first_of("\r\n|") != std::string_view::npos) {
    throw Exception("a file name that cannot be built here: \"" + std::string(path) + "\"");
  }
  std::string out;
  for (const char c : path) {
    if (c == '$' || c == ' ' || c == ':') out += '$';
    out += c;
  }
  return out;
}

void AddPaths(std::string& out, std::string_view before, const std::vector<std::string>& paths) {
  if (!paths.empty()) out += before;
  for (const std::string& path : paths) out += ' ' + Path(path);
}

// The shell itself waits for the turn, so that it costs no process. It answers as the command does.
std::string InTurn(const std::string& command) {
  const std::string isAlone = std::string("[ -z \"$$") + kTurnsVariable + "\" ] || ";
  return isAlone + "read -r turn <&" + std::to_string(kTakeTurn) + "; " + command + "; code=$$?; " + isAlone +
         "echo >&" + std::to_string(kGiveTurnBack) + "; exit $$code";
}

}  // namespace

std::string ShellQuoted(std::string_view argument) {
  if (!argument.empty() && std::all_of(argument.begin(), argument.end(), IsHarmless)) {
    return std::string(argument);
  }
  std::string out = "'";
  for (const char c : argument) {
    if (c == '\'') {
      out += "'\\''";
    } else {
      out += c;
    }
  }
  return out + "'";
}

std::string ShellQuoted(const std::vector<std::string>& arguments) {
  std::string out;
  for (const std::string& argument : arguments) {
    if (!out.empty()) out += ' ';
    out += ShellQuoted(argument);
  }
  return out;
}

std::string NinjaFile::Escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '$') out += '$';
    out += c == '\n' || c == '\r' || c == '\0' ? ' ' : c;
  }
  return out;
}

void NinjaFile::Rule(std::string_view name, const Variables& variables) {
  ((text_ += "rule ") += name) += '\n';
  for (const auto& [variable, value] : variables) {
    ((((text_ += "  ") += variable) += " = ") += variable == "command" ? InTurn(value) : value) += '\n';
  }
}

void NinjaFile::Build(const Edge& edge) {
  AddPaths(text_, "build", edge.outputs);
  (text_ += ": ") += edge.rule;
  AddPaths(text_, "", edge.inputs);
  AddPaths(text_, " |", edge.implicit);
  AddPaths(text_, " ||", edge.first);
  text_ += '\n';
  for (const auto& [variable, value] : edge.variables) {
    ((((text_ += "  ") += variable) += " = ") += value) += '\n';
  }
}

void NinjaFile::Default(const std::string& target) { ((text_ += "default ") += Path(target)) += '\n'; }

}  // namespace qx
