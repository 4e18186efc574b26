#include "host/desktop/DiffLines.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace qx::desktop {
namespace {

// Lines of a hunk that are still to come.
struct Left {
  std::size_t before = 0;
  std::size_t after = 0;
};

bool Take(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

std::optional<std::size_t> TakeNumber(std::string_view& text) {
  std::size_t number = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (fault != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

// "12,3" or "12", which is one line.
std::optional<std::size_t> TakeCount(std::string_view& text) {
  if (!TakeNumber(text)) return std::nullopt;
  return Take(text, ",") ? TakeNumber(text) : 1;
}

// What "@@ -a,b +c,d @@" announces.
std::optional<Left> HunkOf(std::string_view line) {
  if (!Take(line, "@@ -")) return std::nullopt;
  const std::optional<std::size_t> before = TakeCount(line);
  if (!before || !Take(line, " +")) return std::nullopt;
  const std::optional<std::size_t> after = TakeCount(line);
  if (!after || !Take(line, " @@")) return std::nullopt;
  return Left{*before, *after};
}

// What a line is inside a hunk. "\ No newline at end of file" is no line of the file and counts as none.
DiffKind TakeFrom(Left& left, std::string_view line) {
  const char mark = line.empty() ? ' ' : line.front();
  if (mark == '\\') return DiffKind::Plain;
  if (mark != '+' && left.before > 0) --left.before;
  if (mark != '-' && left.after > 0) --left.after;
  return mark == '+' ? DiffKind::Added : mark == '-' ? DiffKind::Removed : DiffKind::Plain;
}

DiffKind KindOutside(std::string_view line) {
  constexpr std::pair<std::string_view, DiffKind> kHeadings[] = {
      {"Would run in ", DiffKind::Program}, {"--- ", DiffKind::OldFile}, {"+++ ", DiffKind::NewFile}};
  for (const auto& [beginning, kind] : kHeadings)
    if (line.starts_with(beginning)) return kind;
  return DiffKind::Plain;
}

}  // namespace

std::vector<DiffLine> DiffLinesOf(std::string_view report) {
  std::vector<DiffLine> lines;
  Left left;
  while (!report.empty()) {
    // A carriage return alone ends no line of a file that is compared.
    std::string_view line = report.substr(0, report.find('\n'));
    report.remove_prefix(std::min(report.size(), line.size() + 1));
    if (line.ends_with('\r')) line.remove_suffix(1);
    DiffKind kind = DiffKind::Plain;
    if (left.before + left.after > 0) {
      kind = TakeFrom(left, line);
    } else if (const std::optional<Left> hunk = HunkOf(line)) {
      left = *hunk;
      kind = DiffKind::Place;
    } else {
      kind = KindOutside(line);
    }
    lines.push_back({std::string(line), kind});
  }
  return lines;
}

std::size_t CountOf(const std::vector<DiffLine>& lines, DiffKind kind) {
  return static_cast<std::size_t>(
      std::count_if(lines.begin(), lines.end(), [&](const DiffLine& line) { return line.kind == kind; }));
}

}  // namespace qx::desktop
