// run and validate.
#include <chrono>
#include <cmath>

#include "host/cli/Commands.h"
#include "host/cli/Session.h"
#include "host/project/DryRun.h"
#include "host/project/RunSummary.h"
#include "host/project/Runner.h"
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

// The log's way out: standard output, and a file when one is named.
class RunLog {
 public:
  RunLog(const Session& session, const Invocation& invocation) {
    const LogStyle style =
        invocation.Value("--log").value_or("text") == "json" ? LogStyle::Json : LogStyle::Text;
    Add(std::make_unique<StreamSink>(LogFile::StandardOutput(), style, session.Colour()));
    const auto path = invocation.Value("--log-file");
    if (path) Add(std::make_unique<StreamSink>(LogFile::Create(*path), style, ColourChoice::Never));
  }
  ActionLog& Log() { return log_; }
  // Hands on what is left and complains about what could not be written.
  void Finish() {
    log_.Flush();
    for (const StreamSink* sink : sinks_) {
      if (!sink->Error().empty()) Session::Complain("part of the log is lost: " + sink->Error());
    }
  }

 private:
  void Add(std::unique_ptr<StreamSink> sink) {
    sinks_.push_back(sink.get());
    log_.AddSink(std::move(sink));
  }
  ActionLog log_;
  std::vector<const StreamSink*> sinks_;
};

// Tells at the log's end what the actions that began report of the run. The outcome, which faults of programs
// turn red where `check` is "fail".
RunOutcome Summarise(OpenProject& project, const std::vector<int>& begun, const std::string& check,
                     RunOutcome outcome, double seconds, ActionLog& log) {
  RunSummary summary;
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
  log.AddSummary(SummaryAsText(summary), SummaryAsJson(summary));
  return outcome;
}

}  // namespace

int RunProject(Session& session, const Invocation& invocation) {
  const std::string file = ExpandPath("", invocation.operands[0]);
  const bool saves = !invocation.Has("--no-save");
  const bool dry = invocation.Has("--dry-run");
  if (!FileExists(file)) throw Exception("Cannot read " + file + ": there is no such file");
  const std::unique_ptr<FileLock> lock = dry ? nullptr : LockForRun(file, saves);

  RunLog log(session, invocation);
  OpenProject project = session.Open(file, invocation, &log.Log());
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
    runner.SetObserver([&begun](int number, ActionEvent event) {
      if (event == ActionEvent::Begins) begun.push_back(number);
    });
    const auto start = std::chrono::steady_clock::now();
    outcome = runner.Execute(requests, TimeoutOf(invocation));
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
    const std::string check = invocation.Value("--check-built").value_or(CurrentHostSettings().checkBuilt);
    if (!dry) outcome = Summarise(project, begun, check, outcome, passed.count(), log.Log());
    if (saves) saved = SaveAfterwards(session, project, dry);
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
  const std::string file = ExpandPath("", invocation.operands[0]);
  ActionLog log;
  log.AddSink(std::make_unique<StreamSink>(LogFile::StandardOutput(), LogStyle::Text, session.Colour()));
  OpenProject project = session.Open(file, invocation, &log);
  SetCurrentFolder(FolderPart(file));
  const RunOutcome outcome = Runner(project, log, session.Stopping()).Validate();
  log.Flush();
  return static_cast<int>(outcome);
}

}  // namespace qx::cli
