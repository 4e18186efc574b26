// Writes JSON as it goes, in UTF-8: objects and lists of texts, numbers and truths. For output that is too
// big to be built as a tree first.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

class JsonWriter {
 public:
  JsonWriter& BeginObject() { return Open('{'); }
  JsonWriter& EndObject() { return Close('}'); }
  JsonWriter& BeginList() { return Open('['); }
  JsonWriter& EndList() { return Close(']'); }
  JsonWriter& Key(std::string_view name);
  // Bytes that are not UTF-8 become U+FFFD.
  JsonWriter& Text(std::string_view text);
  JsonWriter& Number(std::int32_t value) { return Raw(std::to_string(value)); }
  JsonWriter& Truth(bool value) { return Raw(value ? "true" : "false"); }
  JsonWriter& Null() { return Raw("null"); }
  JsonWriter& Texts(const std::vector<std::string>& texts);

  // What was written so far.
  const std::string& Out() const { return out_; }

 private:
  JsonWriter& Open(char bracket);
  JsonWriter& Close(char bracket);
  JsonWriter& Raw(std::string_view value);
  void Separate();

  std::string out_;
  bool first_ = true;  // nothing stands before the next item
};

}  // namespace qx
