// The contract's list of texts, over the text functions of the platform room.
#include <string>

#include "platform/Texts.h"
#include "plugin/Qxstrings.h"

namespace qx {
namespace {

[[noreturn]] void RaiseOutOfBounds(int index) {
  throw Exception("List index out of bounds (" + std::to_string(index) + ")");
}

// The name part of a "name=value" line; a line without "=" has none.
bool HasName(std::string_view line, std::string_view name) {
  const std::size_t equals = line.find('=');
  return equals != std::string_view::npos && SameText(line.substr(0, equals), name);
}

}  // namespace

const std::string& TStringList::Get(int index) const {
  if (index < 0 || index >= Count()) RaiseOutOfBounds(index);
  return items_[static_cast<std::size_t>(index)];
}

void TStringList::Put(int index, std::string text) {
  if (index < 0 || index >= Count()) RaiseOutOfBounds(index);
  items_[static_cast<std::size_t>(index)] = std::move(text);
}

int TStringList::Add(std::string text) {
  items_.push_back(std::move(text));
  return Count() - 1;
}

void TStringList::Insert(int index, std::string text) {
  if (index < 0 || index > Count()) RaiseOutOfBounds(index);
  items_.insert(items_.begin() + index, std::move(text));
}

void TStringList::Delete(int index) {
  if (index < 0 || index >= Count()) RaiseOutOfBounds(index);
  items_.erase(items_.begin() + index);
}

int TStringList::IndexOf(std::string_view text) const {
  for (int i = 0; i < Count(); ++i) {
    if (SameText(items_[static_cast<std::size_t>(i)], text)) return i;
  }
  return -1;
}

std::string TStringList::Text() const { return JoinLines(items_); }

void TStringList::SetText(std::string_view text) { items_ = SplitLines(text); }

std::string TStringList::CommaText() const { return JoinCommaText(items_); }

void TStringList::SetCommaText(std::string_view text) { items_ = SplitCommaText(text); }

int TStringList::IndexOfName(std::string_view name) const {
  for (int i = 0; i < Count(); ++i) {
    if (HasName(items_[static_cast<std::size_t>(i)], name)) return i;
  }
  return -1;
}

std::string TStringList::Value(std::string_view name) const {
  const int index = IndexOfName(name);
  if (index < 0) return {};
  const std::string& line = items_[static_cast<std::size_t>(index)];
  return line.substr(line.find('=') + 1);
}

void TStringList::SetValue(std::string_view name, std::string_view value) {
  const int index = IndexOfName(name);
  if (value.empty()) {
    if (index >= 0) Delete(index);
    return;
  }
  std::string line(name);
  line += '=';
  line += value;
  if (index < 0) {
    Add(std::move(line));
  } else {
    Put(index, std::move(line));
  }
}

}  // namespace qx
