#include "versioning/RulesModel.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace qx::model {
namespace {

using Text = std::u16string;

Text Wide(const std::string& ascii) { return Text(ascii.begin(), ascii.end()); }

Text Upper(Text text) {
  for (char16_t& c : text) {
    if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - 32);
  }
  return text;
}

Text Trimmed(Text text) {
  while (!text.empty() && text.back() <= u' ') text.pop_back();
  while (!text.empty() && text.front() <= u' ') text.erase(0, 1);
  return text;
}

bool Has(const Text& text, const char16_t* word) { return text.find(word) != Text::npos; }

std::optional<long long> Number(const Text& text, int base) {
  std::string ascii;
  for (const char16_t c : text) ascii += c < 0x80 ? static_cast<char>(c) : '?';
  const std::size_t digits = base == 10 && (ascii[0] == '-' || ascii[0] == '+') ? 1 : 0;
  if (ascii.size() == digits) return std::nullopt;
  for (std::size_t i = digits; i < ascii.size(); ++i) {
    const auto c = static_cast<unsigned char>(ascii[i]);
    if (base == 16 ? !std::isxdigit(c) : !std::isdigit(c)) return std::nullopt;
  }
  if (ascii.size() > 15) return std::nullopt;
  const long long value = std::strtoll(ascii.c_str(), nullptr, base);
  if (base == 10 && (value > 2147483647LL || value < -2147483648LL)) return std::nullopt;
  return value;
}

}  // namespace

File Load(const std::string& bytes) {
  File file;
  std::string rest = bytes;
  if (rest.rfind("\xEF\xBB\xBF", 0) == 0) {
    file.mark = rest.substr(0, 3);
  } else if (rest.rfind("\xFF\xFE", 0) == 0 || rest.rfind("\xFE\xFF", 0) == 0) {
    file.mark = rest.substr(0, 2);
    file.wide = true;
    file.bigEnd = rest[0] == '\xFE';
  }
  rest = rest.substr(file.mark.size());
  Text all;
  for (std::size_t i = 0; i < rest.size(); i += file.wide ? 2 : 1) {
    const auto first = static_cast<unsigned char>(rest[i]);
    if (!file.wide) {
      all += static_cast<char16_t>(first);
      continue;
    }
    const auto second = static_cast<unsigned char>(rest[i + 1]);
    all += static_cast<char16_t>(file.bigEnd ? first * 256 + second : second * 256 + first);
  }
  Text line;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (all[i] != u'\r' && all[i] != u'\n') {
      line += all[i];
      if (i + 1 < all.size()) continue;
    } else if (all[i] == u'\r' && i + 1 < all.size() && all[i + 1] == u'\n') {
      ++i;
    }
    file.lines.push_back(line);
    line.clear();
  }
  return file;
}

std::string Save(const File& file) {
  std::string bytes = file.mark;
  for (const Text& line : file.lines) {
    for (const char16_t c : line + u"\r\n") {
      const char low = static_cast<char>(c & 0xFF), high = static_cast<char>(c >> 8);
      if (file.wide && file.bigEnd) bytes += high;
      bytes += low;
      if (file.wide && !file.bigEnd) bytes += high;
    }
  }
  return bytes;
}

std::string StampAssemblyInfo(const std::string& bytes, const std::string& extension,
                              const std::map<AssemblyAttribute, std::string>& values) {
  const std::map<std::string, AssemblyAttribute> table = {
      {"AssemblyTitle", AssemblyAttribute::Title},
      {"AssemblyDescription", AssemblyAttribute::Description},
      {"AssemblyCompany", AssemblyAttribute::Company},
      {"AssemblyProduct", AssemblyAttribute::Product},
      {"AssemblyCopyright", AssemblyAttribute::Copyright},
      {"AssemblyTrademark", AssemblyAttribute::Trademark},
      {"AssemblyFileVersion", AssemblyAttribute::FileVersion},
      {"AssemblyVersion", AssemblyAttribute::Version}};
  File file = Load(bytes);
  std::map<AssemblyAttribute, bool> found;
  char16_t opening = 0;
  Text prefix, suffix;
  for (Text& line : file.lines) {
    if (!Has(Upper(line), u"ASSEMBLY:")) continue;
    opening = line[0];
    if (opening == u'/') continue;
    const std::size_t colon = line.find(u':', 1);
    const std::size_t open = line.find(u'(', colon);
    if (open == Text::npos) continue;
    std::size_t at = open + 1;
    while (at < line.size() && (line[at] == u' ' || line[at] == u'\t')) ++at;
    if (at >= line.size()) continue;
    const bool quoted = line[at] == u'"';
    std::size_t behind = 0;
    if (quoted) {
      const std::size_t quote = line.find(u'"', at + 1);
      if (quote == Text::npos) continue;
      behind = quote + 1;
      while (behind < line.size() && (line[behind] == u' ' || line[behind] == u'\t')) ++behind;
      if (behind >= line.size() || line[behind] != u')') behind = std::min(quote + 1, line.size() - 1);
      ++behind;
    } else {
      const std::size_t close = line.rfind(u')');
      if (close == Text::npos || close < at) continue;
      behind = close + 1;
    }
    prefix = line.substr(1, colon - 1);
    suffix = line.substr(behind);
    const Text name = Trimmed(line.substr(colon + 1, open - colon - 1));
    for (const auto& [row, attribute] : table) {
      if (name != Wide(row) && name != Wide(row + "Attribute")) continue;
      const auto value = values.find(attribute);
      if (value == values.end()) continue;
      found[attribute] = true;
      const Text quote = quoted ? u"\"" : u"";
      line = opening + prefix + u": " + name + u"(" + quote + Wide(value->second) + quote + u")" + suffix;
    }
  }
  const std::string added[] = {"AssemblyTitle",
                               "",
                               "AssemblyCompany",
                               "AssemblyDescription",
                               "",
                               "",
                               "AssemblyProduct",
                               "AssemblyFileVersion",
                               "AssemblyVersion"};
  for (std::size_t bit = 0; bit < 9; ++bit) {
    const auto attribute = static_cast<AssemblyAttribute>(bit);
    const auto value = values.find(attribute);
    if (added[bit].empty() || found[attribute] || value == values.end()) continue;
    file.lines.push_back(opening + prefix + u": " + Wide(added[bit]) +
                         (Upper(Wide(extension)) == u".CPP" ? u"Attribute" : u"") + u"(\"" +
                         Wide(value->second) + u"\")" + suffix);
  }
  return Save(file);
}

namespace {

// One pass over a file's lines; `inside` sees every line of the block but the header.
template <class Inside>
std::string Walk(const File& file, std::size_t& begin, std::size_t& end, Inside&& inside) {
  begin = 0;
  while (begin < file.lines.size() &&
         !(Has(file.lines[begin], u"VERSIONINFO") && !Has(file.lines[begin], u"\""))) {
    ++begin;
  }
  end = begin;
  if (begin == file.lines.size()) return {};
  bool beginOk = true, endOk = false, blockOk = false;
  int depth = 0;
  for (end = begin + 1; end < file.lines.size(); ++end) {
    const Text line = Upper(file.lines[end]);
    std::string keyword;
    if (Has(line, u"BEGIN")) {
      if (!beginOk) return "Unexpected BEGIN";
      ++depth;
      beginOk = false, blockOk = endOk = true;
      keyword = "BEGIN";
    } else if (Trimmed(line) == u"END") {
      if (!endOk) return "Unexpected END";
      if (--depth == 0) {
        ++end;
        return {};
      }
      keyword = "END";
    } else if (Has(line, u"BLOCK")) {
      if (!blockOk) return "Unexpected BLOCK";
      blockOk = false, beginOk = endOk = true;
      keyword = "BLOCK";
    }
    const std::string error = inside(file.lines[end], keyword, depth);
    if (!error.empty()) return error;
  }
  return "not closed";
}

}  // namespace

std::optional<std::string> ReplaceVersionBlock(const std::string& bytes, const std::string& block,
                                               std::string& error) {
  const File file = Load(bytes);
  std::size_t begin = 0, end = 0;
  error = Walk(file, begin, end, [](const Text&, const std::string&, int) { return std::string(); });
  if (!error.empty()) return std::nullopt;
  File out = file;
  out.lines.assign(file.lines.begin(), file.lines.begin() + static_cast<std::ptrdiff_t>(begin));
  for (const Text& line : Load(block).lines) out.lines.push_back(line);
  out.lines.insert(out.lines.end(), file.lines.begin() + static_cast<std::ptrdiff_t>(end), file.lines.end());
  return Save(out);
}

std::string DescribeVersionBlock(const std::string& bytes) {
  const File file = Load(bytes);
  std::string numbers, flags, dll, translation;
  bool variables = false;
  std::size_t begin = 0, end = 0;
  const auto twoDigits = [](const Text& text) {
    return text.size() < 4 ? 0LL : Number(text.substr(2, 2), 16).value_or(0);
  };
  const std::string error =
      Walk(file, begin, end, [&](const Text& raw, const std::string& keyword, int depth) {
        const Text line = Trimmed(Upper(raw));
        if (keyword == "BLOCK" && depth == 1) variables = Has(line, u"VARFILEINFO");
        if (keyword == "END" && depth == 1) variables = false;
        if (!keyword.empty()) return std::string();
        std::string word;
        for (std::size_t i = 0;
             i < line.size() && line[i] < 0x80 && (std::isalnum(line[i]) || line[i] == u'_'); ++i) {
          word += static_cast<char>(line[i]);
        }
        const Text rest = Trimmed(line.substr(word.size()));
        const bool fixed = word == "FILEVERSION" || word == "FILEFLAGSMASK" || word == "FILEFLAGS" ||
                           word == "FILEOS" || word == "FILETYPE" || word == "FILESUBTYPE";
        if (fixed && depth > 0) return "Unexpected " + word;
        if (word == "FILEVERSION") {
          numbers = " numbers";
          Text left = rest + u",";
          for (int i = 0; i < 4; ++i) {
            const std::size_t comma = left.find(u',');
            const Text part = comma == Text::npos ? Text() : Trimmed(left.substr(0, comma));
            if (comma != Text::npos) left.erase(0, comma + 1);
            numbers += (i == 0 ? " " : ".") + std::to_string(Number(part, 10).value_or(0));
          }
        }
        char hex[32];
        std::snprintf(hex, sizeof hex, " flags %02llX",
                      static_cast<unsigned long long>(twoDigits(rest) & 0x2B));
        if (word == "FILEFLAGS") flags = hex;
        if (word == "FILETYPE") dll = twoDigits(rest) != 0 ? " dll 1" : " dll 0";
        if (word != "VALUE" || !variables || rest.rfind(u"\"TRANSLATION\"", 0) != 0) return std::string();
        std::vector<Text> parts(1);
        for (const char16_t c : rest.substr(13)) {
          if (c == u',') {
            parts.emplace_back();
          } else if (c == u'/') {
            break;
          } else if (c > u' ') {
            parts.back() += c;
          }
        }
        parts.resize(3);
        const auto locale = Number(parts[1].substr(std::min<std::size_t>(2, parts[1].size())), 16);
        const auto page = Number(parts[2], 10);
        if (!locale || !page) return std::string("conversion");
        translation = " locale " + std::to_string(*locale) + " page " + std::to_string(*page);
        return std::string();
      });
  if (!error.empty()) return "error: " + error;
  return numbers + flags + dll + translation;
}

}  // namespace qx::model
