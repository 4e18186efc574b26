#include "host/report/ServiceMessages.h"

#include <algorithm>
#include <array>

#include "platform/Lines.h"
#include "platform/Texts.h"
#include "platform/VisibleText.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

// A text as a terminal may show it. A lone CR is a line end to all of these systems, and theirs to escape.
std::string Shown(std::string_view text) {
  const std::string valid = AsValidUtf8(text);
  if (!HasHiddenCharacters(valid)) return valid;
  std::string shown;
  for (std::size_t at = 0; at <= valid.size();) {
    const std::size_t end = std::min(valid.find('\r', at), valid.size());
    shown += VisibleText(std::string_view(valid).substr(at, end - at));
    if (end < valid.size()) shown += '\r';
    at = end + 1;
  }
  return shown;
}

bool IsSeen(char c) { return c > ' ' && c < '\x7F'; }

// Where the next visible ASCII character stands; the text's size where there is none.
std::size_t NextSeen(std::string_view text, std::size_t at) {
  while (at < text.size() && !IsSeen(text[at])) ++at;
  return at;
}

// A line that GitHub's and Azure's readers take for text. They look for "::" behind blanks at the beginning and
// for "##[" and "##vso[" anywhere, and compare by rules that pass over characters that nobody sees: such a pair
// is parted by a blank whatever else stands within it.
std::string Guarded(std::string_view line) {
  std::string text = Shown(line);
  if (text.find('[') != kNone && text.find('#') != text.rfind('#')) {
    std::string parted;
    for (std::size_t i = 0; i < text.size(); ++i) {
      parted += text[i];
      if (text[i] != '#') continue;
      const std::size_t next = NextSeen(text, i + 1);
      if (next < text.size() && text[next] == '#') parted += ' ';
    }
    text = std::move(parted);
  }
  const std::size_t first = NextSeen(text, 0);
  if (first == text.size() || text[first] != ':') return text;
  const std::size_t second = NextSeen(text, first + 1);
  if (second < text.size() && text[second] == ':') text.insert(first + 1, " ");
  return text;
}

// Their readers end a line at a lone CR too.
void AppendGuarded(std::string& out, std::string_view text) {
  if (text.empty()) out += '\n';
  ForEachLine(text, [&out](std::string_view line) { (out += Guarded(line)) += '\n'; });
}

// In one line, where a message has no escapes.
std::string GuardedInOneLine(std::string_view text) {
  std::string one(text);
  std::replace_if(
      one.begin(), one.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return Guarded(one);
}

struct Escape {
  char character;
  std::string_view text;
};

template <std::size_t kCount>
std::string Escaped(std::string_view text, const std::array<Escape, kCount>& escapes) {
  std::string out;
  for (const char c : Shown(text)) {
    const auto found = std::find_if(escapes.begin(), escapes.end(),
                                    [c](const Escape& escape) { return escape.character == c; });
    if (found == escapes.end()) {
      out += c;
    } else {
      out += found->text;
    }
  }
  return out;
}

// ---- TeamCity: ##teamcity[NAME ATTRIBUTE='VALUE'], "|" before what means something, |0xNNNN for the rest.

constexpr std::array kTeamCityEscapes{Escape{'|', "||"}, Escape{'\'', "|'"}, Escape{'[', "|["},
                                      Escape{']', "|]"}, Escape{'\n', "|n"}, Escape{'\r', "|r"}};
// A longer description is refused.
constexpr std::size_t kLongestProblem = 4000;

void AppendUnit(std::string& out, std::uint32_t unit) { (out += "|0x") += LowerHex(unit, 4); }

std::string ForTeamCity(std::string_view text) {
  std::string out;
  const std::string escaped = Escaped(text, kTeamCityEscapes);
  for (std::size_t at = 0; at < escaped.size();) {
    const char32_t c = NextCodePoint(escaped, at);
    if (c >= 0x20 && c < 0x7F) {
      out += static_cast<char>(c);
    } else if (c <= 0xFFFF) {
      AppendUnit(out, c);
    } else {
      AppendUnit(out, 0xD7C0 + (c >> 10));
      AppendUnit(out, 0xDC00 + (c & 0x3FF));
    }
  }
  return out;
}

void AppendTeamCity(std::string& out, std::string_view message, std::string_view attribute,
                    std::string_view value, std::string_view status = {}) {
  ((((out += "##teamcity[") += message) += ' ') += attribute) += attribute.empty() ? "'" : "='";
  (out += ForTeamCity(value)) += '\'';
  if (!status.empty()) ((out += " status='") += status) += '\'';
  out += "]\n";
}

void TeamCityLine(std::string& out, std::string_view text) {
  if (LowerCase(text).find("##teamcity") != kNone) return AppendTeamCity(out, "message", "text", text);
  if (text.empty()) out += '\n';
  ForEachLine(text, [&out](std::string_view line) { (out += Shown(line)) += '\n'; });
}

void TeamCityDiagnostic(std::string& out, std::string_view line, const Diagnostic& diagnostic,
                        const std::string&) {
  AppendTeamCity(out, "message", "text", line, diagnostic.severity == Severity::Error ? "ERROR" : "WARNING");
}

void TeamCityProblem(std::string& out, std::string_view text) {
  std::size_t end = std::min(text.size(), kLongestProblem);
  while (end > 0 && end < text.size() && !BeginsCharacter(text[end])) --end;
  AppendTeamCity(out, "buildProblem", "description", text.substr(0, end));
}

void TeamCityOpen(std::string& out, std::string_view name) {
  AppendTeamCity(out, "blockOpened", "name", name);
}
void TeamCityClose(std::string& out, std::string_view name) {
  AppendTeamCity(out, "blockClosed", "name", name);
}
void TeamCityOpenProject(std::string& out, std::string_view name) {
  AppendTeamCity(out, "compilationStarted", "compiler", name);
}
void TeamCityCloseProject(std::string& out, std::string_view name) {
  AppendTeamCity(out, "compilationFinished", "compiler", name);
}
void TeamCityProgress(std::string& out, int, std::string_view text) {
  AppendTeamCity(out, "progressMessage", "", text);
}
void TeamCityVersion(std::string& out, std::string_view, std::string_view value, bool isFirst) {
  if (isFirst) AppendTeamCity(out, "buildNumber", "", value);
}

// ---- GitHub: ::COMMAND PROPERTY=VALUE,...::DATA, percent escapes, more of them in a property.

constexpr std::array kGitHubData{Escape{'%', "%25"}, Escape{'\r', "%0D"}, Escape{'\n', "%0A"}};
constexpr std::array kGitHubProperty{Escape{'%', "%25"}, Escape{'\r', "%0D"}, Escape{'\n', "%0A"},
                                     Escape{':', "%3A"}, Escape{',', "%2C"}};

// GitHub marks a line of a file of the repository, which it knows from its root and with "/".
std::string FileFrom(const std::string& root, std::string_view file) {
  std::string name(file);
  if (!root.empty() && name.size() > root.size() &&
      SameText(std::string_view(name).substr(0, root.size()), root))
    name.erase(0, root.size());
  std::replace(name.begin(), name.end(), '\\', '/');
  return name;
}

void GitHubDiagnostic(std::string& out, std::string_view line, const Diagnostic& diagnostic,
                      const std::string& root) {
  AppendGuarded(out, line);
  out += "::";
  out += NameOf(diagnostic.severity);
  char before = ' ';
  const auto property = [&](std::string_view name, std::string_view value) {
    if (value.empty()) return;
    ((out += before) += name) += '=';
    out += Escaped(value, kGitHubProperty);
    before = ',';
  };
  property("file", FileFrom(root, diagnostic.file));
  if (diagnostic.line > 0 && !diagnostic.file.empty()) {
    property("line", std::to_string(diagnostic.line));
    if (diagnostic.column > 0) property("col", std::to_string(diagnostic.column));
  }
  property("title", diagnostic.code);
  ((out += "::") += Escaped(diagnostic.message, kGitHubData)) += '\n';
}

void GitHubProblem(std::string& out, std::string_view text) {
  ((out += "::error::") += Escaped(text, kGitHubData)) += '\n';
}
void GitHubOpen(std::string& out, std::string_view name) {
  ((out += "::group::") += Escaped(name, kGitHubData)) += '\n';
}
void GitHubClose(std::string& out, std::string_view) { out += "::endgroup::\n"; }
void GitHubVersion(std::string& out, std::string_view name, std::string_view value, bool) {
  ((out += "::notice title=") += Escaped(name, kGitHubProperty)) += "::";
  (out += Escaped(value, kGitHubData)) += '\n';
}

// ---- Azure: ##vso[COMMAND PROPERTY=VALUE;...]DATA, percent escapes.

constexpr std::array kAzureData{Escape{'%', "%AZP25"}, Escape{'\r', "%0D"}, Escape{'\n', "%0A"}};
constexpr std::array kAzureProperty{Escape{'%', "%AZP25"}, Escape{'\r', "%0D"}, Escape{'\n', "%0A"},
                                    Escape{';', "%3B"}, Escape{']', "%5D"}};

void AppendIssue(std::string& out, const Diagnostic& diagnostic) {
  (out += "##vso[task.logissue type=") += NameOf(diagnostic.severity);
  out += ';';
  const auto property = [&out](std::string_view name, std::string_view value) {
    if (value.empty()) return;
    ((((out += name) += '=') += Escaped(value, kAzureProperty)) += ';');
  };
  property("sourcepath", diagnostic.file);
  if (diagnostic.line > 0) property("linenumber", std::to_string(diagnostic.line));
  if (diagnostic.column > 0) property("columnnumber", std::to_string(diagnostic.column));
  property("code", diagnostic.code);
  ((out += ']') += Escaped(diagnostic.message, kAzureData)) += '\n';
}

void AzureDiagnostic(std::string& out, std::string_view line, const Diagnostic& diagnostic,
                     const std::string&) {
  AppendGuarded(out, line);
  AppendIssue(out, diagnostic);
}
void AzureProblem(std::string& out, std::string_view text) {
  Diagnostic problem;
  problem.message = text;
  AppendIssue(out, problem);
}
void AzureOpen(std::string& out, std::string_view name) {
  ((out += "##[group]") += GuardedInOneLine(name)) += '\n';
}
void AzureClose(std::string& out, std::string_view) { out += "##[endgroup]\n"; }
void AzureProgress(std::string& out, int percent, std::string_view text) {
  (out += "##vso[task.setprogress value=") += std::to_string(percent);
  ((out += ";]") += Escaped(text, kAzureData)) += '\n';
}
void AzureVersion(std::string& out, std::string_view, std::string_view value, bool isFirst) {
  if (isFirst) ((out += "##vso[build.updatebuildnumber]") += Escaped(value, kAzureData)) += '\n';
}

constexpr std::array kSystems{
    ServiceSystem{"teamcity", TeamCityLine, TeamCityDiagnostic, TeamCityProblem, TeamCityOpen, TeamCityClose,
                  TeamCityOpenProject, TeamCityCloseProject, TeamCityProgress, TeamCityVersion, ""},
    ServiceSystem{"github", AppendGuarded, GitHubDiagnostic, GitHubProblem, GitHubOpen, GitHubClose, nullptr,
                  nullptr, nullptr, GitHubVersion, "GITHUB_WORKSPACE"},
    ServiceSystem{"azure", AppendGuarded, AzureDiagnostic, AzureProblem, AzureOpen, AzureClose, nullptr,
                  nullptr, AzureProgress, AzureVersion, ""},
};

}  // namespace

const ServiceSystem* FindServiceSystem(std::string_view name) {
  const auto found = std::find_if(kSystems.begin(), kSystems.end(),
                                  [name](const ServiceSystem& system) { return system.name == name; });
  return found == kSystems.end() ? nullptr : &*found;
}

}  // namespace qx
