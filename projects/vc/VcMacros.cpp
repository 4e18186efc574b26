#include "projects/vc/VcMacros.h"

#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

constexpr int kDeepestMacro = 32;
constexpr std::size_t kLongestText = 1 << 20;

bool IsSeparator(char c, VcList kind) {
  if (c == '\r' || c == '\n') return true;
  const bool blanks = kind == VcList::Files || kind == VcList::Options;
  return blanks ? c == ' ' || c == '\t' : c == ';' || c == ',';
}

}  // namespace

void VcMacros::Set(std::string_view name, std::string value) {
  values_.insert_or_assign(LowerCase(name), std::move(value));
}

bool VcMacros::Has(std::string_view name) const { return Find(LowerCase(name)) != nullptr; }

const std::string* VcMacros::Find(const std::string& folded) const {
  const auto found = values_.find(folded);
  if (found != values_.end()) return &found->second;
  return outer_ == nullptr ? nullptr : outer_->Find(folded);
}

std::string VcMacros::Expand(std::string_view text) const {
  std::set<std::string> unknown;
  return Expand(text, unknown);
}

std::string VcMacros::Expand(std::string_view text, std::set<std::string>& unknown) const {
  std::string out;
  ExpandInto(out, text, 0, unknown);
  return out;
}

void VcMacros::ExpandInto(std::string& out, std::string_view text, int depth,
                          std::set<std::string>& unknown) const {
  if (depth > kDeepestMacro) throw Exception("its macros hold one another without end");
  const VcMacros* outermost = this;
  while (outermost->outer_ != nullptr) outermost = outermost->outer_;
  for (;;) {
    const std::size_t begin = text.find("$(");
    const std::size_t end = begin == std::string_view::npos ? begin : text.find(')', begin);
    out += text.substr(0, end == std::string_view::npos ? text.size() : begin);
    if (out.size() > kLongestText) throw Exception("its macros make a text of over a megabyte");
    if (end == std::string_view::npos) return;
    const std::string name(text.substr(begin + 2, end - begin - 2));
    text.remove_prefix(end + 1);
    if (const std::string* value = Find(LowerCase(name))) {
      ExpandInto(out, *value, depth + 1, unknown);
    } else if (const auto variable = outermost->environment_ ? outermost->environment_(name) : std::nullopt) {
      out += *variable;
    } else {
      unknown.insert(name);
    }
  }
}

std::vector<std::string> SplitVcList(std::string_view text, VcList kind) {
  std::vector<std::string> items;
  std::string item;
  bool quoted = false;
  const bool escapes = kind == VcList::Defines || kind == VcList::Options;
  const auto finish = [&] {
    std::string trimmed = Trim(item);
    if (!trimmed.empty()) items.push_back(std::move(trimmed));
    item.clear();
  };
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (escapes && c == '\\' && text.substr(at + 1, 1) == "\"") {
      item += '"';
      ++at;
    } else if (c == '"') {
      quoted = !quoted;
    } else if (!quoted && IsSeparator(c, kind)) {
      finish();
    } else {
      item += c;
    }
  }
  finish();
  return items;
}

}  // namespace qx
