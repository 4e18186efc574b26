// run and validate.
#include <cmath>

#include "host/cli/Commands.h"
#include "host/cli/Session.h"
#include "host/runtime/HostProgram.h"
#include "host/runtime/Runner.h"
#include "platform/Files.h"
#include "platform/Paths.h"

namespace qx::cli {
namespace {

// The right to change the project. A run that saves nothing does without where nobody may write.
std::unique_ptr<FileLock> LockForRun(const std::string& file, bool saves) {
  try {
    return std::make_unique<FileLock>(file);
  } catch (const Exception& fault) {
    if (!fault.Message().starts_with("Cannot lock")) throw;
    if (saves) throw Exception(fault.Message() + "; run it with --no-save where nothing can be saved");
    return nullptr;
  }
}

std::optional<std::chrono::milliseconds> TimeoutOf(const Invocation& invocation) {
  const std::optional<std::string> text = invocation.Value("--timeout");
  if (!text) return std::nullopt;
  return std::chrono::milliseconds(static_cast<long long>(std::ceil(ToSeconds(*text).value_or(0) * 1000)));
}

void SaveAfterwards(OpenProject& project, Catalogue& catalogue, bool& failed) {
  try {
    for (const std::string& warning : project.Save()) Session::Warn(warning);
    catalogue.SaveOptions();
  } catch (const Exception& fault) {
    Session::Complain(fault.Message());
    failed = true;
  }
}

}  // namespace

int RunProject(Session& session, const Invocation& invocation) {
  const std::string file = ExpandPath("", invocation.operands[0]);
  const bool saves = !invocation.Has("--no-save");
  const LogStyle style = invocation.Value("--log").value_or("text") == "json" ? LogStyle::Json : LogStyle::Text;
  if (!FileExists(file)) throw Exception("Cannot read " + file + ": there is no such file");
  const std::unique_ptr<FileLock> lock = LockForRun(file, saves);

  ActionLog log;
  std::vector<const StreamSink*> sinks;
  const auto add = [&](LogFile target, ColourChoice colour) {
    LogSink& sink = log.AddSink(std::make_unique<StreamSink>(std::move(target), style, colour));
    sinks.push_back(static_cast<const StreamSink*>(&sink));
  };
  add(LogFile::StandardOutput(), session.Colour());
  if (const auto path = invocation.Value("--log-file")) add(LogFile::Create(*path), ColourChoice::Never);

  OpenProject project = session.Open(file, invocation, &log);
  SetCurrentFolder(FolderPart(file));
  StopRequests requests;
  Runner runner(project, log, session.Stopping());
  RunOutcome outcome = runner.Validate();
  bool saveFailed = false;
  if (outcome == RunOutcome::Succeeded) {
    if (project.ActionCount() == 0) Session::Warn(file + " holds no action");
    outcome = runner.Execute(requests, TimeoutOf(invocation));
    log.Flush();
    if (saves) SaveAfterwards(project, TheCatalogue(), saveFailed);
    if (outcome == RunOutcome::Stopped) {
      const bool timeOut = runner.StoppedBy() == StopRequests::Event::TimeOut;
      Session::Complain(file + (timeOut ? ": stopped by the time-out" : ": stopped by the user"));
    }
  }
  log.Flush();
  for (const StreamSink* sink : sinks) {
    if (!sink->Error().empty()) Session::Complain("part of the log is lost: " + sink->Error());
  }
  if (saveFailed && outcome == RunOutcome::Succeeded) return 2;
  return static_cast<int>(outcome);
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
