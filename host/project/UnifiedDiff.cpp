#include "host/project/UnifiedDiff.h"

#include <algorithm>

namespace qx {
namespace {

using Lines = std::vector<std::string_view>;

constexpr std::size_t kContext = 3;
// Above this many differing lines the search for the shortest edit would cost more than it tells.
constexpr long kMostEdits = 500;

// Lines end with LF, which they keep; the last one may lack it.
Lines SplitAtLineFeeds(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return lines;
}

// A stretch of the old file that a stretch of the new one replaces.
struct Change {
  std::size_t oldBegin, oldEnd, newBegin, newEnd;
};

// The pairs of equal lines on the shortest way from (0,0) to the end, by the greedy search over diagonals;
// nothing when the way is longer than kMostEdits.
std::optional<std::vector<std::pair<long, long>>> MatchLines(const Lines& a, const Lines& b) {
  const long n = static_cast<long>(a.size());
  const long m = static_cast<long>(b.size());
  const long most = std::min(n + m, kMostEdits);
  std::vector<long> furthest(static_cast<std::size_t>(2 * most + 3), 0);  // by diagonal
  const auto at = [&](std::vector<long>& row, long k) -> long& {
    return row[static_cast<std::size_t>(k + most + 1)];
  };
  std::vector<std::vector<long>> history;
  for (long d = 0; d <= most; ++d) {
    history.push_back(furthest);
    for (long k = -d; k <= d; k += 2) {
      const bool down = k == -d || (k != d && at(furthest, k - 1) < at(furthest, k + 1));
      long x = down ? at(furthest, k + 1) : at(furthest, k - 1) + 1;
      while (x < n && x - k < m && a[static_cast<std::size_t>(x)] == b[static_cast<std::size_t>(x - k)]) ++x;
      at(furthest, k) = x;
      if (x < n || x - k < m) continue;

      std::vector<std::pair<long, long>> matches;  // walked back
      long y = m;
      x = n;
      for (long step = d; step >= 0; --step) {
        std::vector<long>& row = history[static_cast<std::size_t>(step)];
        const long diagonal = x - y;
        const bool wentDown =
            diagonal == -step || (diagonal != step && at(row, diagonal - 1) < at(row, diagonal + 1));
        const long from = step == 0 ? 0 : wentDown ? diagonal + 1 : diagonal - 1;
        const long fromX = step == 0 ? 0 : at(row, from);
        const long fromY = step == 0 ? 0 : fromX - from;
        const long startX = step == 0 ? 0 : wentDown ? fromX : fromX + 1;
        while (x > startX) {
          matches.emplace_back(--x, --y);
        }
        x = fromX;
        y = fromY;
      }
      std::reverse(matches.begin(), matches.end());
      return matches;
    }
  }
  return std::nullopt;
}

std::vector<Change> FindChanges(const Lines& a, const Lines& b) {
  std::size_t head = 0;
  while (head < a.size() && head < b.size() && a[head] == b[head]) ++head;
  std::size_t tail = 0;
  while (tail < a.size() - head && tail < b.size() - head && a[a.size() - 1 - tail] == b[b.size() - 1 - tail])
    ++tail;
  const Lines middleA(a.begin() + static_cast<long>(head), a.end() - static_cast<long>(tail));
  const Lines middleB(b.begin() + static_cast<long>(head), b.end() - static_cast<long>(tail));
  auto matches = MatchLines(middleA, middleB).value_or(std::vector<std::pair<long, long>>());
  matches.emplace_back(static_cast<long>(middleA.size()), static_cast<long>(middleB.size()));
  std::vector<Change> changes;
  std::size_t x = 0;
  std::size_t y = 0;
  for (const auto& [matchX, matchY] : matches) {
    const auto toX = static_cast<std::size_t>(matchX);
    const auto toY = static_cast<std::size_t>(matchY);
    if (toX > x || toY > y) changes.push_back({head + x, head + toX, head + y, head + toY});
    x = toX + 1;
    y = toY + 1;
  }
  return changes;
}

void AppendLine(std::vector<DiffLine>& out, DiffKind kind, std::string_view line) {
  const bool ends = line.ends_with('\n');
  const char* const mark = kind == DiffKind::Added ? "+" : kind == DiffKind::Removed ? "-" : " ";
  if (ends) line.remove_suffix(1);
  out.push_back({kind, std::string(mark).append(line)});
  if (!ends) out.push_back({DiffKind::Plain, "\\ No newline at end of file"});
}

// "12,3", with the line before the stretch when it is empty, as the format wants it.
std::string Range(std::size_t begin, std::size_t end) {
  const std::size_t count = end - begin;
  return std::to_string(count == 0 ? begin : begin + 1) + "," + std::to_string(count);
}

}  // namespace

std::vector<DiffLine> DiffLines(const std::string& name, std::optional<std::string_view> before,
                                std::optional<std::string_view> after) {
  if (before == after) return {};
  const Lines a = SplitAtLineFeeds(before.value_or(""));
  const Lines b = SplitAtLineFeeds(after.value_or(""));
  // A tab tells where a name with blanks ends.
  const std::string nameEnd = name.find(' ') == std::string::npos ? "" : "\t";
  std::vector<DiffLine> out{{DiffKind::OldFile, "--- " + (before ? "a/" + name + nameEnd : "/dev/null")},
                            {DiffKind::NewFile, "+++ " + (after ? "b/" + name + nameEnd : "/dev/null")}};
  const std::vector<Change> changes = FindChanges(a, b);
  for (std::size_t first = 0; first < changes.size();) {
    std::size_t last = first;  // changes whose contexts touch share a hunk
    while (last + 1 < changes.size() && changes[last + 1].oldBegin - changes[last].oldEnd <= 2 * kContext)
      ++last;
    const std::size_t lead = std::min(kContext, changes[first].oldBegin);
    const std::size_t trail = std::min(kContext, a.size() - changes[last].oldEnd);
    out.push_back({DiffKind::Place,
                   "@@ -" + Range(changes[first].oldBegin - lead, changes[last].oldEnd + trail) + " +" +
                       Range(changes[first].newBegin - lead, changes[last].newEnd + trail) + " @@"});
    std::size_t at = changes[first].oldBegin - lead;
    for (; first <= last; ++first) {
      for (; at < changes[first].oldBegin; ++at) AppendLine(out, DiffKind::Plain, a[at]);
      for (; at < changes[first].oldEnd; ++at) AppendLine(out, DiffKind::Removed, a[at]);
      for (std::size_t i = changes[first].newBegin; i < changes[first].newEnd; ++i)
        AppendLine(out, DiffKind::Added, b[i]);
    }
    for (const std::size_t end = at + trail; at < end; ++at) AppendLine(out, DiffKind::Plain, a[at]);
  }
  return out;
}

std::string TextOf(std::span<const DiffLine> lines) {
  std::string text;
  for (const DiffLine& line : lines) text.append(line.text) += '\n';
  return text;
}

std::string UnifiedDiff(const std::string& name, std::optional<std::string_view> before,
                        std::optional<std::string_view> after) {
  return TextOf(DiffLines(name, before, after));
}

}  // namespace qx
