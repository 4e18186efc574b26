// The commands `run` and `validate`.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <span>

#include "host/cli/Commands.h"
#include "host/cli/RunLog.h"
#include "host/cli/RunReports.h"
#include "host/cli/Session.h"
#include "host/diagnostics/SkippedProjects.h"
#include "host/keeping/Keeping.h"
#include "host/project/DryRun.h"
#include "host/project/RunKeeper.h"
#include "host/project/RunSummary.h"
#include "host/project/Runner.h"
#include "host/settings/HostSettings.h"
#include "host/system/HostProgram.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::cli {
namespace {

constexpr int kUsageError = 2;

// The right to change the project. A run that saves nothing does without where nobody may write.
std::unique_ptr<FileLock> LockForRun(const std::string& file, bool saves,
                                     std::chrono::milliseconds patience) {
  try {
    return std::make_unique<FileLock>(file, patience);
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
bool SaveAfterwards(Session& session, OpenProject& project, const RunKeeper* keeper) {
  try {
    for (const std::string& warning : project.Save()) {
      if (keeper == nullptr || !keeper->HasWarned(warning)) Session::Warn(warning);
    }
    if (keeper != nullptr) session.Catalogue().SaveOptions();
    return true;
  } catch (const Exception& fault) {
    Session::Complain(fault.Message());
    return false;
  }
}

// What a run of these files keeps.
RunKeeper::Settings KeptBy(OpenProject& project, const RunRecord& record, std::vector<std::string> folders,
                           bool saves) {
  RunKeeper::Settings settings{
      {}, CurrentHostSettings().history, record.started.time_since_epoch().count(), std::move(folders)};
  if (saves) settings.saveNumbers = [&project] { return project.Save(); };
  return settings;
}

const char* WhoStopped(const StopGuard& guard) {
  return guard.TimedOut() ? ": stopped by the time-out" : ": stopped by the user";
}

// What a run says that does not end by itself when it is to stop.
class LastWords {
 public:
  LastWords(StopGuard& guard, const std::string& file, ActionLog& log) : guard_(guard) {
    guard.SetLastWords([&guard, file, &log] {
      Session::Complain(file + WhoStopped(guard) + "; what went on did not end by itself and was cut off");
      log.Flush();
    });
  }
  ~LastWords() { guard_.SetLastWords(nullptr); }
  LastWords(const LastWords&) = delete;
  LastWords& operator=(const LastWords&) = delete;

 private:
  StopGuard& guard_;
};

// Tells at the log's end what the actions that began report of the run. The outcome, which faults of programs
// turn red where `check` is "fail".
RunOutcome Summarise(OpenProject& project, const std::vector<int>& begun, const std::string& check,
                     RunOutcome outcome, RunLog& log, RunSummary& summary) {
  const DiagnosticCounts counts = log.Diagnostics().Counts();
  summary.errors = counts.errors;
  summary.warnings = counts.warnings;
  summary.known = counts.known;
  const auto amend = [&log](RunReport& report, int number) {
    TakeSkipped(report, number, log.Diagnostics().Kept());
  };
  outcome = AddReports(summary, project, begun, check, outcome, amend);
  log.Log().AddSummary(SummaryAsText(summary), log.IsText() ? "" : SummaryAsJson(summary));
  return outcome;
}

// Runs the actions, tells the log where each begins and keeps what the reports want. The actions that began.
std::vector<int> Execute(Runner& runner, OpenProject& project, RunLog& log, StopRequests& requests,
                         RunRecord& record) {
  std::vector<int> begun;
  runner.SetObserver([&](int number, ActionEvent event) {
    TQXAction& action = *project.Action(number - 1);
    if (event == ActionEvent::Begins) {
      begun.push_back(number);
      log.Log().AddBegin(number, action.GetActionLogTitle(), project.ActionCount());
    } else if (log.Recorder() != nullptr) {
      log.Recorder()->LookAt(action, number);
    }
  });
  const auto start = std::chrono::steady_clock::now();
  record.outcome = runner.Execute(requests, std::nullopt);
  record.summary.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return begun;
}

// Writes the reports that are wanted, whatever came of the run.
bool Report(const RunReports& reports, RunLog& log, RunRecord& record) {
  if (!reports.AreWanted()) return true;
  log.Recorder()->FillIn(record);
  record.hostVersion = QXHOST_VERSION;
  record.diagnostics = log.Diagnostics().Kept();
  record.diagnosticsAreCut = log.Diagnostics().IsCut();
  record.projects = log.Diagnostics().Projects();
  return reports.Write(record);
}

// The files that the run reads or writes itself, which no report may be written over.
std::vector<std::string> FilesOf(Session& session, const Invocation& invocation,
                                 const KnownDiagnostics& known, const std::string& project) {
  std::vector<std::string> files{project, session.Store().File(), known.File()};
  if (const auto log = invocation.Value("--log-file")) files.push_back(ExpandPath("", *log));
  for (const std::string& package : invocation.Values("--package")) files.push_back(ExpandPath("", package));
  return files;
}

// Whatever the run writes besides what its actions do.
void RefuseInputsAsOutputs(Session& session, const Invocation& invocation, const OpenProject& project,
                           const RunReports& reports, const KnownDiagnostics& known,
                           const std::optional<std::string>& logFile) {
  std::vector<std::string> outputs = reports.Files();
  if (logFile) outputs.push_back(*logFile);
  if (invocation.Has("--update-baseline")) outputs.push_back(known.File());
  for (const std::string& output : outputs) RefuseInputAsOutput(output, project, session.Store().File());
}

}  // namespace

int RunProject(Session& session, const Invocation& invocation) {
  KeepFreedMemory();
  const std::string file = Session::ProjectFile(invocation);
  const bool saves = !invocation.Has("--no-save");
  const bool dry = invocation.Has("--dry-run");
  StopGuard& guard = session.Guard();
  if (const auto timeout = TimeoutOf(invocation)) guard.SetTimeout(*timeout);
  const std::unique_ptr<FileLock> lock = dry ? nullptr : LockForRun(file, saves, PatienceOf(invocation));

  std::optional<std::string> logFile = invocation.Value("--log-file");
  if (logFile) logFile = ExpandPath("", *logFile);
  const KnownDiagnostics known(invocation, FolderPart(file));
  const RunReports reports(invocation, FilesOf(session, invocation, known, file));
  RunLog log(session, invocation, known.Known(), reports.AreWanted());
  const LastWords lastWords(guard, file, log.Log());
  OpenProject project = session.Open(file, invocation, &log.Log());
  session.WarnOfUnusedSettings(project);
  reports.RefuseFilesOf(project);
  SetCurrentFolder(FolderPart(file));
  RefuseInputsAsOutputs(session, invocation, project, reports, known, logFile);
  if (logFile) log.AddFile(*logFile);
  std::vector<std::string> folders;
  if (!dry) folders = WorkFolders(project);
  const auto folderLocks = LockFolders(folders, file, PatienceOf(invocation));
  std::optional<DryRun> rehearsal;
  if (dry) rehearsal.emplace();
  guard.Listen();
  Runner runner(project, log.Log(), session.Stopping());
  if (rehearsal) runner.SetRehearsal(&*rehearsal);
  RunRecord record;
  record.project = file;
  record.started = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  record.hasBaseline = !known.File().empty();
  if (log.Recorder() != nullptr) log.Recorder()->SetActions(project);
  record.outcome = runner.Validate();
  bool saved = true;
  if (record.outcome == RunOutcome::Succeeded) {
    if (project.ActionCount() == 0) Session::Warn(file + " holds no action");
    record.findings = Session::ForetellRun(project);
    std::unique_ptr<RunKeeper> keeper;
    if (!dry)
      keeper = std::make_unique<RunKeeper>(project, KeptBy(project, record, std::move(folders), saves));
    runner.SetWriteObserver(keeper.get());
    const std::vector<int> begun = Execute(runner, project, log, guard.Requests(), record);
    const std::string check = invocation.Value("--check-built").value_or(CurrentHostSettings().checkBuilt);
    if (!dry) {
      record.outcome = Summarise(project, begun, check, record.outcome, log, record.summary);
      saved = known.Update(log.Diagnostics(), record.outcome);
    }
    if (saves) saved = SaveAfterwards(session, project, keeper.get()) && saved;
    if (keeper) {
      EndKeeping(*keeper, record.outcome, record.summary);
      for (const std::string& warning : keeper->Warnings()) Session::Warn(warning);
    }
  }
  log.Finish();
  saved = Report(reports, log, record) && saved;
  if (rehearsal) session.PrintExact(TextOf(LinesOf(rehearsal->Result(project))));
  if (record.outcome == RunOutcome::Stopped) Session::Complain(file + WhoStopped(guard));
  return record.outcome == RunOutcome::Succeeded && !saved ? kUsageError : static_cast<int>(record.outcome);
}

int ValidateProject(Session& session, const Invocation& invocation) {
  const std::string file = Session::ProjectFile(invocation);
  ActionLog log;
  log.AddSink(std::make_unique<StreamSink>(LogFile::StandardOutput(), LogStyle::Text, session.Colour()));
  OpenProject project = session.Open(file, invocation, &log);
  session.WarnOfUnusedSettings(project);
  SetCurrentFolder(FolderPart(file));
  const RunOutcome outcome = Runner(project, log, session.Stopping()).Validate();
  log.Flush();
  return static_cast<int>(outcome);
}

}  // namespace qx::cli
