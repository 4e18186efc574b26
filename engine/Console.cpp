#include "engine/Console.h"

#include <array>

#include "platform/Texts.h"

namespace qx {
namespace {

bool IsWordCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// "error C2065: text", "error: text" or "error : text": the word, at most one code, a colon.
bool IsCategory(std::string_view text, std::string_view word) {
  if (!text.starts_with(word)) return false;
  text.remove_prefix(word.size());
  const auto blanks = [&text] {
    while (text.starts_with(' ')) text.remove_prefix(1);
  };
  const bool hasBlank = text.starts_with(' ');
  blanks();
  if (text.starts_with(':')) return true;
  if (!hasBlank) return false;
  std::size_t code = 0;
  while (code < text.size() && IsWordCharacter(text[code])) ++code;
  text.remove_prefix(code);
  blanks();
  return code > 0 && text.starts_with(':');
}

struct Category {
  std::string_view word;
  LineKind kind;
};
constexpr std::array kCategories = {Category{"fatal error", LineKind::Error},
                                    Category{"error", LineKind::Error},
                                    Category{"warning", LineKind::Warning}};

std::string Diagnostic(std::string_view file, int line, std::string_view category, std::string_view code,
                       std::string_view text) {
  std::string all(file);
  if (line > 0) all += "(" + std::to_string(line) + ")";
  return ((((((all += " : ") += category) += ' ') += code) += ": ") += text);
}

}  // namespace

LineKind KindOfLine(std::string_view line) {
  // The category stands behind the colon that ends where the fault is; a path's own colon is no such place.
  for (std::size_t at = line.find(':'); at != std::string_view::npos; at = line.find(':', at + 1)) {
    const std::string_view behind = TrimView(line.substr(at + 1));
    for (const Category& category : kCategories) {
      if (IsCategory(behind, category.word)) return category.kind;
    }
  }
  return LineKind::Plain;
}

void Console::Line(std::string_view text) {
  const LineKind kind = KindOfLine(text);
  counts_.errors += kind == LineKind::Error ? 1 : 0;
  counts_.warnings += kind == LineKind::Warning ? 1 : 0;
  Write(text);
}

void Console::Error(std::string_view file, int line, std::string_view code, std::string_view text) {
  Line(Diagnostic(file, line, "error", code, text));
}

void Console::Warning(std::string_view file, int line, std::string_view code, std::string_view text) {
  Line(Diagnostic(file, line, "warning", code, text));
}

}  // namespace qx
