#include "projects/net/NetSource.h"

#include <algorithm>
#include <set>
#include <vector>

#include "platform/Texts.h"

namespace qx {
namespace {

enum class Token { End, Word, Text, Mark, LineEnd };

bool IsWordByte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         byte >= 0x80;
}

using Symbols = std::set<std::string, std::less<>>;

// What stands behind #if: or := and { "||" and }, and := equal { "&&" equal }, equal := term { ("=="|"!=")
// term }, term := "!" term | "(" or ")" | NAME. What is not understood counts as false.
class PreprocessorCondition {
 public:
  PreprocessorCondition(std::string_view text, const Symbols& symbols) : text_(text), symbols_(symbols) {}
  bool Read() { return ReadOr(0); }

 private:
  static constexpr int kDeepest = 50;

  bool Take(std::string_view mark) {
    text_ = TrimView(text_);
    if (!text_.starts_with(mark)) return false;
    text_.remove_prefix(mark.size());
    return true;
  }
  bool ReadOr(int depth) {
    bool result = ReadAnd(depth);
    while (Take("||")) result = ReadAnd(depth) || result;
    return result;
  }
  bool ReadAnd(int depth) {
    bool result = ReadEqual(depth);
    while (Take("&&")) result = ReadEqual(depth) && result;
    return result;
  }
  bool ReadEqual(int depth) {
    bool result = ReadTerm(depth);
    for (;;) {
      if (Take("==")) {
        result = ReadTerm(depth) == result;
      } else if (Take("!=")) {
        result = ReadTerm(depth) != result;
      } else {
        return result;
      }
    }
  }
  bool ReadTerm(int depth) {
    if (depth > kDeepest) return false;
    if (Take("!")) return !ReadTerm(depth + 1);
    if (Take("(")) {
      const bool inner = ReadOr(depth + 1);
      Take(")");
      return inner;
    }
    text_ = TrimView(text_);
    std::size_t size = 0;
    while (size < text_.size() && IsWordByte(text_[size])) ++size;
    const std::string_view name = text_.substr(0, size);
    text_.remove_prefix(size);
    return name == "true" || symbols_.contains(name);
  }

  std::string_view text_;
  const Symbols& symbols_;
};

// Words (with the points between them), texts and single marks of a source, without comments and preprocessor lines.
class SourceReader {
 public:
  // Without symbols every branch of an #if is read.
  SourceReader(NetLanguage language, std::string_view source, const Symbols* symbols = nullptr)
      : basic_(language == NetLanguage::VisualBasic), rest_(source) {
    if (symbols != nullptr && !basic_) symbols_ = *symbols;
    followsConditions_ = symbols != nullptr && !basic_;
    if (rest_.starts_with("\xEF\xBB\xBF")) rest_.remove_prefix(3);
  }

  // Of a text: what stands between its quotes, as written. Line ends are told of in Visual Basic alone.
  Token Next(std::string& value) {
    for (;;) {
      value.clear();
      if (rest_.empty()) return Token::End;
      const char c = rest_[0];
      if (c == '\n') {
        atLineStart_ = true;
        rest_.remove_prefix(1);
        if (basic_) return Token::LineEnd;
      } else if (static_cast<unsigned char>(c) <= ' ') {
        rest_.remove_prefix(1);
      } else if (c == '#' && atLineStart_) {
        TakeDirective();
      } else if (IsLineComment()) {
        TakeLine();
      } else if (!basic_ && rest_.starts_with("/*")) {
        const std::size_t end = rest_.find("*/", 2);
        rest_ = rest_.substr(end == std::string_view::npos ? rest_.size() : end + 2);
      } else {
        atLineStart_ = false;
        return ReadToken(value);
      }
    }
  }

 private:
  // To the end of the line, which stays.
  std::string_view TakeLine() {
    const std::string_view line = rest_.substr(0, rest_.find('\n'));
    rest_.remove_prefix(line.size());
    return line;
  }

  // A branch that is not compiled is passed over in whole lines.
  void TakeDirective() {
    bool passesOver = false;
    do {
      std::string_view line = TrimView(TakeLine());
      if (line.starts_with('#') && followsConditions_)
        passesOver = !IsCompiledAfter(TrimView(line.substr(1)));
      if (passesOver && !rest_.empty()) rest_.remove_prefix(1);
    } while (passesOver && !rest_.empty());
  }

  // Whether the lines behind a directive are compiled.
  bool IsCompiledAfter(std::string_view directive) {
    std::size_t size = 0;
    while (size < directive.size() && IsWordByte(directive[size])) ++size;
    const std::string_view word = directive.substr(0, size);
    std::string_view argument = directive.substr(size);
    argument = TrimView(argument.substr(0, argument.find("//")));
    const bool outer = branches_.size() < 2 || branches_[branches_.size() - 2].isTaken;
    if (word == "if") {
      const bool above = branches_.empty() || branches_.back().isTaken;
      const bool holds = above && PreprocessorCondition(argument, symbols_).Read();
      branches_.push_back({holds, holds});
    } else if (word == "elif" && !branches_.empty()) {
      Branch& branch = branches_.back();
      branch.isTaken = outer && !branch.wasTaken && PreprocessorCondition(argument, symbols_).Read();
      branch.wasTaken = branch.wasTaken || branch.isTaken;
    } else if (word == "else" && !branches_.empty()) {
      branches_.back().isTaken = outer && !branches_.back().wasTaken;
      branches_.back().wasTaken = true;
    } else if (word == "endif" && !branches_.empty()) {
      branches_.pop_back();
    } else if (word == "define") {
      symbols_.emplace(argument);
    } else if (word == "undef") {
      symbols_.erase(std::string(argument));
    }
    return branches_.empty() || branches_.back().isTaken;
  }

  bool IsLineComment() const { return basic_ ? rest_[0] == '\'' : rest_.starts_with("//"); }

  Token ReadToken(std::string& value) {
    if (!basic_ && rest_.starts_with("@\"")) {
      rest_.remove_prefix(1);
      return ReadVerbatim(value);
    }
    if (rest_[0] == '"') return basic_ ? ReadVerbatim(value) : ReadText('"', value);
    if (!basic_ && rest_[0] == '\'') return ReadText('\'', value);
    if (!basic_ && rest_[0] == '@') rest_.remove_prefix(1);  // an identifier that looks like a keyword
    if (rest_.empty() || !IsWordByte(rest_[0])) {
      value = rest_.substr(0, 1);
      rest_ = rest_.substr(std::min<std::size_t>(1, rest_.size()));
      return Token::Mark;
    }
    std::size_t size = 0;
    while (size < rest_.size() && (IsWordByte(rest_[size]) || rest_[size] == '.')) ++size;
    value = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return Token::Word;
  }

  // A doubled quote stands for one; it may go over lines.
  Token ReadVerbatim(std::string& value) {
    std::size_t at = 1;
    for (; at < rest_.size(); ++at) {
      if (rest_[at] == '"') {
        if (at + 1 >= rest_.size() || rest_[at + 1] != '"') break;
        ++at;
      } else if (basic_ && rest_[at] == '\n') {
        break;
      }
      value += rest_[at];
    }
    rest_ = rest_.substr(std::min(at + 1, rest_.size()));
    return Token::Text;
  }

  // Ends at its quote or with the line. Only the escapes that a path may hold are undone.
  Token ReadText(char quote, std::string& value) {
    std::size_t at = 1;
    for (; at < rest_.size() && rest_[at] != quote && rest_[at] != '\n'; ++at) {
      if (rest_[at] == '\\' && at + 1 < rest_.size()) ++at;
      value += rest_[at];
    }
    rest_ = rest_.substr(std::min(at + 1, rest_.size()));
    return Token::Text;
  }

  struct Branch {
    bool isTaken, wasTaken;  // this one; one of those before it
  };

  bool basic_;
  std::string_view rest_;
  bool atLineStart_ = true;
  bool followsConditions_ = false;
  Symbols symbols_;
  std::vector<Branch> branches_;  // of the #if lines around
};

std::string Joined(const std::vector<std::string>& namespaces, const std::string& name) {
  std::string full;
  for (const std::string& part : namespaces) full += part.empty() ? "" : part + ".";
  return full + name;
}

std::string FirstClassOfCSharp(std::string_view source) {
  SourceReader reader(NetLanguage::CSharp, source);
  std::vector<std::string> open;  // a block each: the namespace it is, or nothing
  std::string value, pending;
  for (Token token; (token = reader.Next(value)) != Token::End;) {
    if (token == Token::Word && value == "namespace") {
      if (reader.Next(pending) != Token::Word) pending.clear();
    } else if (token == Token::Word && value == "class") {
      std::string name;
      if (reader.Next(name) == Token::Word) return Joined(open, name);
    } else if (token == Token::Mark && value == "{") {
      open.push_back(pending);
      pending.clear();
    } else if (token == Token::Mark && value == "}" && !open.empty()) {
      open.pop_back();
    }
  }
  return {};
}

std::string FirstClassOfBasic(std::string_view source) {
  SourceReader reader(NetLanguage::VisualBasic, source);
  std::vector<std::string> open;
  std::string value, before;
  for (Token token; (token = reader.Next(value)) != Token::End; before = value) {
    if (token != Token::Word) continue;
    const bool ends = SameText(before, "End");
    if (SameText(value, "Namespace")) {
      std::string name;
      if (ends && !open.empty()) open.pop_back();
      if (!ends && reader.Next(name) == Token::Word) open.push_back(name);
    } else if (SameText(value, "Class") && !ends) {
      std::string name;
      if (reader.Next(name) == Token::Word) return Joined(open, name);
    }
  }
  return {};
}

bool IsKeyFileName(NetLanguage language, std::string_view word) {
  word.remove_prefix(std::min(word.rfind('.') + 1, word.size()));  // npos + 1 is 0
  for (const std::string_view name : {"AssemblyKeyFile", "AssemblyKeyFileAttribute"}) {
    if (language == NetLanguage::VisualBasic ? SameText(word, name) : word == name) return true;
  }
  return false;
}

}  // namespace

std::string FirstClass(NetLanguage language, std::string_view source) {
  return language == NetLanguage::VisualBasic ? FirstClassOfBasic(source) : FirstClassOfCSharp(source);
}

std::optional<std::string> KeyFileAttribute(NetLanguage language, std::string_view source,
                                            std::string_view symbols) {
  Symbols defined;
  while (!symbols.empty()) {
    const std::size_t size = std::min(symbols.find_first_of(";, \t"), symbols.size());
    if (size > 0) defined.emplace(symbols.substr(0, size));
    symbols.remove_prefix(std::min(size + 1, symbols.size()));
  }
  SourceReader reader(language, source, &defined);
  std::optional<std::string> found;
  std::string value;
  for (Token token; (token = reader.Next(value)) != Token::End;) {
    if (token != Token::Word || !IsKeyFileName(language, value)) continue;
    if (reader.Next(value) != Token::Mark || value != "(") continue;
    if (reader.Next(value) == Token::Text) found = value;
  }
  return found;
}

}  // namespace qx
