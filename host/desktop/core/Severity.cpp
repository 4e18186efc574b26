#include "host/desktop/core/Severity.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/Texts.h"

// How a line of a compiler's output looks: ORIGIN : [WORDS] error|warning [CODE] : TEXT, the form that the
// compilers, the linkers and the build engines share. A summary ("0 Error(s)"), a path with the word in it
// and a sentence about errors have another form.
namespace qx::desktop {
namespace {

constexpr std::string_view kBlanks = " \t";

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

void SkipBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
}

enum class After { Nothing, Colon, CodeAndColon };

// What stands behind the word: a colon, a code ("CS0103": one word with a digit in it) and a colon, or else.
After LookBehind(std::string_view text) {
  SkipBlanks(text);
  std::size_t size = 0;
  bool hasDigit = false;
  while (size < text.size() &&
         (IsLetter(text[size]) || IsDigit(text[size]) || text[size] == '_' || text[size] == '-')) {
    hasDigit = hasDigit || IsDigit(text[size]);
    ++size;
  }
  const bool hasCode = size > 0;
  if (hasCode && (!hasDigit || !IsLetter(text[0]))) return After::Nothing;
  text.remove_prefix(size);
  SkipBlanks(text);
  if (text.empty() || text[0] != ':') return After::Nothing;
  return hasCode ? After::CodeAndColon : After::Colon;
}

// Whether words can stand before "error": "fatal", "Command line". With a code behind it two of any kind may.
bool AreSubcategory(std::string_view words, After after) {
  words = TrimView(words);
  if (words.empty()) return true;
  int count = 1;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (words[i] == ' ') count += words[i - 1] != ' ';
    if (words[i] != ' ' && !IsLetter(words[i])) return false;
  }
  if (after == After::CodeAndColon) return count <= 2;
  constexpr std::array<std::string_view, 3> kKnown{"fatal", "internal compiler", "command line"};
  return std::find(kKnown.begin(), kKnown.end(), LowerCase(words)) != kKnown.end();
}

// Without the number of the project that builds side by side: "12>x.cpp(3) : error ...".
std::string_view WithoutProjectNumber(std::string_view line) {
  std::size_t digits = 0;
  while (digits < line.size() && IsDigit(line[digits])) ++digits;
  return digits > 0 && digits < line.size() && line[digits] == '>' ? line.substr(digits + 1) : line;
}

// Whether the word stands somewhere in the line, in lower case as a whole, as the category of a message.
bool HasCategory(std::string_view line, std::string_view lower, std::string_view word) {
  for (std::size_t at = lower.find(word); at != lower.npos; at = lower.find(word, at + 1)) {
    const std::string_view before = line.substr(0, at);
    if (!before.empty() && kBlanks.find(before.back()) == kBlanks.npos && before.back() != ':') continue;
    const After after = LookBehind(line.substr(at + word.size()));
    if (after == After::Nothing) continue;
    const std::size_t colon = before.rfind(':');
    if (AreSubcategory(before.substr(colon == before.npos ? 0 : colon + 1), after)) return true;
  }
  return false;
}

}  // namespace

Severity SeverityOf(std::string_view line) {
  const std::string_view message = WithoutProjectNumber(TrimView(line));
  const std::string lower = LowerCase(message);
  if (HasCategory(message, lower, "error")) return Severity::Error;
  if (HasCategory(message, lower, "warning")) return Severity::Warning;
  return Severity::Plain;
}

}  // namespace qx::desktop
