#include "engine/vc/ResourceScript.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

#include "platform/Texts.h"
#include "platform/files/TextFile.h"
#include "platform/xml/XmlEncoding.h"

namespace qx {
namespace {

struct CulturePage {
  int language;  // the low ten bits of a culture
  std::uint32_t codePage;
};
constexpr std::array kPages = {
    CulturePage{0x11, 932},  CulturePage{0x12, 949},  CulturePage{0x19, 1251}, CulturePage{0x02, 1251},
    CulturePage{0x22, 1251}, CulturePage{0x23, 1251}, CulturePage{0x05, 1250}, CulturePage{0x0E, 1250},
    CulturePage{0x15, 1250}, CulturePage{0x18, 1250}, CulturePage{0x1A, 1250}, CulturePage{0x1B, 1250},
    CulturePage{0x24, 1250}, CulturePage{0x08, 1253}, CulturePage{0x1F, 1254}, CulturePage{0x0D, 1255},
    CulturePage{0x01, 1256}, CulturePage{0x1E, 874},
};

std::string Decode(std::string_view bytes, std::uint32_t codePage) {
  if (IsAscii(bytes) || codePage == 65001) return AsValidUtf8(bytes);
  const std::string name = "CP" + std::to_string(codePage);
  return system::DecodeLegacy(LegacyEncoding{name, name.c_str(), codePage}, bytes);
}

// Words, numbers, quoted texts and single signs of a line, up to a comment.
std::vector<std::string_view> Tokens(std::string_view line) {
  std::vector<std::string_view> tokens;
  const auto isWord = [](char c) {
    return static_cast<unsigned char>(c) > ' ' && !std::strchr("\",{}()|", c);
  };
  for (std::size_t at = 0; at < line.size();) {
    if (static_cast<unsigned char>(line[at]) <= ' ') {
      ++at;
      continue;
    }
    if (line.substr(at, 2) == "//" || line.substr(at, 2) == "/*") break;
    std::size_t end = at + 1;
    if (line[at] == '"') {
      while (end < line.size() && line[end] != '"') ++end;
      end = std::min(end + 1, line.size());
    } else if (isWord(line[at])) {
      while (end < line.size() && isWord(line[end])) ++end;
    }
    tokens.push_back(line.substr(at, end - at));
    at = end;
  }
  return tokens;
}

bool IsFlag(std::string_view word) {
  constexpr std::array<std::string_view, 7> kFlags = {"MOVEABLE", "FIXED",      "PURE",       "IMPURE",
                                                      "PRELOAD",  "LOADONCALL", "DISCARDABLE"};
  return std::any_of(kFlags.begin(), kFlags.end(),
                     [&](std::string_view each) { return SameText(each, word); });
}

// A file name as a script writes it: "\\" is one backslash, and either delimiter does.
std::string FileName(std::string_view token) {
  if (token.size() >= 2 && token.front() == '"') token = token.substr(1, token.size() - 2);
  std::string name;
  for (const char c : token) {
    const bool delimiter = c == '\\' || c == '/';
    if (!delimiter || name.empty() || name.back() != '/') name += delimiter ? '/' : c;
  }
  return name;
}

class Translator {
 public:
  Translator(std::uint32_t codePage, const ResourceResolver& resolve)
      : codePage_(codePage), resolve_(resolve) {}

  void Line(std::string_view raw) {
    const std::string line = Decode(raw, codePage_);
    if (line.find_first_not_of(" \t\f") == std::string::npos) return Put("");
    if (TrimView(line).starts_with('#')) return Directive(line);
    const std::vector<std::string_view> tokens = Tokens(line);
    if (tokens.empty()) return Put(line);
    if (depth_ == 0) return Statement(line, tokens);
    Count(tokens);
    if (dlginit_) return Numbers(tokens);
    Put(line);
  }

  ResourceCopy Finish() && { return std::move(copy_); }

 private:
  void Put(std::string_view line) { (copy_.text += line) += '\n'; }

  void Note(std::string note) {
    if (std::find(copy_.notes.begin(), copy_.notes.end(), note) == copy_.notes.end()) {
      copy_.notes.push_back(std::move(note));
    }
  }

  void Count(const std::vector<std::string_view>& tokens) {
    for (const std::string_view token : tokens) {
      if (token == "{" || SameText(token, "BEGIN")) ++depth_;
      if (token == "}" || SameText(token, "END")) depth_ = std::max(0, depth_ - 1);
    }
  }

  // Of #include the name, of #pragma code_page the number: the copy is UTF-8 throughout.
  void Directive(const std::string& line) {
    std::string_view rest = TrimView(line).substr(1);
    rest = TrimView(rest);
    if (rest.starts_with("include")) {
      std::string_view name = TrimView(rest.substr(7));
      const bool quoted = name.starts_with('"');
      const std::size_t end = name.find(quoted ? '"' : '>', 1);
      if (end == std::string_view::npos) return Put(line);
      const std::string found =
          resolve_({FileName("\"" + std::string(name.substr(1, end - 1)) + "\""), true});
      return Put(found.empty() ? line : "#include \"" + found + "\"");
    }
    const std::size_t page = rest.find("code_page");
    if (!rest.starts_with("pragma") || page == std::string_view::npos) return Put(line);
    const std::size_t digit = rest.find_first_of("0123456789", page);
    if (digit != std::string_view::npos) {
      const std::string_view number = rest.substr(digit, rest.find_first_not_of("0123456789", digit) - digit);
      codePage_ = static_cast<std::uint32_t>(ToInteger(number).value_or(1252));
    }
    Put("");
  }

  void Statement(const std::string& line, const std::vector<std::string_view>& tokens) {
    Count(tokens);
    const std::string_view type = tokens.size() > 1 ? tokens[1] : std::string_view();
    if (SameText(type, "VERSIONINFO")) {
      std::string out(tokens[0]);
      for (const std::string_view token : std::vector(tokens.begin() + 1, tokens.end())) {
        if (IsFlag(token)) {
          Note("the memory flags behind VERSIONINFO mean nothing and are left out");
        } else {
          (out += ' ') += token;
        }
      }
      return Put(out);
    }
    if (SameText(type, "DLGINIT")) {
      dlginit_ = true;
      Note("DLGINIT is written as the resource type 240 that it stands for");
      Put(std::string(tokens[0]) + " 240");
      return Numbers(std::vector(tokens.begin() + 2, tokens.end()));
    }
    if (dlginit_) return Numbers(tokens);
    if (depth_ == 0 && tokens.size() >= 3 && IsFileStatement(tokens)) {
      const std::string found = resolve_({FileName(tokens.back()), false});
      if (!found.empty()) {
        return Put(std::string(tokens[0]) + ' ' + std::string(type) + " \"" + found + '"');
      }
    }
    Put(line);
  }

  // "id TYPE [flags] file", and nothing else.
  static bool IsFileStatement(const std::vector<std::string_view>& tokens) {
    const auto isName = [](std::string_view token) { return !std::strchr(",{}()|", token[0]); };
    return std::all_of(tokens.begin(), tokens.end(), isName) && tokens[1][0] != '=' &&
           std::all_of(tokens.begin() + 2, tokens.end() - 1, IsFlag);
  }

  // The old compiler took numbers without a comma between them, over the end of a line too.
  void Numbers(const std::vector<std::string_view>& tokens) {
    std::string out;
    for (const std::string_view token : tokens) {
      const bool begins = token == "{" || SameText(token, "BEGIN");
      const bool ends = token == "}" || SameText(token, "END");
      if (token == "," || IsFlag(token)) continue;
      (out += needsComma_ && !ends ? ", " : " ") += token;
      needsComma_ = !begins && !ends;
      if (ends) dlginit_ = false;
    }
    Put(out);
  }

  std::uint32_t codePage_;
  const ResourceResolver& resolve_;
  ResourceCopy copy_;
  int depth_ = 0;
  bool dlginit_ = false, needsComma_ = false;
};

}  // namespace

ResourceCopy TranslateResourceScript(std::string_view bytes, std::uint32_t codePage, const std::string& path,
                                     const ResourceResolver& resolve) {
  std::string scratch;
  const bool marked = EncodingOf(bytes) != TextEncoding::Bytes;
  const std::string_view text = DecodeText(bytes, scratch);
  Translator translator(marked ? 65001 : codePage, resolve);
  ForEachLine(text, [&](std::string_view line) { translator.Line(line); });
  ResourceCopy copy = std::move(translator).Finish();
  std::string head = "#line 1 \"";
  for (const char c : path) head += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
  copy.text = head + "\"\n" + copy.text;
  return copy;
}

std::uint32_t CodePageOfCulture(std::string_view culture) {
  const int number = ToInteger(TrimView(culture)).value_or(0);
  if ((number & 0x3FF) == 0x04) return number == 0x0404 || number == 0x0C04 ? 950 : 936;
  for (const CulturePage& each : kPages) {
    if (each.language == (number & 0x3FF)) return each.codePage;
  }
  return 1252;
}

}  // namespace qx
