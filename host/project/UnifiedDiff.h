// The difference of two files as a unified diff that `patch` applies. Bytes in, bytes out.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

// What a line of a report with diffs is.
enum class DiffKind {
  Plain,    // a line that stays, a word about a missing line end, a program's command
  Program,  // the heading of a program that would run; no diff has one
  OldFile,  // the headings of a file: before and after
  NewFile,
  Place,  // where in the file the next lines are
  Added,
  Removed
};

struct DiffLine {
  DiffKind kind = DiffKind::Plain;
  std::string text;  // with its mark, without the line feed at its end
};

// From `before` to `after`, either of which may be no file at all; with three lines of context. `name` is
// what the file is called behind "a/" and "b/", with "/" as its delimiter. Empty when the two are equal.
// Files that have little in common are given as one replaced stretch: right, if not the shortest.
std::vector<DiffLine> DiffLines(const std::string& name, std::optional<std::string_view> before,
                                std::optional<std::string_view> after);

// The lines as `patch` reads them, each with its line feed.
std::string TextOf(std::span<const DiffLine> lines);

// Both in one.
std::string UnifiedDiff(const std::string& name, std::optional<std::string_view> before,
                        std::optional<std::string_view> after);

}  // namespace qx
