#include "projects/net/MsBuildProperties.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "platform/Texts.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

bool IsNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
}

bool IsName(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsNameCharacter);
}

// A decimal number as conditions compare it.
std::optional<double> Number(std::string_view text) {
  double value = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (text.find_first_not_of("0123456789.+-") != std::string_view::npos) return std::nullopt;  // "inf"
  return value;
}

Truth Not(Truth a) { return a == Truth::Unknown ? a : a == Truth::Yes ? Truth::No : Truth::Yes; }
Truth And(Truth a, Truth b) {
  if (a == Truth::No || b == Truth::No) return Truth::No;
  return a == Truth::Yes && b == Truth::Yes ? Truth::Yes : Truth::Unknown;
}
Truth Or(Truth a, Truth b) { return Not(And(Not(a), Not(b))); }
Truth Of(bool value) { return value ? Truth::Yes : Truth::No; }

// One condition, read from left to right:
//   or   := and { "or" and }          and  := term { "and" term }
//   term := "!" term | "(" or ")" | NAME "(" operand ")" | operand [ relation operand ]
class ConditionReader {
 public:
  ConditionReader(std::string_view text, const std::string& folder, const MsBuildProperties& properties)
      : text_(text), folder_(folder), properties_(properties) {}

  Truth Read(std::string& doubt) {
    Truth result = ReadOr(0);
    SkipBlanks();
    if (!text_.empty())
      result = Doubtful("it is not understood at \"" + std::string(text_.substr(0, 20)) + "\"");
    doubt = result == Truth::Unknown ? doubt_ : std::string();
    return result;
  }

 private:
  static constexpr int kDeepest = 40;

  struct Operand {
    NetText text;
    bool isQuoted = false;
  };

  Truth Doubtful(const std::string& why) {
    if (doubt_.empty()) doubt_ = why;
    return Truth::Unknown;
  }

  void SkipBlanks() { text_ = text_.substr(std::min(text_.find_first_not_of(" \t\r\n"), text_.size())); }

  bool Take(std::string_view word) {
    SkipBlanks();
    if (!text_.starts_with(word)) return false;
    text_.remove_prefix(word.size());
    return true;
  }

  bool TakeWord(std::string_view word) {
    SkipBlanks();
    if (!SameText(text_.substr(0, word.size()), word)) return false;
    if (text_.size() > word.size() && IsNameCharacter(text_[word.size()])) return false;
    text_.remove_prefix(word.size());
    return true;
  }

  Truth ReadOr(int depth) {
    Truth result = ReadAnd(depth);
    while (TakeWord("or")) result = Or(result, ReadAnd(depth));
    return result;
  }

  Truth ReadAnd(int depth) {
    Truth result = ReadTerm(depth);
    while (TakeWord("and")) result = And(result, ReadTerm(depth));
    return result;
  }

  Truth ReadTerm(int depth) {
    if (depth > kDeepest) return Doubtful("it is nested too deeply");
    SkipBlanks();
    if (!text_.starts_with("!=") && Take("!")) return Not(ReadTerm(depth + 1));
    if (Take("(")) {
      const Truth inner = ReadOr(depth + 1);
      return Take(")") ? inner : Doubtful("a bracket is not closed");
    }
    const Operand left = ReadOperand();
    if (!left.isQuoted && IsName(left.text.value) && Take("(")) {
      const Operand argument = ReadOperand();
      if (!Take(")")) return Doubtful("a bracket is not closed");
      return CallFunction(left.text.value, argument.text);
    }
    for (const char* relation : {"==", "!=", "<=", ">=", "<", ">"}) {
      if (Take(relation)) return Compare(left.text, relation, ReadOperand().text);
    }
    if (!left.text.doubt.empty()) return Doubtful(left.text.doubt);
    for (const char* yes : {"true", "on", "yes"}) {
      if (SameText(left.text.value, yes)) return Truth::Yes;
    }
    for (const char* no : {"false", "off", "no"}) {
      if (SameText(left.text.value, no)) return Truth::No;
    }
    return Doubtful("it is not understood");
  }

  Operand ReadOperand() {
    SkipBlanks();
    Operand operand;
    std::size_t size = 0;
    if (text_.starts_with('\'')) {
      const std::size_t end = text_.find('\'', 1);
      operand.isQuoted = true;
      if (end == std::string_view::npos) {
        operand.text.doubt = "a quote is not closed";
        text_ = {};
        return operand;
      }
      operand.text = properties_.Expand(text_.substr(1, end - 1));
      text_.remove_prefix(end + 1);
      return operand;
    }
    if (text_.starts_with("$(")) {
      size = std::min(text_.find(')'), text_.size() - 1) + 1;
      operand.isQuoted = true;
    } else {
      while (size < text_.size() && (IsNameCharacter(text_[size]) || text_[size] == '.')) ++size;
    }
    operand.text = properties_.Expand(text_.substr(0, size));
    text_.remove_prefix(size);
    return operand;
  }

  Truth CallFunction(std::string_view name, const NetText& argument) {
    if (!argument.doubt.empty()) return Doubtful(argument.doubt);
    if (SameText(name, "Exists")) {
      return Of(!argument.value.empty() && !FindExisting(ExpandPath(folder_, argument.value)).empty());
    }
    if (SameText(name, "HasTrailingSlash")) {
      return Of(!argument.value.empty() && IsDelimiter(argument.value.back()));
    }
    return Doubtful("the function " + std::string(name) + " is not known here");
  }

  Truth Compare(const NetText& left, std::string_view relation, const NetText& right) {
    if (!left.doubt.empty()) return Doubtful(left.doubt);
    if (!right.doubt.empty()) return Doubtful(right.doubt);
    const std::optional<double> a = Number(left.value), b = Number(right.value);
    const bool equal = a && b ? *a == *b : SameText(left.value, right.value);
    if (relation == "==") return Of(equal);
    if (relation == "!=") return Of(!equal);
    if (!a || !b) return Doubtful("it compares what are no numbers");
    if (relation == "<") return Of(*a < *b);
    if (relation == ">") return Of(*a > *b);
    return Of(equal || (relation == "<=" ? *a < *b : *a > *b));
  }

  std::string_view text_;
  const std::string& folder_;
  const MsBuildProperties& properties_;
  std::string doubt_;
};

}  // namespace

void MsBuildProperties::Fix(std::string_view name, std::string_view value) {
  const std::string key = LowerCase(name);
  values_[key] = {std::string(value), ""};
  fixed_[key] = true;
}

void MsBuildProperties::Doubt(std::string_view name, std::string doubt) {
  const std::string key = LowerCase(name);
  if (!fixed_.contains(key)) values_[key].doubt = std::move(doubt);
}

void MsBuildProperties::DoubtAll(const std::string& doubt) {
  allDoubt_ = doubt;
  for (auto& [key, text] : values_) {
    if (text.doubt.empty() && !fixed_.contains(key)) text.doubt = doubt;
  }
}

void MsBuildProperties::Set(std::string_view name, std::string_view text, const std::string& conditionDoubt) {
  const std::string key = LowerCase(name);
  if (fixed_.contains(key)) return;
  constexpr std::size_t kMost = 16 * 1024 * 1024;  // a small file of doublings must not fill the memory
  if (size_ > kMost) return DoubtAll("its properties are too long");
  NetText value = Expand(text);
  if (!conditionDoubt.empty()) {
    const NetText before = Get(name);
    if (before.doubt.empty() && value.doubt.empty() && before.value == value.value) return;
    value.doubt = conditionDoubt;
  }
  size_ += value.value.size();
  values_[key] = std::move(value);
}

NetText MsBuildProperties::Get(std::string_view name) const {
  const auto found = values_.find(LowerCase(name));
  return found != values_.end() ? found->second : NetText{"", allDoubt_};
}

NetText MsBuildProperties::Expand(std::string_view text) const {
  constexpr std::size_t kLongest = 64 * 1024;
  NetText out;
  const auto doubt = [&out](const std::string& why) {
    if (out.doubt.empty()) out.doubt = why;
  };
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view rest = text.substr(at);
    if (out.value.size() > kLongest) {
      doubt("a property is too long");
      break;
    }
    if (rest.starts_with("$(")) {
      const std::size_t end = rest.find(')');
      const std::string_view name = end == std::string_view::npos ? rest : rest.substr(2, end - 2);
      if (end != std::string_view::npos && IsName(name)) {
        const NetText value = Get(name);
        out.value += value.value;
        if (!value.doubt.empty()) doubt(value.doubt);
        at += end + 1;
        continue;
      }
      doubt("\"" + std::string(rest.substr(0, 40)) + "\" is not known here");
    } else if (rest.starts_with("@(") || rest.starts_with("%(")) {
      doubt("\"" + std::string(rest.substr(0, 40)) + "\" is known to the build alone");
    } else if (rest.size() >= 3 && rest[0] == '%' && HexDigit(rest[1]) >= 0 && HexDigit(rest[2]) >= 0) {
      out.value += static_cast<char>(HexDigit(rest[1]) * 16 + HexDigit(rest[2]));
      at += 3;
      continue;
    }
    out.value += text[at++];
  }
  return out;
}

Truth MsBuildProperties::Decide(std::string_view condition, std::string& doubt) const {
  doubt.clear();
  if (TrimView(condition).empty()) return Truth::Yes;
  const Truth truth = ConditionReader(condition, folder_, *this).Read(doubt);
  if (truth == Truth::Unknown)
    doubt = "the condition \"" + Trim(condition) + "\" cannot be decided: " + doubt;
  return truth;
}

}  // namespace qx
