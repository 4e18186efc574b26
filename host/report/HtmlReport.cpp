// A run as a page.
#include <algorithm>
#include <cmath>

#include "host/project/ProjectCheck.h"
#include "host/report/Markup.h"
#include "host/report/Reports.h"
#include "platform/Texts.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

// Light and dark by the reader's own setting. On a narrow screen each row of a table becomes a block, its cells led
// by the column's name. Colour never stands alone: the word does.
constexpr std::string_view kStyle = R"(
:root{color-scheme:light dark;--ink:#1d2129;--faint:#596069;--paper:#fff;--panel:#f4f5f7;--line:#d5d9df;
--bad:#b3261e;--bad-paper:#fdeceb;--good:#176a34;--good-paper:#e6f4ea;--warn:#7a4d00;--warn-paper:#fff3d6}
@media(prefers-color-scheme:dark){:root{--ink:#e3e6ea;--faint:#a2a9b3;--paper:#14171b;--panel:#1e2227;--line:#3a4048;
--bad:#ff9c94;--bad-paper:#3a1b19;--good:#85d79d;--good-paper:#15301d;--warn:#f0c36c;--warn-paper:#33270e}}
*{box-sizing:border-box}
body{margin:0 auto;max-width:76rem;padding:1rem;font:1rem/1.5 system-ui,sans-serif;color:var(--ink);
background:var(--paper)}
h1{font-size:1.4rem;margin:0}h2{font-size:1.1rem;margin:2rem 0 .5rem}
p{margin:.25rem 0}.faint{color:var(--faint)}
header{padding:1rem;border-left:.4rem solid}
header.good{color:var(--good);background:var(--good-paper)}header.bad{color:var(--bad);background:var(--bad-paper)}
header p{color:var(--ink)}
table{border-collapse:collapse;width:100%}
th{text-align:left;font-weight:600;color:var(--faint);white-space:nowrap}.short{white-space:nowrap}
td.long{min-width:14rem}
th,td{padding:.35rem .75rem .35rem 0;border-bottom:1px solid var(--line);vertical-align:top;unicode-bidi:isolate}
td{overflow-wrap:anywhere}td details{margin:0}td summary{padding:0}
code,pre{font:.875rem/1.45 ui-monospace,"DejaVu Sans Mono",monospace}
pre{margin:.5rem 0;padding:.75rem;background:var(--panel);white-space:pre-wrap;overflow-wrap:anywhere;
unicode-bidi:isolate}
details{margin:.5rem 0}summary{cursor:pointer;padding:.25rem 0;overflow-wrap:anywhere}
summary:focus-visible,a:focus-visible{outline:2px solid currentcolor;outline-offset:2px}
.tag{display:inline-block;padding:0 .5rem;border-radius:.25rem;background:var(--panel);white-space:nowrap}
.error{color:var(--bad);background:var(--bad-paper)}.warning{color:var(--warn);background:var(--warn-paper)}
.ok{color:var(--good);background:var(--good-paper)}
ins,del{display:block;text-decoration:none}ins{color:var(--good);background:var(--good-paper)}
del{color:var(--bad);background:var(--bad-paper)}
@media(max-width:40rem){thead{position:absolute;left:-100rem}tr{display:block;padding:.5rem 0;
border-bottom:1px solid var(--line)}td{display:flex;gap:.75rem;border:0;padding:.1rem 0}td:empty{display:none}
td::before{content:attr(data-name);flex:0 0 5.5rem;color:var(--faint)}td>*{min-width:0}
td.long{min-width:0}.short{white-space:normal}}
)";

class Page {
 public:
  void Markup(std::string_view text) { out_ += text; }
  void Text(std::string_view text) { out_ += MarkupText(text); }
  void Element(std::string_view name, std::string_view text) {
    out_ += "<" + std::string(name) + ">" + MarkupText(text) + "</" + std::string(name) + ">\n";
  }
  void Heading(const std::string& text) { Element("h2", text); }

  void Table(std::initializer_list<std::string_view> names) {
    names_ = names;
    out_ += "<table><thead><tr>";
    for (const std::string_view name : names_) out_ += "<th scope=\"col\">" + MarkupText(name) + "</th>";
    out_ += "</tr></thead><tbody>\n";
    column_ = 0;
  }
  void EndTable() { out_ += "</tbody></table>\n"; }
  void Row() {
    out_ += "<tr>";
    column_ = 0;
  }
  // `kind` colours it as a tag; empty: plain text.
  void Cell(std::string_view text, std::string_view kind = {}) {
    const std::string tag = kind.empty() ? "span" : "span class=\"tag " + std::string(kind) + "\"";
    AppendCell(text, tag, "span");
  }
  void CodeCell(std::string_view text) { AppendCell(text, "code", "code"); }
  void EndRow() { out_ += "</tr>\n"; }
  std::string Take() { return std::move(out_); }

 private:
  void AppendCell(std::string_view text, const std::string& tag, const std::string& element) {
    out_ += text.size() > kLongestShort ? "<td class=\"long\"" : "<td class=\"short\"";
    out_ += " data-name=\"" + MarkupText(names_.at(column_++)) + "\">";
    if (text.size() > kLongestShown) {
      std::size_t end = kLongestShort;
      while (end > 0 && !BeginsCharacter(text[end])) --end;
      out_ += "<details><summary>" + MarkupText(text.substr(0, end)) + "... (" + std::to_string(text.size()) +
              " bytes)</summary>" + MarkupText(text) + "</details>";
    } else if (!text.empty()) {
      out_ += "<" + tag + ">" + MarkupText(text) + "</" + element + ">";
    }
    out_ += "</td>";
  }

  // A cell of no more stays in one line where the screen is wide enough; one of more is folded.
  static constexpr std::size_t kLongestShort = 24;
  static constexpr std::size_t kLongestShown = 4000;

  std::string out_;
  std::vector<std::string_view> names_;
  std::size_t column_ = 0;
};

std::string Seconds(double seconds) {
  const long long tenths = std::llround(std::clamp(seconds, 0.0, 1e9) * 10);
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s";
}

std::string Counted(std::int64_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

void AppendHeader(Page& page, const RunRecord& record) {
  const bool isGood = record.outcome == RunOutcome::Succeeded;
  page.Markup(isGood ? "<header class=\"good\">" : "<header class=\"bad\">");
  page.Element("h1", VerdictOf(record));
  std::string counts =
      Counted(record.summary.errors, "error") + ", " + Counted(record.summary.warnings, "warning");
  if (record.hasBaseline)
    counts += "; " + std::to_string(record.summary.known) + " in the baseline not counted";
  page.Element("p", counts);
  page.Element("p", record.project + ", begun " + TimeText(record.started) + ", took " +
                        Seconds(record.summary.seconds));
  page.Markup("</header>\n");
}

void AppendValidation(Page& page, const RunRecord& record) {
  if (record.validation.empty()) return;
  page.Heading("What has to be set right first");
  page.Table({"Action", "Setting", "Fault"});
  for (const ValidationRecord& fault : record.validation) {
    page.Row();
    page.Cell(std::to_string(fault.action));
    page.Cell(fault.subject);
    page.Cell(fault.message);
    page.EndRow();
  }
  page.EndTable();
}

void AppendFindings(Page& page, const RunRecord& record) {
  if (record.findings.empty()) return;
  page.Heading("Known before the run");
  page.Table({"Action", "Kind", "Subject", "What is so", "What to do"});
  for (const auto& [action, finding] : record.findings) {
    page.Row();
    page.Cell(std::to_string(action));
    page.Cell(NameOf(finding.severity), NameOf(finding.severity));
    page.Cell(finding.subject);
    page.Cell(finding.message);
    page.Cell(finding.hint);
    page.EndRow();
  }
  page.EndTable();
}

bool HasErrors(const RunRecord& record, int action) {
  return std::any_of(record.diagnostics.begin(), record.diagnostics.end(), [action](const Diagnostic& one) {
    return one.action == action && one.severity == Severity::Error && !one.isKnown;
  });
}

void AppendActions(Page& page, const RunRecord& record) {
  if (record.actions.empty()) return;
  page.Heading("Actions");
  page.Table({"Action", "Result", "Time"});
  for (const ActionRecord& action : record.actions) {
    page.Row();
    page.Cell(std::to_string(action.number) + ". " + action.name);
    if (action.state == ActionState::NotRun) {
      page.Cell("not run", "plain");
    } else {
      const bool isGood = action.state == ActionState::Succeeded;
      page.Cell(isGood ? "succeeded" : "failed", isGood ? "ok" : "error");
    }
    page.Cell(action.state == ActionState::NotRun ? "" : Seconds(action.seconds));
    page.EndRow();
  }
  page.EndTable();
  for (const ActionRecord& action : record.actions) {
    for (const std::string& exception : action.exceptions) page.Element("pre", exception);
    if (action.state != ActionState::Failed || HasErrors(record, action.number)) continue;
    page.Element("p", "The last lines of " + std::to_string(action.number) + ". " + action.name + ":");
    page.Element("pre", Join(action.lastLines, "\n"));
  }
}

void AppendVersions(Page& page, const RunRecord& record) {
  bool isFirst = true;
  for (const auto& [action, report] : record.summary.reports) {
    for (const RunVersion& version : report.versions) {
      if (isFirst) {
        page.Heading("Versions");
        page.Table({"Action", "Version", "Before", "Now"});
        isFirst = false;
      }
      page.Row();
      page.Cell(std::to_string(action));
      page.Cell(version.name);
      page.CodeCell(version.from);
      page.CodeCell(version.to);
      page.EndRow();
    }
  }
  if (!isFirst) page.EndTable();
}

std::string VersionsOf(const RunProject& project) {
  std::string text = project.found.assembly;
  if (!project.found.file.empty()) text += (text.empty() ? "file " : ", file ") + project.found.file;
  return text;
}

void AppendProject(Page& page, int action, const ProjectRecord& project) {
  page.Row();
  page.Cell(std::to_string(action));
  page.Cell(project.name);
  if (project.report == nullptr) {
    page.Cell(project.errors.empty() ? "no errors" : Counted(std::ssize(project.errors), "error"),
              project.errors.empty() ? "plain" : "error");
    page.CodeCell("");
    page.CodeCell("");
    page.Cell("");
  } else {
    const RunProject& report = *project.report;
    page.Cell(report.status, report.isFault ? "error" : report.status == "ok" ? "ok" : "plain");
    page.CodeCell(report.output);
    page.CodeCell(VersionsOf(report));
    page.Cell(report.reason);
  }
  page.EndRow();
}

void AppendProjects(Page& page, const RunRecord& record) {
  bool isFirst = true;
  for (const ActionRecord& action : record.actions) {
    for (const ProjectRecord& project : ProjectsOf(record, action.number)) {
      if (isFirst) {
        page.Heading("Projects");
        page.Table({"Action", "Project", "State", "Program", "Versions", "Reason"});
        isFirst = false;
      }
      AppendProject(page, action.number, project);
    }
  }
  if (!isFirst) page.EndTable();
}

void AppendDiagnostics(Page& page, const RunRecord& record, bool known) {
  const auto isWanted = [known](const Diagnostic& one) { return one.isKnown == known; };
  if (std::none_of(record.diagnostics.begin(), record.diagnostics.end(), isWanted)) return;
  if (known) page.Markup("<details><summary>Known ones, which do not count</summary>\n");
  page.Table({"Kind", "Code", "Place", "Message", "Project"});
  for (const Severity severity : {Severity::Error, Severity::Warning}) {
    for (const Diagnostic& one : record.diagnostics) {
      if (one.severity != severity || !isWanted(one)) continue;
      page.Row();
      page.Cell(NameOf(severity), NameOf(severity));
      page.CodeCell(one.code);
      page.CodeCell(PlaceOf(one));
      page.Cell(one.message);
      page.Cell(one.project);
      page.EndRow();
    }
  }
  page.EndTable();
  if (known) page.Markup("</details>\n");
}

void AppendChanges(Page& page, const RunRecord& record) {
  if (record.changes.empty()) return;
  page.Heading("Files changed");
  for (const FileChange& change : record.changes) {
    page.Markup("<details open><summary><code>");
    page.Text(change.path);
    page.Markup("</code></summary>\n");
    if (!change.remark.empty()) page.Element("p", change.remark);
    if (!change.diff.empty()) page.Markup("<pre>");
    for (const DiffLine& line : change.diff) {
      if (line.kind == DiffKind::OldFile || line.kind == DiffKind::NewFile) continue;
      const bool isAdded = line.kind == DiffKind::Added, isRemoved = line.kind == DiffKind::Removed;
      page.Markup(isAdded ? "<ins>" : isRemoved ? "<del>" : "");
      page.Text(line.text);
      page.Markup(isAdded ? "</ins>" : isRemoved ? "</del>" : "\n");
    }
    if (!change.diff.empty()) page.Markup("</pre>\n");
    page.Markup("</details>\n");
  }
}

void AppendTest(Page& page, const TestCase& test) {
  const bool isGood = test.outcome == "Passed";
  page.Row();
  page.Cell(test.outcome, isGood ? "ok" : test.outcome == "Failed" ? "error" : "plain");
  page.Cell(test.className.empty() ? test.name : test.className + "." + test.name);
  page.Cell(Seconds(test.seconds));
  page.CodeCell(test.trace.empty() ? test.message : test.message + "\n" + test.trace);
  page.EndRow();
}

void AppendTests(Page& page, const RunRecord& record) {
  for (const ActionRecord& action : record.actions) {
    if (action.tests.empty()) continue;
    page.Heading("Tests of " + std::to_string(action.number) + ". " + action.name);
    page.Table({"Outcome", "Test", "Time", "Message"});
    for (const bool passed : {false, true}) {
      for (const TestCase& test : action.tests) {
        if ((test.outcome == "Passed") == passed) AppendTest(page, test);
      }
    }
    page.EndTable();
  }
}

void AppendLog(Page& page, const RunRecord& record) {
  page.Heading("Log");
  page.Markup("<details><summary>The log of the run</summary>\n<pre>");
  page.Text(record.log.head);
  if (record.log.linesBetween > 0)
    page.Text("\n[" + Counted(record.log.linesBetween, "line") + " left out here]\n\n");
  page.Text(record.log.tail);
  page.Markup("</pre>\n</details>\n");
}

}  // namespace

std::string HtmlReport(const RunRecord& record) {
  Page page;
  page.Markup("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n");
  page.Markup("<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n");
  page.Markup(
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
      "'unsafe-inline'\">\n");
  page.Element("title", VerdictOf(record) + ": " + FilePart(record.project));
  page.Markup("<style>");
  page.Markup(kStyle);
  page.Markup("</style>\n</head>\n<body>\n");
  AppendHeader(page, record);
  page.Markup("<main>\n");
  AppendValidation(page, record);
  AppendFindings(page, record);
  if (!record.diagnostics.empty()) page.Heading("Errors and warnings");
  AppendDiagnostics(page, record, false);
  AppendDiagnostics(page, record, true);
  if (record.diagnosticsAreCut)
    page.Element("p", "More were told than are listed here; the log has all of them.");
  AppendActions(page, record);
  AppendVersions(page, record);
  AppendProjects(page, record);
  AppendChanges(page, record);
  AppendTests(page, record);
  AppendLog(page, record);
  page.Markup("</main>\n</body>\n</html>\n");
  return page.Take();
}

}  // namespace qx
