#include "tools/vsinspect/Json.h"

#include "platform/Texts.h"

namespace qx {

void JsonWriter::Separate() {
  if (!first_) out_ += ',';
  first_ = false;
}

JsonWriter& JsonWriter::Open(char bracket) {
  Separate();
  out_ += bracket;
  first_ = true;
  return *this;
}

JsonWriter& JsonWriter::Close(char bracket) {
  out_ += bracket;
  first_ = false;
  return *this;
}

JsonWriter& JsonWriter::Raw(std::string_view value) {
  Separate();
  out_ += value;
  return *this;
}

JsonWriter& JsonWriter::Key(std::string_view name) {
  Text(name);
  out_ += ':';
  first_ = true;
  return *this;
}

JsonWriter& JsonWriter::Text(std::string_view text) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string valid;
  if (!IsValidUtf8(text)) {
    valid = AsValidUtf8(text);
    text = valid;
  }
  Separate();
  out_ += '"';
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      out_.append(1, '\\').append(1, c);
    } else if (static_cast<unsigned char>(c) < 0x20) {
      out_.append("\\u00").append(1, kDigits[c >> 4]).append(1, kDigits[c & 15]);
    } else {
      out_ += c;
    }
  }
  out_ += '"';
  return *this;
}

JsonWriter& JsonWriter::Texts(const std::vector<std::string>& texts) {
  BeginList();
  for (const std::string& text : texts) Text(text);
  return EndList();
}

}  // namespace qx
