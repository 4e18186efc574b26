#include "versioning/AssemblyAttributes.h"

#include <bitset>

#include "platform/Lines.h"
#include "platform/Texts.h"

namespace qx {
namespace {

struct Names {
  std::string_view read;   // in attribute lines; empty: in none
  std::string_view added;  // in the entries that are appended
};

// By the ordinal of AssemblyAttribute. The comment is read nowhere, so that no comment attribute is ever
// rewritten or added, and "CopyRight" and "TradeMark" differ in case from what is read, so that these two are
// never added (docs/deliberate.md).
constexpr Names kNames[] = {
    {"AssemblyTitle", "AssemblyTitle"},         {"", "AssemblyComment"},
    {"AssemblyCompany", "AssemblyCompany"},     {"AssemblyDescription", "AssemblyDescription"},
    {"AssemblyCopyright", "AssemblyCopyRight"}, {"AssemblyTrademark", "AssemblyTradeMark"},
    {"AssemblyProduct", "AssemblyProduct"},     {"AssemblyFileVersion", "AssemblyFileVersion"},
    {"AssemblyVersion", "AssemblyVersion"},
};
constexpr std::size_t kAttributes = std::size(kNames);

bool IsAttributeLine(std::string_view line) {
  return FindWord(line, "assembly", ':') != std::string_view::npos;
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

// An attribute line cut up: opening character, prefix, ":", name, "(", value, ")", suffix.
struct AttributeLine {
  std::string_view prefix;
  std::string_view name;
  std::string_view value;  // of a quoted one
  std::string_view suffix;
  bool quoted = false;
};

// None for a line without a parenthesis, with nothing behind it, or with a value that the line does not end.
// Only the line's first attribute is seen; an unquoted value runs to the last parenthesis
// (docs/deliberate.md).
std::optional<AttributeLine> ParseAttributeLine(std::string_view line) {
  AttributeLine parsed;
  const std::size_t colon = line.find(':', 1);
  if (colon == std::string_view::npos) return std::nullopt;
  const std::size_t open = line.find('(', colon);
  if (open == std::string_view::npos) return std::nullopt;
  parsed.prefix = line.substr(1, colon - 1);
  parsed.name = TrimView(line.substr(colon + 1, open - colon - 1));
  const std::string_view value = WithoutLeadingBlanks(line.substr(open + 1));
  if (value.empty()) return std::nullopt;
  parsed.quoted = value.front() == '"';
  if (!parsed.quoted) {
    const std::size_t close = value.rfind(')');
    if (close == std::string_view::npos) return std::nullopt;
    parsed.suffix = value.substr(close + 1);
    return parsed;
  }
  const std::size_t quote = value.find('"', 1);
  if (quote == std::string_view::npos) return std::nullopt;
  parsed.value = value.substr(1, quote - 1);
  // The character behind the quote, which is the closing parenthesis, is passed over, whatever it is; so are
  // blanks before one (docs/deliberate.md).
  const std::string_view rest = value.substr(quote + 1);
  const std::string_view close = WithoutLeadingBlanks(rest);
  parsed.suffix =
      close.starts_with(')') ? close.substr(1) : rest.substr(std::min<std::size_t>(1, rest.size()));
  return parsed;
}

// One text's state: what it still lacks, and what its last attribute line looked like.
class Stamper {
 public:
  Stamper(const AttributeValues& values, const AttributeFitter& fit, const ProgressLog& log)
      : values_(values), fit_(fit), log_(log) {
    pending_.set();
  }

  void Append(std::string_view line, std::string& out) {
    if (!IsAttributeLine(line) || !Rewrite(line, out)) out += line;
    out += "\r\n";
  }

  void AppendMissing(std::string_view extension, std::string& out) {
    const std::string_view ending = UpperCase(extension) == ".CPP" ? "Attribute" : "";
    for (std::size_t bit = 0; bit < kAttributes; ++bit) {
      if (!pending_[bit]) continue;
      const std::string name(kNames[bit].added);
      const auto value = LookUp(name);
      if (!value) continue;
      log_("Adding Entry : " + name + " Value : " + *value);
      // Without any attribute line the opening character is 0. An entry that is no attribute line, or gets no
      // "using", is added all the same, and again the next time (docs/deliberate.md).
      out += opening_;
      out.append(prefix_).append(": ").append(name).append(ending).append("(\"");
      out.append(fit_(*value, name)).append("\")").append(suffix_).append("\r\n");
    }
  }

 private:
  bool Rewrite(std::string_view line, std::string& out) {
    // A comment line's "/" opens the entries added later; only a "/" at the very start makes a line a comment
    // (docs/deliberate.md).
    opening_ = line.front();
    if (opening_ == '/') return false;
    const auto parsed = ParseAttributeLine(line);
    if (!parsed) return false;
    prefix_ = parsed->prefix;
    suffix_ = parsed->suffix;
    const auto value = LookUp(parsed->name);
    if (!value) return false;
    const std::string_view quote = parsed->quoted ? "\"" : "";
    log_("Processing Entry : " + std::string(parsed->name));
    out += opening_;
    out.append(prefix_).append(": ").append(parsed->name).append("(").append(quote);
    // The value as it stands, a double quote in it too (docs/deliberate.md).
    out.append(fit_(*value, parsed->name)).append(quote).append(")").append(suffix_);
    return true;
  }

  std::optional<std::string> LookUp(std::string_view name) {
    const auto attribute = FindAssemblyAttribute(name);
    if (!attribute) return std::nullopt;
    auto value = values_(*attribute);
    if (value) pending_.reset(static_cast<std::size_t>(*attribute));
    return value;
  }

  const AttributeValues& values_;
  const AttributeFitter& fit_;
  const ProgressLog& log_;
  std::bitset<kAttributes> pending_;
  char opening_ = '\0';
  std::string_view prefix_;
  std::string_view suffix_;
};

// Tells the lines that a compiler of any of the languages passes over.
class Comments {
 public:
  bool Holds(std::string_view line) {
    const std::string_view text = TrimView(line);
    const bool wasInside = isInside_;
    if (isInside_) isInside_ = text.find("*/") == std::string_view::npos;
    if (wasInside) return true;
    if (text.starts_with("/*")) isInside_ = text.find("*/", 2) == std::string_view::npos;
    return text.starts_with("/*") || text.starts_with("//") || text.starts_with('\'');
  }

 private:
  bool isInside_ = false;
};

}  // namespace

std::size_t FindWord(std::string_view text, std::string_view word, char mark) {
  for (std::size_t at = 0; (at = text.find(mark, at)) != std::string_view::npos; ++at) {
    if (at < word.size()) continue;
    std::size_t same = 0;
    while (same < word.size() && (text[at - word.size() + same] | 0x20) == word[same]) ++same;
    if (same == word.size()) return at - word.size();
  }
  return std::string_view::npos;
}

std::optional<AssemblyAttribute> FindAssemblyAttribute(std::string_view name) {
  for (std::size_t i = 0; i < kAttributes; ++i) {
    const std::string_view known = kNames[i].read;
    if (known.empty() || !name.starts_with(known)) continue;
    const std::string_view ending = name.substr(known.size());
    if (ending.empty() || ending == "Attribute") return static_cast<AssemblyAttribute>(i);
  }
  return std::nullopt;
}

std::string AssemblyInfoReference(std::string_view project) {
  const std::size_t at = FindWord(project, "assemblyinfo", '.');
  if (at == std::string_view::npos) return {};
  const std::size_t open = project.rfind('"', at);
  if (open == std::string_view::npos) return {};
  const std::size_t close = project.find('"', open + 1);
  if (close == std::string_view::npos) return {};
  return std::string(project.substr(open + 1, close - open - 1));
}

WrittenVersions ReadWrittenVersions(std::string_view text) {
  std::optional<std::string> assembly, file;
  Comments comments;
  LineCursor cursor(text);
  for (Line line; cursor.Next(line);) {
    if (comments.Holds(line.text) || !IsAttributeLine(line.text)) continue;
    const auto parsed = ParseAttributeLine(line.text);
    const auto attribute = parsed ? FindAssemblyAttribute(parsed->name) : std::nullopt;
    const bool isAssembly = attribute == AssemblyAttribute::Version;
    if (!isAssembly && attribute != AssemblyAttribute::FileVersion) continue;
    auto& version = isAssembly ? assembly : file;
    const bool isAnother = version && *version != parsed->value;
    version = isAnother ? "" : std::string(parsed->value);
  }
  return {assembly.value_or(""), file.value_or("")};
}

std::string StampAssemblyInfo(std::string_view text, std::string_view extension,
                              const AttributeValues& values, const AttributeFitter& fit,
                              const ProgressLog& log) {
  std::string out;
  out.reserve(text.size() + text.size() / 16 + 1024);
  Stamper stamper(values, fit, log);
  LineCursor cursor(text);
  for (Line line; cursor.Next(line);) stamper.Append(line.text, out);
  stamper.AppendMissing(extension, out);
  return out;
}

}  // namespace qx
