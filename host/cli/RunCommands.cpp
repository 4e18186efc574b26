// run and validate.
#include <chrono>
#include <cmath>

#include "host/cli/Commands.h"
#include "host/cli/Session.h"
#include "host/diagnostics/Baseline.h"
#include "host/diagnostics/DiagnosticLog.h"
#include "host/project/DryRun.h"
#include "host/project/RunSummary.h"
#include "host/project/Runner.h"
#include "host/report/ServiceLog.h"
#include "host/settings/HostSettings.h"
#include "host/system/HostProgram.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::cli {
namespace {

constexpr int kUsageError = 2;

// The right to change the project. A run that saves nothing does without where nobody may write.
std::unique_ptr<FileLock> LockForRun(const std::string& file, bool saves) {
  try {
    return std::make_unique<FileLock>(file);
  } catch (const FileNotLockable& fault) {
    if (saves) throw Exception(fault.Message() + "; run it with --no-save where nothing can be saved");
    return nullptr;
  }
}

std::optional<std::chrono::milliseconds> TimeoutOf(const Invocation& invocation) {
  const std::optional<std::string> text = invocation.Value("--timeout");
  if (!text) return std::nullopt;
  return std::chrono::milliseconds(static_cast<long long>(std::ceil(ToSeconds(*text).value_or(0) * 1000)));
}

// True when everything was saved; complains otherwise.
bool SaveAfterwards(Session& session, OpenProject& project, bool dry) {
  try {
    for (const std::string& warning : project.Save()) Session::Warn(warning);
    if (!dry) session.Catalogue().SaveOptions();
    return true;
  } catch (const Exception& fault) {
    Session::Complain(fault.Message());
    return false;
  }
}

// What is known already, by --baseline; with --update-baseline the file may be missing: it is made then.
class KnownDiagnostics {
 public:
  KnownDiagnostics(const Invocation& invocation, const std::string& folder)
      : file_(invocation.Value("--baseline").value_or("")),
        folder_(folder),
        updates_(invocation.Has("--update-baseline")),
        baseline_(folder) {
    if (file_.empty() && updates_)
      throw Exception("--update-baseline needs a file to write: name it with --baseline FILE");
    if (file_.empty()) return;
    file_ = ExpandPath("", file_);
    if (updates_ && !FileExists(file_)) return;
    const std::string text = ReadFile(file_);
    try {
      baseline_ = Baseline::Read(text, folder);
    } catch (const Exception& fault) {
      throw Exception(file_ + " is no baseline: " + fault.Message() +
                      "; write one with --baseline FILE --update-baseline");
    }
  }
  const Baseline& Known() const { return baseline_; }

  // Writes the file where that was asked for. Only a run that went through has seen everything: what a part of
  // one did not come to would be new the next time. False, with a complaint, when it cannot be written.
  bool Update(const DiagnosticLog& diagnostics, RunOutcome outcome) const {
    if (!updates_) return true;
    if (outcome != RunOutcome::Succeeded) {
      Session::Warn(file_ + " stays as it is: the run did not succeed");
      return true;
    }
    if (diagnostics.IsCut())
      Session::Warn(file_ + " holds the first " + std::to_string(diagnostics.Kept().size()) + " only");
    try {
      ReplaceFile(file_, BaselineText(diagnostics.Kept(), folder_));
      return true;
    } catch (const Exception& fault) {
      Session::Complain(fault.Message());
      return false;
    }
  }

 private:
  std::string file_;
  std::string folder_;
  bool updates_;
  Baseline baseline_;
};

// The log's way out: standard output, and a file when one is named. Errors and warnings are read out of it.
class RunLog {
 public:
  RunLog(const Session& session, const Invocation& invocation, const Baseline& known)
      : diagnostics_(static_cast<DiagnosticLog&>(log_.AddSink(std::make_unique<DiagnosticLog>(&known)))) {
    const std::string style = invocation.Value("--log").value_or("text");
    Add(LogFile::StandardOutput(), style, session.Colour());
    const auto path = invocation.Value("--log-file");
    if (path) Add(LogFile::Create(*path), style, ColourChoice::Never);
  }
  ActionLog& Log() { return log_; }
  const DiagnosticLog& Diagnostics() const { return diagnostics_; }
  // Hands on what is left and complains about what could not be written.
  void Finish() {
    log_.Flush();
    for (const StreamSink* sink : sinks_) {
      if (!sink->Error().empty()) Session::Complain("part of the log is lost: " + sink->Error());
    }
  }

 private:
  void Add(LogFile file, const std::string& style, ColourChoice colour) {
    std::unique_ptr<StreamSink> sink;
    if (const ServiceSystem* system = FindServiceSystem(style)) {
      sink = std::make_unique<StreamSink>(
          std::move(file),
          [log = ServiceLog(*system, diagnostics_)](std::string& out, const LogRecord& record) mutable {
            log.Append(out, record);
          });
    } else {
      sink = std::make_unique<StreamSink>(std::move(file), style == "json" ? LogStyle::Json : LogStyle::Text,
                                          colour);
    }
    sinks_.push_back(sink.get());
    log_.AddSink(std::move(sink));
  }
  ActionLog log_;
  const DiagnosticLog& diagnostics_;
  std::vector<const StreamSink*> sinks_;
};

// Tells at the log's end what the actions that began report of the run. The outcome, which faults of programs
// turn red where `check` is "fail".
RunOutcome Summarise(OpenProject& project, const std::vector<int>& begun, const std::string& check,
                     RunOutcome outcome, double seconds, RunLog& log) {
  RunSummary summary;
  const DiagnosticCounts counts = log.Diagnostics().Counts();
  summary.errors = counts.errors;
  summary.warnings = counts.warnings;
  summary.known = counts.known;
  for (const int number : begun) {
    IQXRunReport* report = RunReportOf(*project.Action(number - 1));
    if (report != nullptr) summary.reports.emplace_back(number, report->ReportRun(check != "off"));
  }
  if (outcome == RunOutcome::Succeeded && HasFaults(summary)) {
    const bool fails = check == "fail";
    if (fails) outcome = RunOutcome::ActionFailed;
    summary.verdict = fails ? "The run failed: not every program is as it should be"
                            : "warning: not every program is as it should be";
  }
  summary.success = outcome == RunOutcome::Succeeded;
  summary.seconds = seconds;
  log.Log().AddSummary(SummaryAsText(summary), SummaryAsJson(summary));
  return outcome;
}

}  // namespace

int RunProject(Session& session, const Invocation& invocation) {
  const std::string file = Session::ProjectFile(invocation);
  const bool saves = !invocation.Has("--no-save");
  const bool dry = invocation.Has("--dry-run");
  const std::unique_ptr<FileLock> lock = dry ? nullptr : LockForRun(file, saves);

  const KnownDiagnostics known(invocation, FolderPart(file));
  RunLog log(session, invocation, known.Known());
  OpenProject project = session.Open(file, invocation, &log.Log());
  for (const std::string& line : session.UnusedSettings(project)) Session::Warn(line);
  SetCurrentFolder(FolderPart(file));
  std::optional<DryRun> rehearsal;
  if (dry) rehearsal.emplace();
  StopRequests requests;
  Runner runner(project, log.Log(), session.Stopping());
  if (rehearsal) runner.SetRehearsal(&*rehearsal);
  RunOutcome outcome = runner.Validate();
  bool saved = true;
  if (outcome == RunOutcome::Succeeded) {
    if (project.ActionCount() == 0) Session::Warn(file + " holds no action");
    std::vector<int> begun;
    runner.SetObserver([&](int number, ActionEvent event) {
      if (event != ActionEvent::Begins) return;
      begun.push_back(number);
      log.Log().AddBegin(number, project.Action(number - 1)->GetActionLogTitle(), project.ActionCount());
    });
    const auto start = std::chrono::steady_clock::now();
    outcome = runner.Execute(requests, TimeoutOf(invocation));
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
    const std::string check = invocation.Value("--check-built").value_or(CurrentHostSettings().checkBuilt);
    if (!dry) outcome = Summarise(project, begun, check, outcome, passed.count(), log);
    if (!dry) saved = known.Update(log.Diagnostics(), outcome);
    if (saves) saved = SaveAfterwards(session, project, dry) && saved;
  }
  log.Finish();
  if (rehearsal) session.Print(TextOf(LinesOf(rehearsal->Result(project))));
  if (outcome == RunOutcome::Stopped) {
    const bool timeOut = runner.StoppedBy() == StopRequests::Event::TimeOut;
    Session::Complain(file + (timeOut ? ": stopped by the time-out" : ": stopped by the user"));
  }
  return outcome == RunOutcome::Succeeded && !saved ? kUsageError : static_cast<int>(outcome);
}

int ValidateProject(Session& session, const Invocation& invocation) {
  const std::string file = Session::ProjectFile(invocation);
  ActionLog log;
  log.AddSink(std::make_unique<StreamSink>(LogFile::StandardOutput(), LogStyle::Text, session.Colour()));
  OpenProject project = session.Open(file, invocation, &log);
  for (const std::string& line : session.UnusedSettings(project)) Session::Warn(line);
  SetCurrentFolder(FolderPart(file));
  const RunOutcome outcome = Runner(project, log, session.Stopping()).Validate();
  log.Flush();
  return static_cast<int>(outcome);
}

}  // namespace qx::cli
