// What reports tell of a run: its outcome, actions, errors and warnings, changed files, tests and log. Values only.
#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/actions/TestResults.h"
#include "host/diagnostics/DiagnosticLog.h"
#include "host/project/RunSummary.h"
#include "host/project/Runner.h"
#include "host/project/UnifiedDiff.h"
#include "plugin/Qxcheck.h"

namespace qx {

enum class ActionState { NotRun, Succeeded, Failed };

struct ActionRecord {
  int number = 0;  // 1-based place in the build project
  std::string name;
  ActionState state = ActionState::NotRun;
  double seconds = 0;
  std::vector<std::string> exceptions;
  std::vector<std::string> lastLines;  // of its log, the newest last
  std::vector<TestCase> tests;
};

struct ValidationRecord {
  int action = 0;
  std::string subject, message;
};

// A file that an action stamped.
struct FileChange {
  int action = 0;
  std::string path;
  std::vector<DiffLine> diff;  // UTF-8
  std::string remark;          // why the diff is missing or cut; empty: neither
};

// The log as text: all of it, or its beginning and its end.
struct LogExcerpt {
  std::string head, tail;
  std::int64_t linesBetween = 0;  // that are left out
};

struct RunRecord {
  std::string project;      // the build project's file
  std::string hostVersion;  // "1.0.0"
  std::chrono::sys_seconds started{};
  RunOutcome outcome = RunOutcome::Succeeded;
  bool hasBaseline = false;
  RunSummary summary;
  std::vector<ActionRecord> actions;  // all of the build project, in its order
  std::vector<ValidationRecord> validation;
  std::vector<std::pair<int, CheckFinding>>
      findings;  // errors and warnings of the actions' checks before the run
  std::span<const Diagnostic> diagnostics;
  bool diagnosticsAreCut = false;  // more were told than these
  std::vector<DiagnosticLog::Project> projects;
  std::vector<FileChange> changes;
  LogExcerpt log;
};

// "The run succeeded" and the like: one line for people.
std::string VerdictOf(const RunRecord& record);
// "succeeded", "failed", "invalid", "stopped": one word for programs.
std::string_view OutcomeWord(const RunRecord& record);
// "2026-11-22T10:00:00Z"; `seconds` later.
std::string TimeText(std::chrono::sys_seconds time, double seconds = 0);

// The projects of an action, by name: those that it reports, those whose output began, those that errors or
// warnings belong to; each once.
struct ProjectRecord {
  std::string name;
  const RunProject* report = nullptr;  // null: the action tells nothing of it
  std::vector<const Diagnostic*> errors;
};
std::vector<ProjectRecord> ProjectsOf(const RunRecord& record, int action);

// "FILE(12,5)"; as much of it as is known.
std::string PlaceOf(const Diagnostic& diagnostic);
// "FILE(12,5): error C2065: TEXT".
std::string LineOf(const Diagnostic& diagnostic);

}  // namespace qx
