#include "engine/vc/DefFile.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>

#include "platform/Texts.h"

namespace qx {
namespace {

// Statements whose lines go, until another statement begins.
constexpr std::array<std::string_view, 13> kDropped = {
    "LIBRARY", "NAME",      "DESCRIPTION", "VERSION", "SECTIONS", "SEGMENTS", "EXETYPE",
    "CODE",    "STACKSIZE", "HEAPSIZE",    "STUB",    "PROTMODE", "DATA"};

// Up to a ";" that is in no quotes.
std::string_view WithoutComment(std::string_view line) {
  bool quoted = false;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] == '"') quoted = !quoted;
    if (line[at] == ';' && !quoted) return line.substr(0, at);
  }
  return line;
}

std::string_view FirstWord(std::string_view text) { return text.substr(0, text.find_first_of(" \t")); }

// "name = internal @3 NONAME PRIVATE DATA" without what ld does not take.
std::string Export(std::string_view line) {
  std::string out;
  while (!(line = TrimView(line)).empty()) {
    const std::string_view word = FirstWord(line);
    line.remove_prefix(word.size());
    if (SameText(word, "PRIVATE") || SameText(word, "RESIDENTNAME")) continue;
    if (SameText(word, "CONSTANT")) {
      out += " DATA";
      continue;
    }
    (out += ' ') += word;
  }
  return out;
}

}  // namespace

std::string DefFileForLd(std::string_view text) {
  std::string out = "EXPORTS\n";
  bool exporting = false;
  ForEachLine(text, [&](std::string_view line) {
    line = TrimView(WithoutComment(line));
    const std::string_view word = FirstWord(line);
    if (SameText(word, "EXPORTS")) {
      exporting = true;
      line = TrimView(line.substr(word.size()));
    } else if (std::find(kDropped.begin(), kDropped.end(), word) != kDropped.end()) {
      exporting = false;  // in capitals only: "name" and "data" may be exported
    }
    if (exporting && !line.empty()) (out += Export(line)) += '\n';
  });
  return out;
}

std::string DefFileWithStdcall(std::string_view forLd, std::string_view symbols) {
  std::map<std::string, std::string, std::less<>> stacks;  // "two": "@8"
  ForEachLine(symbols, [&](std::string_view line) {
    const std::size_t at = line.rfind('@');
    const std::size_t begin = line.find(" T _");
    if (at == std::string_view::npos || begin == std::string_view::npos || at < begin + 5) return;
    stacks.emplace(line.substr(begin + 4, at - begin - 4), line.substr(at));
  });
  std::string out;
  bool changed = false;
  ForEachLine(forLd, [&](std::string_view line) {
    line = TrimView(line);
    std::string_view name = line.substr(0, line.find_first_of(" \t="));
    std::string_view rest = line.substr(name.size());
    std::string_view inner = name;
    if (TrimView(rest).starts_with('=')) {
      rest = TrimView(TrimView(rest).substr(1));
      inner = FirstWord(rest);
      rest.remove_prefix(inner.size());
    }
    const auto stack = stacks.find(inner);
    if (stack == stacks.end()) {
      (out += line == "EXPORTS" ? "" : " ") += line;
    } else {
      changed = true;
      (((out += ' ') += name) += stack->second) += rest;
    }
    out += '\n';
  });
  return changed ? out : std::string();
}

}  // namespace qx
