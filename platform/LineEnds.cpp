#include "platform/LineEnds.h"

#include <algorithm>
#include <array>
#include <vector>

#include "platform/Lines.h"

namespace qx {
namespace {

LineEnds inUse = LineEnds::CrLf;

std::vector<Line> LinesOf(std::string_view text) {
  std::vector<Line> lines;
  LineCursor cursor(text);
  for (Line line; cursor.Next(line);) lines.push_back(line);
  return lines;
}

std::string_view EndOf(std::string_view text, const Line& line) {
  const std::size_t at = line.begin + line.text.size();
  return text.substr(at, line.next - at);
}

std::string_view CommonestEnd(std::string_view text, const std::vector<Line>& lines) {
  constexpr std::array<std::string_view, 3> kEnds{"\r\n", "\n", "\r"};
  std::array<std::size_t, 3> counts{};
  for (const Line& line : lines) {
    const auto end = std::find(kEnds.begin(), kEnds.end(), EndOf(text, line));
    if (end != kEnds.end()) ++counts[static_cast<std::size_t>(end - kEnds.begin())];
  }
  return kEnds[static_cast<std::size_t>(std::max_element(counts.begin(), counts.end()) - counts.begin())];
}

// How many lines both begin with.
std::size_t SameInFront(const std::vector<Line>& one, const std::vector<Line>& other) {
  std::size_t same = 0;
  while (same < one.size() && same < other.size() && one[same].text == other[same].text) ++same;
  return same;
}

// How many lines both end with, those in front left out.
std::size_t SameBehind(const std::vector<Line>& one, const std::vector<Line>& other, std::size_t front) {
  const std::size_t most = std::min(one.size(), other.size()) - front;
  std::size_t same = 0;
  while (same < most && one[one.size() - 1 - same].text == other[other.size() - 1 - same].text) ++same;
  return same;
}

}  // namespace

void SetLineEnds(LineEnds ends) { inUse = ends; }
LineEnds CurrentLineEnds() { return inUse; }

std::string WithEndsOf(std::string_view oldText, std::string_view newText) {
  const std::vector<Line> before = LinesOf(oldText), after = LinesOf(newText);
  const std::string_view commonest = CommonestEnd(oldText, before);
  const std::size_t front = SameInFront(before, after), behind = SameBehind(before, after, front);
  const bool samePlaces = before.size() == after.size();
  std::string out;
  out.reserve(newText.size());
  for (std::size_t i = 0; i < after.size(); ++i) {
    const Line* own = nullptr;
    if (i < front || samePlaces) own = &before[i];
    if (i + behind >= after.size()) own = &before[before.size() - (after.size() - i)];
    const bool isLast = i + 1 == after.size();
    std::string_view end = own == nullptr ? commonest : EndOf(oldText, *own);
    if (end.empty() && !isLast) end = commonest;
    out.append(after[i].text).append(end);
  }
  return out;
}

}  // namespace qx
