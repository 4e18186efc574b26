#include "host/diagnostics/Baseline.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>

#include "platform/Texts.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;

// As the file names it: from the folder where it lies below it, with "/".
std::string NameFrom(const std::string& folder, std::string_view file) {
  std::string name = AsValidUtf8(file);
  if (IsAbsolute(name)) {
    const std::string whole = ExpandPath("", name);
    const std::string above = WithTrailingDelimiter(folder);
    name = whole.size() > above.size() && SameText(std::string_view(whole).substr(0, above.size()), above)
               ? whole.substr(above.size())
               : whole;
  }
  std::replace(name.begin(), name.end(), '\\', '/');
  while (name.starts_with("./")) name.erase(0, 2);
  return name;
}

std::string KeyOf(std::string_view code, std::string_view name, std::string_view message) {
  std::string key(code);
  key += '\n';
  key += FoldCase(name);
  key += '\n';
  return key += message;
}

// The text of a member that has to be one.
const std::string& TextOf(const Json& object, const char* name) {
  const auto found = object.is_object() ? object.find(name) : object.end();
  if (!object.is_object() || found == object.end() || !found->is_string())
    throw Exception(std::string("a diagnostic has no text \"") + name + "\"");
  return found->get_ref<const std::string&>();
}

}  // namespace

Baseline Baseline::Read(std::string_view text, std::string folder) {
  const Json whole = Json::parse(text, nullptr, false);
  if (whole.is_discarded()) throw Exception("it is no JSON");
  if (!whole.is_object() || !whole.contains("diagnostics") || !whole["diagnostics"].is_array())
    throw Exception("it holds no list \"diagnostics\"");
  if (!whole.contains("version") || whole["version"] != kVersion)
    throw Exception("its version is not " + std::to_string(kVersion));
  Baseline baseline(std::move(folder));
  for (const Json& one : whole["diagnostics"]) {
    const std::string& code = TextOf(one, "code");
    const std::string& file = TextOf(one, "file");
    baseline.keys_.insert(KeyOf(code, file, TextOf(one, "message")));
  }
  return baseline;
}

bool Baseline::Holds(const Diagnostic& diagnostic) const {
  return !keys_.empty() &&
         keys_.contains(KeyOf(AsValidUtf8(diagnostic.code), NameFrom(folder_, diagnostic.file),
                              AsValidUtf8(diagnostic.message)));
}

std::string BaselineText(std::span<const Diagnostic> diagnostics, const std::string& folder) {
  std::set<std::tuple<std::string, std::string, std::string>> rows;
  for (const Diagnostic& diagnostic : diagnostics) {
    rows.emplace(NameFrom(folder, diagnostic.file), AsValidUtf8(diagnostic.code),
                 AsValidUtf8(diagnostic.message));
  }
  std::string text = "{\"version\":" + std::to_string(kVersion) + ",\"diagnostics\":[";
  const char* between = "\n";
  for (const auto& [file, code, message] : rows) {
    text += between + Json{{"code", code}, {"file", file}, {"message", message}}.dump();
    between = ",\n";
  }
  return text + "\n]}\n";
}

}  // namespace qx
