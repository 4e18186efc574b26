#include "versioning/VersionBlock.h"

#include <charconv>

#include "platform/Lines.h"
#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

enum Expected : unsigned { BeginLine = 1, BlockLine = 2, EndLine = 4 };

[[noreturn]] void Unexpected(std::string_view word) { throw Exception("Unexpected " + std::string(word)); }

// The shape that reader and replacer share: which keyword may stand on the next line, and how deep it is.
class BlockShape {
 public:
  // The keyword found anywhere in the line, or nothing. A VALUE whose text contains BEGIN or BLOCK is taken
  // for that keyword; END counts only as the whole line (docs/deliberate.md).
  std::string_view Take(std::string_view upperLine) {
    if (upperLine.find("BEGIN") != std::string_view::npos) {
      Require(BeginLine, "BEGIN");
      ++depth_;
      expected_ = BlockLine | EndLine;
      return "BEGIN";
    }
    if (TrimView(upperLine) == "END") {
      Require(EndLine, "END");
      --depth_;  // what is expected next stays as it was
      return "END";
    }
    if (upperLine.find("BLOCK") != std::string_view::npos) {
      Require(BlockLine, "BLOCK");
      expected_ = BeginLine | EndLine;
      return "BLOCK";
    }
    return {};
  }
  int Depth() const { return depth_; }

 private:
  void Require(Expected keyword, std::string_view word) const {
    if ((expected_ & keyword) == 0) Unexpected(word);
  }

  unsigned expected_ = BeginLine;
  int depth_ = 0;
};

// The header is a line that contains the word and no double quote: a quoted mention is none.
bool FindHeader(std::string_view script, Line& header) {
  std::size_t at = 0;
  while ((at = script.find("VERSIONINFO", at)) != std::string_view::npos) {
    const std::size_t before = at == 0 ? std::string_view::npos : script.find_last_of("\r\n", at - 1);
    const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
    LineCursor(script, begin).Next(header);
    if (header.text.find('"') == std::string_view::npos) return true;
    at = header.next;
  }
  return false;
}

[[noreturn]] void RaiseUnclosed(std::string_view fileName) {
  throw Exception("The VERSIONINFO block is not closed by END: " + std::string(fileName));
}

// Walks the block behind the header, conditions within it included (docs/deliberate.md), and shows
// visit(line, upperLine, keyword, shape) every line of it. Gives the offset behind the final END.
template <class Visitor>
std::size_t WalkBlock(std::string_view script, std::size_t begin, std::string_view fileName,
                      Visitor&& visit) {
  BlockShape shape;
  LineCursor cursor(script, begin);
  for (Line line; cursor.Next(line);) {
    const std::string upper = UpperCase(line.text);
    const std::string_view keyword = shape.Take(upper);
    visit(line.text, std::string_view(upper), keyword, shape);
    if (keyword == "END" && shape.Depth() == 0) return line.next;
  }
  RaiseUnclosed(fileName);
}

// ---- Reading ----------------------------------------------------------------

std::string_view FirstWord(std::string_view text) {
  std::size_t size = 0;
  while (size < text.size() && ((text[size] >= 'A' && text[size] <= 'Z') ||
                                (text[size] >= '0' && text[size] <= '9') || text[size] == '_')) {
    ++size;
  }
  return text.substr(0, size);
}

std::optional<std::uint32_t> ToHex(std::string_view text) {
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// Exactly the third and fourth characters count, so that 0x2BL is read, a form of one digit (0x1L) and one of
// four give 0 (docs/deliberate.md).
std::uint32_t TwoHexDigits(std::string_view text) {
  return text.size() < 4 ? 0 : ToHex(text.substr(2, 2)).value_or(0);
}

std::array<std::int32_t, 4> ReadNumbers(std::string_view text) {
  std::array<std::int32_t, 4> numbers{};
  for (std::int32_t& number : numbers) {
    const std::size_t comma = text.find(',');
    number = ToInteger(TrimView(text.substr(0, comma))).value_or(0);
    text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
  }
  return numbers;
}

// A script's text behind `text`'s next blanks.
std::string_view SkipBlanks(std::string_view text) {
  const std::size_t at = text.find_first_not_of(" \t");
  return at == std::string_view::npos ? std::string_view() : text.substr(at);
}

bool BeginsComment(std::string_view text) { return text.starts_with("//") || text.starts_with("/*"); }

// The literal that `text` begins with, its quote included: as it stands between the quotes, with doubled
// quotes left doubled (docs/deliberate.md). A backslash is no escape here: it may be the second byte of a
// character.
std::string_view TakeLiteral(std::string_view& text) {
  std::size_t end = 1;
  while ((end = text.find('"', end)) != std::string_view::npos && text.substr(end, 2) == "\"\"") end += 2;
  const std::string_view literal = text.substr(1, end == std::string_view::npos ? end : end - 1);
  text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  return literal;
}

// The literals up to a comment or the line's end, one after the other. What stands outside of quotes is a
// macro, whose text a script does not tell.
std::string JoinLiterals(std::string_view text) {
  std::string joined;
  while (!text.empty() && !BeginsComment(text)) {
    if (text.front() == '"') {
      joined += TakeLiteral(text);
    } else {
      text.remove_prefix(1);
    }
  }
  return joined;
}

struct ValueLine {
  std::string key;
  std::string_view rest;  // behind the comma
};

// `text` is what follows the word VALUE.
ValueLine SplitValue(std::string_view text) {
  ValueLine value;
  text = SkipBlanks(text);
  if (text.starts_with('"')) {
    value.key = TakeLiteral(text);
    text = SkipBlanks(text);
    value.rest = text.starts_with(',') ? text.substr(1) : text;
    return value;
  }
  const std::size_t comma = text.find(',');
  value.key = Trim(text.substr(0, comma));
  value.rest = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
  return value;
}

std::string WithoutNulEscapes(std::string_view text) {
  std::string out;
  for (std::size_t at; (at = text.find("\\0")) != std::string_view::npos; text.remove_prefix(at + 2)) {
    out += text.substr(0, at);
  }
  return out += text;
}

// The next of a list of numbers, without the comma, blanks or comment behind it.
std::string_view TakeNumber(std::string_view& text) {
  const std::size_t comma = text.find(',');
  std::string_view number = TrimView(text.substr(0, comma));
  text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
  return number.substr(0, std::min(number.find_first_of(" \t"), number.find('/')));
}

[[noreturn]] void RaiseNotInteger(std::string_view text) {
  throw Exception("'" + std::string(text) + "' is not a valid integer value");
}

void ReadTranslation(std::string_view numbers, VersionReading& reading) {
  const std::string_view locale = TakeNumber(numbers);
  const std::string_view codePage = TakeNumber(numbers);
  // The locale is hexadecimal behind its first two characters, whatever they are (docs/deliberate.md).
  const std::string_view digits = locale.substr(std::min<std::size_t>(2, locale.size()));
  const auto localeValue = ToHex(digits);
  if (!localeValue) RaiseNotInteger(digits);
  const auto codePageValue = ToInteger(codePage);
  if (!codePageValue) RaiseNotInteger(codePage);
  reading.locale = static_cast<std::int32_t>(*localeValue);
  reading.codePage = *codePageValue;
}

struct FixedInfo {
  std::string_view word;
  bool raisesInside;  // PRODUCTVERSION alone may stand behind the first BEGIN (docs/deliberate.md)
  void (*read)(std::string_view text, VersionReading& reading);
};

void ReadFlags(std::string_view text, VersionReading& reading) {
  const std::uint32_t flags = TwoHexDigits(text);
  reading.flags = VersionFlags{(flags & 1) != 0, (flags & 2) != 0, (flags & 0x20) != 0, (flags & 8) != 0};
}

constexpr FixedInfo kFixedInfo[] = {
    {"FILEVERSION", true,
     [](std::string_view text, VersionReading& r) {
       r.numbers = ReadNumbers(text);
       r.writtenNumbers = Trim(text);
     }},
    {"PRODUCTVERSION", false, nullptr},
    {"FILEFLAGSMASK", true, nullptr},
    {"FILEFLAGS", true, ReadFlags},
    {"FILEOS", true, nullptr},
    {"FILETYPE", true, [](std::string_view text, VersionReading& r) { r.isDll = TwoHexDigits(text) != 0; }},
    {"FILESUBTYPE", true, nullptr},
};

const FixedInfo* FindFixedInfo(std::string_view word) {
  for (const FixedInfo& info : kFixedInfo) {
    if (info.word == word) return &info;
  }
  return nullptr;
}

enum class Section { None, Strings, Variables };

Section SectionOf(std::string_view upperLine) {
  if (upperLine.find("STRINGFILEINFO") != std::string_view::npos) return Section::Strings;
  if (upperLine.find("VARFILEINFO") != std::string_view::npos) return Section::Variables;
  return Section::None;
}

void ReadValue(std::string_view text, Section section, VersionReading& reading) {
  const ValueLine value = SplitValue(text);
  if (section == Section::Strings) {
    reading.keys.push_back(value.key + "=" + WithoutNulEscapes(JoinLiterals(value.rest)));
  } else if (section == Section::Variables && SameText(value.key, "Translation")) {
    ReadTranslation(value.rest, reading);
  }
}

// ---- Writing ----------------------------------------------------------------

std::string JoinNumbers(const std::array<std::int32_t, 4>& numbers, char delimiter) {
  std::string text;
  for (const std::int32_t number : numbers) {
    if (!text.empty()) text += delimiter;
    text += std::to_string(number);
  }
  return text;
}

struct KeyLine {
  std::string_view name;  // what stands before the first "="; empty when there is none
  std::string_view value;
};

KeyLine SplitKey(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return {};
  return {line.substr(0, equals), line.substr(equals + 1)};
}

std::size_t IndexOfKey(const std::vector<std::string>& keys, std::string_view name) {
  std::size_t index = 0;
  while (index < keys.size() && !SameText(SplitKey(keys[index]).name, name)) ++index;
  return index;
}

}  // namespace

VersionBlockPlace FindVersionBlock(std::string_view script, std::string_view fileName) {
  Line header;
  if (!FindHeader(script, header)) return {script.size(), script.size()};
  const std::size_t end = WalkBlock(script, header.next, fileName, [](auto&&...) {});
  return {header.begin, end};
}

std::optional<std::uint32_t> NamedCodePage(std::string_view script) {
  std::optional<std::uint32_t> page;
  LineCursor cursor(script);
  for (Line line; cursor.Next(line);) {
    std::string_view text = TrimView(line.text);
    if (!text.starts_with('#')) continue;
    for (const std::string_view token : {"#", "pragma", "code_page", "("}) {
      if (!text.starts_with(token)) break;
      text = SkipBlanks(text.substr(token.size()));
      if (token != "(") continue;
      const auto number = ToInteger(TrimView(text.substr(0, text.find(')'))));
      page = number && *number > 0 ? std::optional(static_cast<std::uint32_t>(*number)) : std::nullopt;
    }
  }
  return page;
}

VersionReading ReadVersionBlock(std::string_view script, std::string_view fileName) {
  VersionReading reading;
  Line header;
  if (!FindHeader(script, header)) return reading;
  reading.hasBlock = true;
  Section section = Section::None;
  WalkBlock(
      script, header.next, fileName,
      [&](std::string_view line, std::string_view upper, std::string_view keyword, const BlockShape& shape) {
        if (keyword == "BLOCK" && shape.Depth() == 1) section = SectionOf(upper);
        if (keyword == "END" && shape.Depth() <= 1) section = Section::None;
        if (!keyword.empty()) return;
        const std::string_view word = FirstWord(TrimView(upper));
        const std::string_view text = TrimView(TrimView(line).substr(word.size()));
        const FixedInfo* info = FindFixedInfo(word);
        if (info != nullptr && info->raisesInside && shape.Depth() > 0) Unexpected(word);
        if (info != nullptr && info->read != nullptr) info->read(text, reading);
        if (word == "VALUE") ReadValue(text, section, reading);
      });
  return reading;
}

void SetCompileDate(std::vector<std::string>& keys, std::string_view date) {
  const std::size_t index = IndexOfKey(keys, "Compile Date");
  if (index == keys.size()) keys.emplace_back();
  keys[index] = "Compile Date=" + std::string(date);
}

std::vector<VersionString> BlockStrings(const VersionValues& values, const Expander& expand) {
  const std::size_t product = IndexOfKey(values.keys, "PRODUCTVERSION");
  const std::string productVersion = product < values.keys.size()
                                         ? expand(std::string(SplitKey(values.keys[product]).value))
                                         : std::string();
  std::vector<VersionString> strings;
  for (const std::string& line : values.keys) {
    const auto [name, value] = SplitKey(line);
    const std::string key(name);
    if (SameText(key, "FILEVERSION")) {
      strings.push_back({key, JoinNumbers(values.numbers, '.')});
    } else if (SameText(key, "PRODUCTVERSION")) {
      strings.push_back({key, productVersion});
    } else if (!value.empty()) {
      strings.push_back({key, expand(std::string(value))});
    }
  }
  return strings;
}

std::string WriteVersionBlock(const VersionValues& values, const std::vector<VersionString>& strings) {
  const std::string numbers = JoinNumbers(values.numbers, ',');
  const std::uint32_t flags = (values.flags.isDebug ? 1U : 0U) | (values.flags.isPreRelease ? 2U : 0U) |
                              (values.flags.isSpecial ? 0x20U : 0U) | (values.flags.isPrivate ? 8U : 0U);
  const std::string locale = UpperHex(static_cast<std::uint32_t>(values.locale), 4);
  const std::string codePage = UpperHex(static_cast<std::uint32_t>(values.codePage), 4);

  std::string block;
  const auto line = [&block](std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts) block += part;
    block += "\r\n";
  };
  // Under that name even where the script includes no header that makes it 1 (docs/deliberate.md).
  line({"VS_VERSION_INFO VERSIONINFO"});
  line({"FILEVERSION ", numbers});
  // The fixed product version repeats the file version, whatever the key says (docs/deliberate.md).
  line({"PRODUCTVERSION ", numbers});
  line({"FILEFLAGSMASK 0x3FL"});
  line({"FILEFLAGS 0x", UpperHex(flags, 2), "L"});
  line({"FILEOS 0x40004L"});
  line({values.isDll ? "FILETYPE 0x2L" : "FILETYPE 0x1L"});
  line({"FILESUBTYPE 0x0L"});
  line({"BEGIN"});
  line({"    BLOCK \"StringFileInfo\""});
  line({"    BEGIN"});
  line({"         BLOCK \"", locale, codePage, "\""});
  line({"         BEGIN"});
  for (const VersionString& string : strings) {
    line({"              VALUE \"", string.key, "\", \"", string.text, "\\0\""});
  }
  line({"         END"});
  line({"    END"});
  line({"    BLOCK \"VarFileInfo\""});
  line({"    BEGIN"});
  line({"         VALUE \"Translation\", 0x", locale, ", ", std::to_string(values.codePage)});
  line({"    END"});
  line({"END"});
  return block;
}

}  // namespace qx
