#include "host/diagnostics/DiagnosticLine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <tuple>

#include "platform/Texts.h"

namespace qx {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsOfCode(char c) { return IsDigit(c) || IsLetter(c) || c == '_' || c == '-' || c == '.'; }

std::string_view WithoutBlanksBefore(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view WithoutBlanksBehind(std::string_view text) {
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Whether the text begins with the word, which is in lower case, letter case aside; it is taken off then.
bool TakeWord(std::string_view& text, std::string_view word) {
  if (text.size() < word.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    const char c = text[i];
    if ((c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c) != word[i]) return false;
  }
  text.remove_prefix(word.size());
  return true;
}

// "error C2065: TEXT" or "error: TEXT".
struct Category {
  Severity severity = Severity::Error;
  std::string_view code;
  std::string_view message;
};

// What may stand before the word.
constexpr std::array<std::string_view, 3> kBefore{"fatal ", "command line ", "internal compiler "};
// Whether a category can begin so: most of what stands behind a colon cannot.
bool BeginsCategory(char c) {
  const char lower = static_cast<char>(c | 0x20);
  return lower == 'e' || lower == 'w' || lower == 'f' || lower == 'c' || lower == 'i';
}

std::optional<Category> ReadCategory(std::string_view text) {
  if (text.empty() || !BeginsCategory(text.front())) return std::nullopt;
  const bool isFurther = (text.front() | 0x20) != 'e' && (text.front() | 0x20) != 'w';
  std::ignore = isFurther && std::any_of(kBefore.begin(), kBefore.end(),
                                         [&text](std::string_view before) { return TakeWord(text, before); });
  Category category;
  if (TakeWord(text, "warning")) {
    category.severity = Severity::Warning;
  } else if (!TakeWord(text, "error")) {
    return std::nullopt;
  }
  const std::string_view behind = WithoutBlanksBefore(text);
  const bool isWordOver = behind.size() < text.size();
  text = behind;
  if (isWordOver) {
    const auto end = std::find_if_not(text.begin(), text.end(), IsOfCode);
    category.code = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text = WithoutBlanksBefore(text.substr(category.code.size()));
  }
  if (text.empty() || text.front() != ':') return std::nullopt;
  category.message = WithoutBlanksBehind(WithoutBlanksBefore(text.substr(1)));
  return category;
}

// A code as compilers number them. Without a place in a file before it, any other word is prose.
bool IsNumbered(std::string_view code) {
  return !code.empty() && IsLetter(code.front()) && std::any_of(code.begin(), code.end(), IsDigit);
}

// Where a fault is: what stands before the colon.
struct Origin {
  std::string_view file;
  int line = 0;
  int column = 0;
  bool isPlace = false;  // it names a line
};

// A number of digits alone; 0 for one that is too large to be a line.
int NumberOf(std::string_view digits) {
  int number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return error == std::errc() && end == digits.data() + digits.size() ? number : 0;
}

std::string_view LeadingDigits(std::string_view text) {
  const auto end = std::find_if_not(text.begin(), text.end(), IsDigit);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

// FILE(12), FILE(12,5), FILE(12,5,12,9), FILE(12-14). A blank may stand before the parenthesis, as the
// resource compiler writes it.
bool ReadParenthesis(std::string_view text, Origin& origin) {
  if (text.empty() || text.back() != ')') return false;
  std::size_t open = text.size() - 1;
  while (open > 0 && (IsDigit(text[open - 1]) || text[open - 1] == ',' || text[open - 1] == '-')) --open;
  if (open < 2 || text[open - 1] != '(' || !IsDigit(text[open])) return false;
  const std::string_view numbers = text.substr(open, text.size() - 1 - open);
  const std::string_view line = LeadingDigits(numbers);
  origin.line = NumberOf(line);
  if (numbers.size() > line.size() && numbers[line.size()] == ',')
    origin.column = NumberOf(LeadingDigits(numbers.substr(line.size() + 1)));
  origin.file = WithoutBlanksBehind(text.substr(0, open - 1));
  origin.isPlace = true;
  return true;
}

// ":12" at the text's end, taken off it; empty where none stands.
std::string_view TakeLastNumber(std::string_view& text) {
  std::size_t begin = text.size();
  while (begin > 0 && IsDigit(text[begin - 1])) --begin;
  if (begin == text.size() || begin < 2 || text[begin - 1] != ':') return {};
  const std::string_view number = text.substr(begin);
  text = text.substr(0, begin - 1);
  return number;
}

// FILE:12 or FILE:12:5.
bool ReadColons(std::string_view text, Origin& origin) {
  const std::string_view last = TakeLastNumber(text);
  if (last.empty()) return false;
  const std::string_view first = TakeLastNumber(text);
  origin.file = text;
  origin.line = NumberOf(first.empty() ? last : first);
  origin.column = first.empty() ? 0 : NumberOf(last);
  origin.isPlace = true;
  return true;
}

// Whether it names a file, and no program that speaks for itself.
bool NamesFile(std::string_view text) {
  if (text.find_first_of("/\\") != kNone) return true;
  const std::size_t point = text.rfind('.');
  return point != kNone && !SameText(text.substr(point), ".exe") && !SameText(text.substr(point), ".com");
}

Origin ReadOrigin(std::string_view text) {
  Origin origin;
  if (ReadParenthesis(text, origin) || ReadColons(text, origin)) return origin;
  if (NamesFile(text)) origin.file = text;
  return origin;
}

// gcc names the switch of a warning at the message's end.
void TakeSwitch(Diagnostic& diagnostic) {
  std::string_view& message = diagnostic.message;
  if (!diagnostic.code.empty() || message.empty() || message.back() != ']') return;
  const std::size_t open = message.rfind(" [-W");
  if (open == kNone) return;
  const std::string_view name = message.substr(open + 2, message.size() - open - 3);
  if (name.find(' ') != kNone) return;
  diagnostic.code = name;
  message = WithoutBlanksBehind(message.substr(0, open));
}

// MSBuild since its fourth version names the project at the message's end.
void TakeProject(Diagnostic& diagnostic) {
  std::string_view& message = diagnostic.message;
  if (message.empty() || message.back() != ']') return;
  const std::size_t open = message.rfind(" [");
  if (open == kNone) return;
  std::string_view inside = message.substr(open + 2, message.size() - open - 3);
  inside = inside.substr(0, inside.find("::"));
  const std::size_t point = inside.rfind('.');
  if (point == kNone || !(inside.ends_with("proj") || SameText(inside.substr(point), ".sln"))) return;
  diagnostic.project = ProjectNameOf(inside);
  message = WithoutBlanksBehind(message.substr(0, open));
}

bool BeginsAtRoot(std::string_view text) {
  if (text.starts_with('/') || text.starts_with('\\')) return true;
  return text.size() > 2 && IsLetter(text[0]) && text[1] == ':' && (text[2] == '\\' || text[2] == '/');
}

// A tool that gives no code is named by one word, a file by its whole path: "Note this: error: TEXT" is prose.
bool IsOriginOf(const Category& category, const Origin& origin, std::string_view text) {
  if (origin.isPlace) return true;
  if (category.code.empty()) return text.find_first_of(" \t") == kNone || BeginsAtRoot(text);
  return IsNumbered(category.code);
}

Diagnostic Made(const Category& category, const Origin& origin) {
  Diagnostic diagnostic;
  diagnostic.severity = category.severity;
  diagnostic.code = category.code;
  diagnostic.file = origin.file;
  diagnostic.line = origin.line;
  diagnostic.column = origin.column;
  diagnostic.message = category.message;
  TakeProject(diagnostic);
  TakeSwitch(diagnostic);
  return diagnostic;
}

// Whether the fault's place may go on behind this colon, which no category follows: a drive's, a position's,
// the one behind a tool that quotes another ("ld: a.o: error: TEXT").
bool GoesOn(std::string_view before, std::string_view behind) {
  if (behind.empty()) return false;
  if (IsDigit(behind.front()) || behind.front() == '/' || behind.front() == '\\') return true;
  Origin origin;
  const std::string_view place = WithoutBlanksBehind(before);
  if (ReadParenthesis(place, origin) || ReadColons(place, origin)) return false;
  return IsBlank(behind.front()) && place.size() == before.size();
}

}  // namespace

std::string_view NameOf(Severity severity) { return severity == Severity::Error ? "error" : "warning"; }

int TakeBuildNumber(std::string_view& line) {
  line = WithoutBlanksBefore(line);
  const std::string_view digits = LeadingDigits(line);
  if (digits.empty() || digits.size() > 6 || digits.size() == line.size() || line[digits.size()] != '>')
    return 0;
  line = WithoutBlanksBefore(line.substr(digits.size() + 1));
  return NumberOf(digits);
}

std::string_view ProjectNameOf(std::string_view projectFile) {
  const std::size_t delimiter = projectFile.find_last_of("/\\");
  const std::string_view name = projectFile.substr(delimiter == kNone ? 0 : delimiter + 1);
  const std::size_t point = name.rfind('.');
  if (point == kNone) return name;
  return SameText(name.substr(point), ".sln") ? std::string_view() : name.substr(0, point);
}

std::optional<Diagnostic> ReadDiagnostic(std::string_view line) {
  if (!MayBeDiagnostic(line)) return std::nullopt;
  TakeBuildNumber(line);
  // Bare, with nothing before it, only as compilers number them: "error: no such thing" may be anybody's.
  if (const auto category = ReadCategory(line)) {
    if (!IsNumbered(category->code)) return std::nullopt;
    return Made(*category, {});
  }
  std::size_t begin = 0;  // of the place; a tool may quote another: "ld: a.o: error: TEXT"
  for (std::size_t at = line.find(':'); at != kNone; at = line.find(':', at + 1)) {
    const std::string_view before = line.substr(begin, at - begin);
    const std::string_view behind = line.substr(at + 1);
    if (const auto category = ReadCategory(WithoutBlanksBefore(behind))) {
      const std::string_view text = WithoutBlanksBehind(WithoutBlanksBefore(before));
      const Origin origin = ReadOrigin(text);
      if (text.empty() || !IsOriginOf(*category, origin, text)) return std::nullopt;
      return Made(*category, origin);
    }
    if (!GoesOn(before, behind)) return std::nullopt;
    if (!IsBlank(behind.front())) continue;
    // A tool that quotes another is one word; anything else is prose.
    if (WithoutBlanksBefore(before).find_first_of(" \t") != kNone) return std::nullopt;
    begin = at + 1;
  }
  return std::nullopt;
}

}  // namespace qx
