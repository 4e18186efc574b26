#include "host/diagnostics/ProjectMark.h"

#include <charconv>

#include "host/diagnostics/DiagnosticLine.h"
#include "platform/Texts.h"

namespace qx {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

bool Take(std::string_view& text, std::string_view beginning) {
  if (!text.starts_with(beginning)) return false;
  text.remove_prefix(beginning.size());
  return true;
}

// The text between double quotes that the rest begins with, taken off it.
bool TakeQuoted(std::string_view& text, std::string_view& inside) {
  if (!Take(text, "\"")) return false;
  const std::size_t end = text.find('"');
  if (end == kNone) return false;
  inside = text.substr(0, end);
  text.remove_prefix(end + 1);
  return true;
}

// " (2)" or " (2:3)" behind a project's file.
int NumberBehind(std::string_view text) {
  if (!Take(text, " (")) return 0;
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end != text.data() ? number : 0;
}

// "------ Build started: Project: App, Configuration: Debug Win32 ------" in whatever language: a word, a
// word, the name up to the last comma.
bool ReadHeading(std::string_view text, ProjectMark& mark) {
  if (!Take(text, "------ ") || !text.ends_with(" ------")) return false;
  const std::size_t word = text.find(": ");
  const std::size_t name = word == kNone ? kNone : text.find(": ", word + 2);
  const std::size_t comma = text.rfind(", ");
  if (name == kNone || comma == kNone || comma < name + 2) return false;
  mark.project = text.substr(name + 2, comma - name - 2);
  return true;
}

// Project "A.sln" (1) is building "B.csproj" (2) on node 1:    Project "A.sln" on node 1 (default targets).
bool ReadEntering(std::string_view text, ProjectMark& mark) {
  std::string_view file;
  if (!Take(text, "Project \"")) return false;
  const std::size_t end = text.find('"');
  if (end == kNone) return false;
  file = text.substr(0, end);
  text.remove_prefix(end + 1);
  mark.kind = MarkKind::Enters;
  mark.projectNumber = NumberBehind(text);
  const std::size_t inner = text.find(" is building \"");
  if (inner != kNone) {
    text.remove_prefix(inner + std::string_view(" is building ").size());
    if (!TakeQuoted(text, file)) return false;
    mark.projectNumber = NumberBehind(text);
  } else if (!text.ends_with(':') && !text.ends_with('.')) {
    return false;
  }
  mark.project = ProjectNameOf(file);
  return true;
}

bool ReadLeaving(std::string_view text, ProjectMark& mark) {
  if (!Take(text, "Done building project ") && !Take(text, "Done Building Project ")) return false;
  std::string_view file;
  if (!TakeQuoted(text, file)) return false;
  mark.kind = MarkKind::Leaves;
  mark.project = ProjectNameOf(file);
  return true;
}

// "---------------------- Done ----------------------", "========== Build: 1 succeeded, 0 failed ==========".
bool IsClosing(std::string_view text) {
  return (text.starts_with("---------- ") || text.starts_with("---------------------- ") ||
          text.starts_with("========== ")) &&
         (text.ends_with("---") || text.ends_with("==="));
}

bool IsRepeating(std::string_view text) {
  return text == "Build succeeded." || text == "Build FAILED." || text == "Build succeeded with warnings.";
}

}  // namespace

std::optional<ProjectMark> ReadProjectMark(std::string_view line) {
  ProjectMark mark;
  mark.number = TakeBuildNumber(line);
  while (!line.empty() && static_cast<unsigned char>(line.back()) <= ' ') line.remove_suffix(1);
  if (line.empty()) return std::nullopt;
  switch (line.front()) {
    case '-':
      if (ReadHeading(line, mark)) return mark;
      [[fallthrough]];
    case '=':
      if (!IsClosing(line)) return std::nullopt;
      mark.kind = MarkKind::Closes;
      return mark;
    case 'P':
      return ReadEntering(line, mark) ? std::optional(mark) : std::nullopt;
    case 'D':
      return ReadLeaving(line, mark) ? std::optional(mark) : std::nullopt;
    case 'B':
      if (!IsRepeating(line)) return std::nullopt;
      mark.kind = MarkKind::Repeats;
      return mark;
    default:
      return std::nullopt;
  }
}

}  // namespace qx
