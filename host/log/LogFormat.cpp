// Records as text and as JSON.
#include "host/log/LogFormat.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "platform/Texts.h"
#include "platform/VisibleText.h"

namespace qx {
namespace {

constexpr std::string_view kIndent = "    ";
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

// Select Graphic Rendition of ECMA-48: bold, red, green, yellow, back to normal.
constexpr std::string_view kBold = "\x1b[1m";
constexpr std::string_view kRed = "\x1b[31m";
constexpr std::string_view kGreen = "\x1b[32m";
constexpr std::string_view kYellow = "\x1b[33m";
constexpr std::string_view kNormal = "\x1b[0m";

void AppendLine(std::string& out, std::string_view text, std::string_view paint, LogColour colour) {
  const bool painted = colour == LogColour::On && !text.empty();
  if (painted) out += paint;
  out += text;
  if (painted) out += kNormal;
  out += '\n';
}

// Each line of the text, indented; an empty text is one empty line.
void AppendIndented(std::string& out, std::string_view text) {
  if (text.empty()) {
    out += kIndent;
    out += '\n';
    return;
  }
  ForEachLine(text, [&](std::string_view line) {
    out += kIndent;
    out += line;
    out += '\n';
  });
}

void AppendStatus(std::string& out, const LogRecord& record, LogColour colour) {
  const bool headed = !record.text.empty();
  if (headed) AppendLine(out, record.text, kBold, colour);
  for (std::size_t i = 0; i < record.details.size(); ++i) {
    if (headed) {
      AppendIndented(out, record.details[i]);
    } else {
      out += record.details[i];
      out += '\n';
    }
  }
}

// Seconds with so many decimals, at least "0", never in the manner of a locale.
std::string FormatSeconds(double seconds, int decimals) {
  const std::int64_t unit = decimals == 1 ? 10 : 1000;
  const std::int64_t ticks = std::llround(std::clamp(seconds, 0.0, 1e12) * static_cast<double>(unit));
  std::string fraction = std::to_string(ticks % unit + unit).substr(1);
  while (!fraction.empty() && fraction.back() == '0' && (decimals != 1 || fraction.size() > 1))
    fraction.pop_back();
  std::string text = std::to_string(ticks / unit);
  return fraction.empty() ? text : text + "." + fraction;
}

// Which bytes stand for themselves in a JSON string without a further look.
constexpr std::array<bool, 256> kPlainInJson = [] {
  std::array<bool, 256> plain{};
  for (std::size_t i = 0x20; i < 0x7F; ++i) plain[i] = i != '"' && i != '\\';
  return plain;
}();

void AppendJsonControl(std::string& out, char c) {
  switch (c) {
    case '"':
      out += "\\\"";
      return;
    case '\\':
      out += "\\\\";
      return;
    case '\n':
      out += "\\n";
      return;
    case '\r':
      out += "\\r";
      return;
    case '\t':
      out += "\\t";
      return;
    default:
      break;
  }
  out += "\\u" + LowerHex(static_cast<unsigned char>(c), 4);
}

void AppendMember(std::string& out, std::string_view name, std::string_view text) {
  out += ",\"";
  out += name;
  out += "\":\"";
  AppendJsonEscaped(out, text);
  out += '"';
}

void AppendDetails(std::string& out, const LogDetails& details) {
  out += ",\"details\":[";
  for (std::size_t i = 0; i < details.size(); ++i) {
    out += i == 0 ? "\"" : ",\"";
    AppendJsonEscaped(out, details[i]);
    out += '"';
  }
  out += ']';
}

}  // namespace

void AppendAsText(std::string& out, const LogRecord& record, LogColour colour) {
  switch (record.kind) {
    case LogKind::Begin:
      return;
    case LogKind::Message:
      out += record.text;
      out += '\n';
      return;
    case LogKind::Status:
      return AppendStatus(out, record, colour);
    case LogKind::Exception:
      return AppendLine(out, record.text, kRed, colour);
    case LogKind::Validation:
      return AppendLine(out, std::string(record.subject) + ": " + std::string(record.text), kRed, colour);
    case LogKind::Result:
      return AppendLine(out,
                        std::string(record.subject) + (record.success ? ": succeeded (" : ": failed (") +
                            FormatSeconds(record.seconds, 1) + " s)",
                        record.success ? kGreen : kRed, colour);
    case LogKind::Summary:
      out += record.text;
      return;
  }
}

bool IsVisible(const LogRecord& record) {
  if (HasHiddenCharacters(record.text) || HasHiddenCharacters(record.subject)) return false;
  for (std::size_t i = 0; i < record.details.size(); ++i) {
    if (HasHiddenCharacters(record.details[i])) return false;
  }
  return true;
}

void PaintLines(std::string& text, std::size_t begin, const ToneOfLine& toneOf) {
  while (begin < text.size()) {
    const std::string_view line = std::string_view(text).substr(begin, text.find('\n', begin) - begin);
    std::size_t end = begin + line.size();
    const LineTone tone = line.find('\x1b') == std::string_view::npos ? toneOf(line) : LineTone::Plain;
    if (tone != LineTone::Plain) {
      const std::string_view paint = tone == LineTone::Error ? kRed : kYellow;
      text.insert(end, kNormal);
      text.insert(begin, paint);
      end += paint.size() + kNormal.size();
    }
    begin = end + 1;
  }
}

// Messages of several lines have CR between them; alone it would lead a terminal back over what it has shown.
VisibleRecord::VisibleRecord(const LogRecord& record, ColourSequences colours) : record_(record) {
  const auto show = [colours](std::string_view& text, std::string& kept) {
    if (!HasHiddenCharacters(text)) return;
    kept = text;
    if (kept.ends_with('\r')) kept.pop_back();
    for (std::size_t i = 0; i < kept.size(); ++i) {
      if (kept[i] == '\r' && kept[i + 1] != '\n') kept[i] = '\n';
    }
    kept = VisibleText(kept, colours);
    text = kept;
  };
  show(record_.text, text_);
  show(record_.subject, subject_);
  for (std::size_t i = 0; i < record.details.size(); ++i) {
    std::string_view detail = record.details[i];
    std::string kept;
    show(detail, kept);
    details_ += detail;
    ends_.push_back(details_.size());
  }
  record_.details = LogDetails(details_, ends_);
}

void AppendAsJson(std::string& out, const LogRecord& record) {
  if (record.kind == LogKind::Begin) return;
  if (record.kind == LogKind::Summary) {
    out += VisibleText(record.subject);
    return;
  }
  out += "{\"action\":";
  out += std::to_string(record.action);
  out += ",\"kind\":";
  switch (record.kind) {
    case LogKind::Message:
      out += "\"message\"";
      AppendMember(out, "text", record.text);
      break;
    case LogKind::Status:
      out += "\"status\"";
      AppendMember(out, "heading", record.text);
      AppendDetails(out, record.details);
      break;
    case LogKind::Exception:
      out += "\"exception\"";
      AppendMember(out, "text", record.text);
      break;
    case LogKind::Validation:
      out += "\"validation\"";
      AppendMember(out, "subject", record.subject);
      AppendMember(out, "message", record.text);
      break;
    case LogKind::Result:
      out += "\"result\"";
      AppendMember(out, "name", record.subject);
      out += record.success ? ",\"success\":true" : ",\"success\":false";
      out += ",\"seconds\":" + FormatSeconds(record.seconds, 3);
      break;
    case LogKind::Begin:
    case LogKind::Summary:
      break;
  }
  out += "}\n";
}

void AppendJsonEscaped(std::string& out, std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t plain = at;
    while (plain < text.size() && kPlainInJson[static_cast<unsigned char>(text[plain])]) ++plain;
    out += text.substr(at, plain - at);
    at = plain;
    if (at == text.size()) return;
    std::size_t next = at;
    const char32_t c = NextCodePoint(text, next);
    if (c == kNoCodePoint || IsSurrogate(c)) {
      out += kReplacement;
      ++at;
      continue;
    }
    if (next == at + 1) {
      AppendJsonControl(out, text[at]);
    } else if (IsHiddenCharacter(c)) {
      out += "\\u" + LowerHex(c, 4);
    } else {
      out += text.substr(at, next - at);
    }
    at = next;
  }
}

std::string LogEntry::AsText() const {
  std::string joined;
  std::vector<std::size_t> ends;
  for (const std::string& detail : details) {
    joined += detail;
    ends.push_back(joined.size());
  }
  std::string out;
  AppendAsText(out, {kind, action, text, subject, LogDetails(joined, ends), success, seconds, 0},
               LogColour::Off);
  if (!out.empty()) out.pop_back();
  return out;
}

void MemorySink::Take(const LogRecord& record) {
  LogEntry entry{record.kind,    record.action, std::string(record.text), std::string(record.subject), {},
                 record.success, record.seconds};
  for (std::size_t i = 0; i < record.details.size(); ++i) entry.details.emplace_back(record.details[i]);
  entries_.push_back(std::move(entry));
}

std::vector<std::string> MemorySink::Lines() const {
  std::vector<std::string> lines;
  for (const LogEntry& entry : entries_) lines.push_back(entry.AsText());
  return lines;
}

}  // namespace qx
