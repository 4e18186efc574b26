// A run as a file for others: a page to read, and the forms that programs read. Values in, text out.
#pragma once

#include <string>
#include <string_view>

#include "host/report/RunRecord.h"

namespace qx {

// One self-contained page that needs no script: verdict, versions, projects, errors and warnings, changed files as
// diffs, tests, the log folded.
std::string HtmlReport(const RunRecord& record);
// {"outcome":..,"summary":{..},"diagnostics":[..],..}: the run's summary, the errors and warnings, actions,
// validation errors and tests.
std::string JsonReport(const RunRecord& record);
// The form that Ant's task began: a suite an action; a case for it and each of its projects; its tests in a suite of
// their own.
std::string JunitReport(const RunRecord& record);
// Static Analysis Results Interchange Format 2.1.0.
std::string SarifReport(const RunRecord& record);

struct ReportFormat {
  std::string_view name;  // "html"
  std::string (*write)(const RunRecord& record);
};
// Null: there is none of that name.
const ReportFormat* FindReportFormat(std::string_view name);
// "html, json, junit, sarif".
std::string ReportFormatNames();

}  // namespace qx
