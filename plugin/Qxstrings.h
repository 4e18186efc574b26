// The contract's list of texts: what string-list properties hold, what files are loaded into, and what the
// host hands to an action to fill. A plain value: copying copies the items.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "plugin/Qxtypes.h"

namespace qx {

// Texts are 8-bit. Comparisons "by name" and IndexOf ignore letter case; everything else is exact.
class QX_API TStringList {
 public:
  TStringList() = default;
  TStringList(std::vector<std::string> items) : items_(std::move(items)) {}

  int Count() const { return static_cast<int>(items_.size()); }
  // The item at a zero-based index; raises "List index out of bounds (INDEX)".
  const std::string& Get(int index) const;
  void Put(int index, std::string text);
  int Add(std::string text);
  void Insert(int index, std::string text);
  void Delete(int index);
  void Clear() { items_.clear(); }
  const std::vector<std::string>& Items() const { return items_; }
  std::vector<std::string>& Items() { return items_; }

  // Index of the first item that equals the text without regard to letter case, or -1.
  int IndexOf(std::string_view text) const;

  // The lines joined by CR LF, the last one with its line end too; empty for an empty list.
  std::string Text() const;
  // Splits at CR LF, CR or LF; a text that ends in a line end gives no further empty line.
  void SetText(std::string_view text);

  // Items separated by commas or blanks, quoted by double quotes where needed, doubled quotes inside.
  std::string CommaText() const;
  void SetCommaText(std::string_view text);

  // "name=value" lines. The name part is what stands before the first "="; a line without "=" has none.
  int IndexOfName(std::string_view name) const;
  // Value of the first line of that name, empty when there is none.
  std::string Value(std::string_view name) const;
  // Replaces the first line of that name in place, appends one when there is none; an empty value deletes it.
  void SetValue(std::string_view name, std::string_view value);

  friend bool operator==(const TStringList&, const TStringList&) = default;

 private:
  std::vector<std::string> items_;
};

}  // namespace qx
