#include "platform/files/TextFile.h"

#include <algorithm>

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using std::string_view_literals::operator""sv;

struct Mark {
  TextEncoding encoding;
  std::string_view bytes;
};
constexpr Mark kMarks[] = {{TextEncoding::Utf8WithMark, "\xEF\xBB\xBF"sv},
                           {TextEncoding::Utf16LittleEnd, "\xFF\xFE"sv},
                           {TextEncoding::Utf16BigEnd, "\xFE\xFF"sv}};

Mark MarkOf(std::string_view bytes) {
  const auto found = std::find_if(std::begin(kMarks), std::end(kMarks),
                                  [&](const Mark& mark) { return bytes.starts_with(mark.bytes); });
  return found == std::end(kMarks) ? Mark{TextEncoding::Bytes, {}} : *found;
}

std::string_view MarkBytes(TextEncoding encoding) {
  for (const Mark& mark : kMarks) {
    if (mark.encoding == encoding) return mark.bytes;
  }
  return {};
}

bool IsUtf16(TextEncoding encoding) {
  return encoding == TextEncoding::Utf16LittleEnd || encoding == TextEncoding::Utf16BigEnd;
}

std::string DecodeUtf16(std::string_view bytes, TextEncoding encoding) {
  const std::size_t low = encoding == TextEncoding::Utf16LittleEnd ? 0 : 1;
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[2 * i + at]); };
    units[i] = static_cast<char16_t>(byte(low) | (byte(1 - low) << 8));
  }
  if (bytes.size() % 2 != 0) units += u'\uFFFD';
  return ToUtf8(units);
}

void AppendUtf16(std::string& out, std::u16string_view units, TextEncoding encoding) {
  for (const char16_t unit : units) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    out += encoding == TextEncoding::Utf16LittleEnd ? low : high;
    out += encoding == TextEncoding::Utf16LittleEnd ? high : low;
  }
}

}  // namespace

TextEncoding EncodingOf(std::string_view bytes) { return MarkOf(bytes).encoding; }

std::string_view WithoutUtf8Mark(std::string_view text) {
  if (EncodingOf(text) == TextEncoding::Utf8WithMark) text.remove_prefix(MarkOf(text).bytes.size());
  return text;
}

std::string_view DecodeText(std::string_view bytes, std::string& scratch) {
  const Mark mark = MarkOf(bytes);
  bytes.remove_prefix(mark.bytes.size());
  if (!IsUtf16(mark.encoding)) return bytes;
  scratch = DecodeUtf16(bytes, mark.encoding);
  return scratch;
}

std::string EncodeText(std::string_view text, TextEncoding encoding) {
  std::string out(MarkBytes(encoding));
  if (!IsUtf16(encoding)) return out.append(text);
  const auto units = ToUtf16Strict(std::string(text));
  if (!units) throw Exception("The text cannot be written as UTF-16: it is not UTF-8");
  AppendUtf16(out, *units, encoding);
  return out;
}

TextFile TextFile::FromBytes(std::string_view bytes) {
  std::string scratch;
  return {SplitLines(DecodeText(bytes, scratch)), EncodingOf(bytes)};
}

TextFile TextFile::Load(const std::string& path) { return FromBytes(ReadFile(path)); }

std::string TextFile::Bytes() const {
  std::string out(MarkBytes(encoding));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto refuse = [i](const char* name) {
      throw Exception("Line " + std::to_string(i + 1) + " cannot be written as " + name +
                      ": it is not UTF-8");
    };
    if (encoding == TextEncoding::Utf8WithMark && !IsValidUtf8(lines[i])) refuse("UTF-8");
    if (!IsUtf16(encoding)) {
      out.append(lines[i]).append("\r\n");
      continue;
    }
    const auto units = ToUtf16Strict(lines[i]);
    if (!units) refuse("UTF-16");
    AppendUtf16(out, *units + u"\r\n", encoding);
  }
  return out;
}

void TextFile::Save(const std::string& path) const {
  std::string bytes;
  try {
    bytes = Bytes();
  } catch (const Exception& error) {
    throw Exception("Cannot write " + path + ": " + error.Message());
  }
  ReplaceFile(path, bytes);
}

}  // namespace qx
