// The report of a dry run line by line: what each line is, so that it can be coloured, and how many there are
// of what. No pixel.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qx::desktop {

enum class DiffKind {
  Plain,    // a context line, a program's command, a word about a missing line end
  Program,  // the heading of a program that would run
  OldFile,  // the headings of a file: before and after
  NewFile,
  Place,  // where in the file the next lines are
  Added,
  Removed
};

struct DiffLine {
  std::string text;  // without its line end
  DiffKind kind = DiffKind::Plain;
};

// The lines of what DryRun gives, in their order. What a changed line says never makes it a heading: the
// counts in "@@ -a,b +c,d @@" tell which lines belong to the file.
std::vector<DiffLine> DiffLinesOf(std::string_view report);

// How many lines are of that kind.
std::size_t CountOf(const std::vector<DiffLine>& lines, DiffKind kind);

}  // namespace qx::desktop
