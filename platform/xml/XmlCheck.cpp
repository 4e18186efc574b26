#include "platform/xml/XmlCheck.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr std::size_t kMostDepth = 256;
constexpr std::size_t kFewAttributes = 32;  // so many are compared with each other, more are looked up

// What an ASCII character may be without being looked at more closely. The zero behind the text is nothing.
enum : unsigned char { kText = 1, kValue = 2, kName = 4, kNameStart = 8, kBlank = 16 };
constexpr std::array<unsigned char, 256> kClasses = [] {
  std::array<unsigned char, 256> classes{};
  for (std::size_t c = 0x20; c < 0x80; ++c) classes[c] = kText | kValue;
  for (const char c : {' ', '\t', '\r', '\n'})
    classes[static_cast<unsigned char>(c)] = kText | kValue | kBlank;
  for (const char c : {'<', '&', ']'})
    classes[static_cast<unsigned char>(c)] &= static_cast<unsigned char>(~kText);
  for (const char c : {'<', '&', '"', '\''})
    classes[static_cast<unsigned char>(c)] &= static_cast<unsigned char>(~kValue);
  for (std::size_t c = 'a'; c <= 'z'; ++c) {
    for (const std::size_t letter : {c, c - 'a' + 'A'}) classes[letter] |= kName | kNameStart;
  }
  for (std::size_t c = '0'; c <= '9'; ++c) classes[c] |= kName;
  for (const char c : {'_', '-', '.'}) classes[static_cast<unsigned char>(c)] |= kName;
  return classes;
}();
constexpr bool Is(char c, unsigned char kind) {
  return (kClasses[static_cast<unsigned char>(c)] & kind) != 0;
}

struct Range {
  char32_t first, last;
};
constexpr Range kCharacters[] = {
    {0x9, 0xA}, {0xD, 0xD}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}};
constexpr Range kNameStarts[] = {{':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
                                 {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
                                 {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
                                 {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
constexpr Range kNameGoesOn[] = {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t count>
bool IsOneOf(const Range (&ranges)[count], char32_t c) {
  return std::any_of(std::begin(ranges), std::end(ranges),
                     [c](const Range& range) { return range.first <= c && c <= range.last; });
}

// A name as it may stand in a message, however long it is.
std::string Shown(std::string_view name) {
  constexpr std::size_t kMost = 80;
  if (name.size() <= kMost) return std::string(name);
  std::size_t end = kMost;
  while (!BeginsCharacter(name[end])) --end;
  return std::string(name.substr(0, end)) + "...";
}

class Checker {
 public:
  explicit Checker(const std::string& text) : text_(text), at_(text.data()), end_(at_ + text.size()) {}

  void Check() {
    Take("\xEF\xBB\xBF");
    if (Begins("<?xml") && Is(at_[5], kBlank)) Declaration();
    for (;;) {
      open_.empty() ? Outside() : Text();
      if (at_ == end_) break;
      ++at_;
      if (*at_ == '/')
        EndTag();
      else if (*at_ == '!')
        Exclamation();
      else if (*at_ == '?')
        Instruction();
      else
        StartTag();
    }
    if (!open_.empty()) Refuse("the element " + Shown(open_.back()) + " is not closed");
    if (!sawRoot_) Refuse("there is no element");
  }

 private:
  [[noreturn]] void Refuse(const std::string& fault) const {
    throw Exception(fault + " (line " + std::to_string(1 + std::count(text_.data(), at_, '\n')) + ")");
  }

  bool Begins(std::string_view word) const {
    return std::string_view(at_, static_cast<std::size_t>(end_ - at_)).starts_with(word);
  }
  bool Take(std::string_view word) {
    const bool taken = Begins(word);
    if (taken) at_ += word.size();
    return taken;
  }
  void Need(char c, const char* where) {
    if (*at_ != c) Refuse(Quoted({&c, 1}) + " is missing " + where);
    ++at_;
  }
  // Past the characters of that kind. The place is kept outside of the object meanwhile, or each step would be stored.
  void Skip(unsigned char kind) {
    const char* at = at_;
    while (Is(*at, kind)) ++at;
    at_ = at;
  }
  bool TakeBlanks() {
    const char* const begin = at_;
    Skip(kBlank);
    return at_ != begin;
  }

  // The code point here, and past it.
  char32_t Next() {
    std::size_t size = 0;
    const char32_t c = NextCodePoint(std::string_view(at_, static_cast<std::size_t>(end_ - at_)), size);
    if (c == kNoCodePoint) Refuse("bytes that are no text in the file's encoding");
    if (!IsOneOf(kCharacters, c)) Refuse("a character that no file may hold: U+" + UpperHex(c, 4));
    at_ += size;
    return c;
  }

  std::string_view Name() {
    const char* const begin = at_;
    if (!Is(*at_, kNameStart) && (at_ == end_ || !IsOneOf(kNameStarts, Next()))) {
      Refuse("a name is missing or begins with a character that it cannot begin with");
    }
    if (*begin == ':') hasPrefixes_ = true;
    for (;;) {
      Skip(kName);
      if (*at_ == ':') {
        hasPrefixes_ = true;
        ++at_;
      } else if (static_cast<unsigned char>(*at_) < 0x80) {
        break;
      } else {
        const char* const here = at_;
        const char32_t c = Next();
        if (IsOneOf(kNameStarts, c) || IsOneOf(kNameGoesOn, c)) continue;
        at_ = here;
        break;
      }
    }
    return {begin, static_cast<std::size_t>(at_ - begin)};
  }

  void Reference() {
    ++at_;
    for (const std::string_view known : {"lt;", "gt;", "amp;", "quot;", "apos;"}) {
      if (Take(known)) return;
    }
    if (!Take("#")) Refuse("an entity that is not known");
    const bool isHex = Take("x");
    char32_t c = 0;
    const char* const digits = at_;
    for (; HexDigit(*at_) >= 0 && (isHex || HexDigit(*at_) < 10); ++at_) {
      c = std::min<char32_t>(c * (isHex ? 16 : 10) + static_cast<char32_t>(HexDigit(*at_)), 0x110000);
    }
    if (at_ == digits || !Take(";") || !IsOneOf(kCharacters, c)) Refuse("a reference to no character");
  }

  void Outside() {
    TakeBlanks();
    if (at_ != end_ && *at_ != '<') Refuse("text outside of the outermost element");
  }

  void Text() {
    for (;;) {
      Skip(kText);
      if (*at_ == '<' || at_ == end_) return;
      if (*at_ == '&')
        Reference();
      else if (Begins("]]>"))
        Refuse("\"]]>\" in a text");
      else
        Next();
    }
  }

  // Past the next such word.
  void SkipPast(std::string_view word, const char* what) {
    for (;;) {
      while (Is(*at_, kText) && *at_ != word[0]) ++at_;
      if (Take(word)) return;
      if (at_ == end_) Refuse(std::string(what) + " is not closed");
      Next();
    }
  }

  void Exclamation() {
    if (Take("!--")) {
      SkipPast("--", "a comment");
      return Need('>', "behind \"--\" in a comment");
    }
    if (Take("![CDATA[")) {
      if (open_.empty()) Refuse("text outside of the outermost element");
      return SkipPast("]]>", "a section of characters");
    }
    Refuse(Begins("!DOCTYPE") ? "a document type is not allowed" : "markup that begins with \"<!\"");
  }

  void Instruction() {
    ++at_;
    if (SameText(Name(), "xml")) Refuse("a declaration that is not the file's beginning");
    if (Take("?>")) return;
    if (!TakeBlanks()) Refuse("a blank is missing in an instruction");
    SkipPast("?>", "an instruction");
  }

  std::string_view Value() {
    const char quote = *at_;
    if (quote != '"' && quote != '\'') Refuse("a value without quotes");
    const char* const begin = ++at_;
    for (;;) {
      Skip(kValue);
      if (*at_ == quote) break;
      if (at_ == end_) Refuse("a value is not closed");
      if (*at_ == '&')
        Reference();
      else if (*at_ == '<')
        Refuse("\"<\" in a value");
      else
        Next();
    }
    return {begin, static_cast<std::size_t>(at_++ - begin)};
  }

  std::string_view Assigned() {
    TakeBlanks();
    Need('=', "behind a name");
    TakeBlanks();
    return Value();
  }

  void Declaration() {
    at_ += 5;
    TakeBlanks();
    if (!Take("version") || Assigned() != "1.0")
      Refuse("the declaration says no version, or another than 1.0");
    bool blank = TakeBlanks();
    if (blank && Take("encoding")) {
      CheckEncodingName(Assigned());
      blank = TakeBlanks();
    }
    if (blank && Take("standalone")) {
      const std::string_view answer = Assigned();
      if (answer != "yes" && answer != "no") Refuse("standalone is neither yes nor no");
      TakeBlanks();
    }
    if (!Take("?>"))
      Refuse("the declaration holds more than a version, an encoding and standalone, or is not closed");
  }

  // Which encodings there are knows who decoded the text.
  void CheckEncodingName(std::string_view name) const {
    const bool isName = !name.empty() && name[0] != '_' && Is(name[0], kNameStart) &&
                        std::all_of(name.begin(), name.end(), [](char c) { return Is(c, kName); });
    if (!isName) Refuse("an encoding whose name is none");
  }

  void StartTag() {
    if (open_.empty() && sawRoot_) Refuse("a second outermost element");
    sawRoot_ = true;
    attributes_.clear();
    hasPrefixes_ = false;
    const std::string_view element = Name();
    open_.push_back(element);
    if (open_.size() > kMostDepth) Refuse("elements lie in each other more than 256 deep");
    for (;;) {
      const bool blank = TakeBlanks();
      if (*at_ == '>' || Begins("/>")) break;
      if (!blank) Refuse("a blank or \">\" is missing in the tag " + Shown(element));
      Attribute();
    }
    if (hasPrefixes_) CheckPrefixes(element);
    if (*at_++ == '>') return;
    ++at_;
    Close();
  }

  void Attribute() {
    const std::string_view name = Name();
    const bool isNew = attributes_.size() < kFewAttributes
                           ? std::find(attributes_.begin(), attributes_.end(), name) == attributes_.end()
                           : IsNewAmongMany(name);
    if (!isNew) Refuse("the attribute " + Shown(name) + " stands twice");
    attributes_.push_back(name);
    const std::string_view value = Assigned();
    if (name.starts_with("xmlns:") && value.empty()) Refuse("a namespace without a name");
  }

  bool IsNewAmongMany(std::string_view name) {
    if (attributes_.size() == kFewAttributes) many_ = {attributes_.begin(), attributes_.end()};
    return many_.insert(name).second;
  }

  // Of the open element's tag: each has to be declared, there or further out.
  void CheckPrefixes(std::string_view element) {
    for (const std::string_view name : attributes_) {
      if (!name.starts_with("xmlns:")) continue;
      declarations_.push_back({name.substr(6), open_.size()});
      ++declared_[name.substr(6)];
    }
    CheckPrefix(element);
    for (const std::string_view name : attributes_) CheckPrefix(name);
  }
  void CheckPrefix(std::string_view name) const {
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos) return;
    const std::string_view prefix = name.substr(0, colon), local = name.substr(colon + 1);
    std::size_t second = 0;
    if (prefix.empty() || local.empty() || local.find(':') != std::string_view::npos ||
        !IsOneOf(kNameStarts, NextCodePoint(local, second))) {
      Refuse("the name " + Shown(name) + " has its colon in a wrong place");
    }
    if (prefix == "xml" || prefix == "xmlns" || declared_.contains(prefix)) return;
    Refuse("the prefix " + Shown(prefix) + " is not declared");
  }

  void EndTag() {
    ++at_;
    const std::string_view name = Name();
    TakeBlanks();
    Need('>', "in an end tag");
    if (open_.empty()) Refuse("the end tag " + Shown(name) + " has no start tag");
    if (name != open_.back()) {
      Refuse("the end tag " + Shown(name) + " stands where " + Shown(open_.back()) + " is open");
    }
    Close();
  }

  void Close() {
    for (; !declarations_.empty() && declarations_.back().depth == open_.size(); declarations_.pop_back()) {
      const auto declared = declared_.find(declarations_.back().prefix);
      if (--declared->second == 0) declared_.erase(declared);
    }
    open_.pop_back();
  }

  struct Declared {
    std::string_view prefix;
    std::size_t depth;
  };

  const std::string& text_;
  const char* at_;
  const char* const end_;
  bool sawRoot_ = false;
  bool hasPrefixes_ = false;  // in the tag that is read
  std::vector<std::string_view> open_;
  std::vector<std::string_view> attributes_;   // of the tag that is read
  std::unordered_set<std::string_view> many_;  // the same, where there are many
  std::vector<Declared> declarations_;
  std::map<std::string_view, std::size_t> declared_;  // and how often
};

}  // namespace

void CheckXml(const std::string& text) { Checker(text).Check(); }

}  // namespace qx
