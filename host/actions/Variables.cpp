// Layers of variables, and the expansion of %NAME%.
#include "host/actions/Variables.h"

#include <algorithm>
#include <set>

#include "platform/Texts.h"

namespace qx {
namespace {

// What stands between pairs of percent signs, as an expansion divides the text.
std::vector<std::string> NamesIn(std::string_view text) {
  std::vector<std::string> names;
  for (;;) {
    const std::size_t percent = text.find('%');
    if (percent == std::string_view::npos) return names;
    text.remove_prefix(percent + 1);
    const std::size_t end = text.find_first_of("%\r\n");
    if (end == std::string_view::npos || text[end] != '%') continue;
    if (end > 0) names.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
}

// One expansion under way: the result so far, and the variables whose values are being expanded, outermost first.
class Expansion {
 public:
  Expansion(const Variables& variables, bool nested) : variables_(variables), nested_(nested) {}

  void Append(std::string_view text) {
    for (;;) {
      const std::size_t percent = text.find('%');
      Put(text.substr(0, percent));
      if (percent == std::string_view::npos) return;
      text.remove_prefix(percent + 1);
      text.remove_prefix(Replace(text));
    }
  }
  std::string Take() { return std::move(result_); }

 private:
  // What follows a percent sign: returns how much of it was used up. One without a partner stays, and a
  // doubled one never begins a name, those of values included (docs/deliberate.md).
  std::size_t Replace(std::string_view text) {
    const std::size_t end = text.find_first_of("%\r\n");
    if (end == std::string_view::npos || text[end] != '%') {
      Put("%");
      return 0;
    }
    if (end == 0) {
      Put("%");
    } else {
      ReplaceName(std::string(text.substr(0, end)));
    }
    return end + 1;
  }

  void ReplaceName(const std::string& name) {
    const std::optional<std::string> value = variables_.Find(name);
    if (!value) throw Exception("Undefined variable : " + name);
    if (++replacements_ > Variables::kMostReplacements) {
      throw Exception("Expanding %" + Outermost(name) + "% takes more than " +
                      std::to_string(Variables::kMostReplacements) + " replacements");
    }
    if (!nested_) return Put(*value);
    Enter(name);
    Append(*value);
    open_.pop_back();
  }

  void Enter(const std::string& name) {
    const auto same = [&](const std::string& other) { return SameText(other, name); };
    const auto begin = std::find_if(open_.begin(), open_.end(), same);
    if (begin != open_.end()) {
      std::string chain;
      for (auto at = begin; at != open_.end(); ++at) chain += *at + " -> ";
      throw Exception("Variable contains itself : " + chain + name);
    }
    if (open_.size() >= Variables::kDeepestNesting) {
      throw Exception("Variables are nested more than " + std::to_string(Variables::kDeepestNesting) +
                      " levels deep : " + Outermost(name));
    }
    open_.push_back(name);
  }

  void Put(std::string_view text) {
    if (text.size() > Variables::kLargestResult - result_.size()) {
      throw Exception("The expanded text is longer than " + std::to_string(Variables::kLargestResult) +
                      " bytes");
    }
    result_ += text;
  }

  const std::string& Outermost(const std::string& name) const { return open_.empty() ? name : open_.front(); }

  const Variables& variables_;
  bool nested_;
  std::string result_;
  std::vector<std::string> open_;
  std::size_t replacements_ = 0;
};

}  // namespace

const std::string* Variables::Layer::Find(std::string_view name) const {
  if (variables.empty()) return nullptr;
  const auto place = places.find(FoldCase(name));
  return place == places.end() ? nullptr : &variables[place->second].second;
}

void Variables::Layer::Set(std::string name, std::string value) {
  const auto [place, isNew] = places.try_emplace(FoldCase(name), variables.size());
  if (isNew) variables.emplace_back();
  variables[place->second] = {std::move(name), std::move(value)};
}

void Variables::SetOverride(std::string name, std::string value) {
  overrides_.Set(std::move(name), std::move(value));
}

void Variables::SetProject(std::string name, std::string value) {
  project_.Set(std::move(name), std::move(value));
}

std::optional<std::string> Variables::Find(std::string_view name) const {
  if (const std::string* value = overrides_.Find(name)) return *value;
  if (const std::string* value = project_.Find(name)) return *value;
  return environment_ ? environment_(std::string(name)) : std::nullopt;
}

std::vector<std::string> Variables::UnusedOverrides(std::vector<std::string> texts) const {
  std::set<std::string> used;  // folded
  while (!texts.empty()) {
    const std::string text = std::move(texts.back());
    texts.pop_back();
    for (const std::string& name : NamesIn(text)) {
      if (!used.insert(FoldCase(name)).second) continue;
      if (const std::optional<std::string> value = Find(name)) texts.push_back(*value);
    }
  }
  std::vector<std::string> unused;
  for (const auto& [name, value] : overrides_.variables) {
    if (!used.contains(FoldCase(name))) unused.push_back(name);
  }
  return unused;
}

std::string Variables::Expand(std::string_view text, bool nested) const {
  Expansion expansion(*this, nested);
  expansion.Append(text);
  return expansion.Take();
}

}  // namespace qx
