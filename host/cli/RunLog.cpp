#include "host/cli/RunLog.h"

#include "host/diagnostics/DiagnosticLine.h"
#include "host/report/ServiceLog.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx::cli {
namespace {

LineTone ToneOf(std::string_view line) {
  const auto diagnostic = MayBeDiagnostic(line) ? ReadDiagnostic(line) : std::nullopt;
  if (!diagnostic) return LineTone::Plain;
  return diagnostic->severity == Severity::Error ? LineTone::Error : LineTone::Warning;
}

}  // namespace

KnownDiagnostics::KnownDiagnostics(const Invocation& invocation, const std::string& folder)
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

bool KnownDiagnostics::Update(const DiagnosticLog& diagnostics, RunOutcome outcome) const {
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

RunLog::RunLog(const Session& session, const Invocation& invocation, const Baseline& known, bool records)
    : diagnostics_(static_cast<DiagnosticLog&>(log_.AddSink(std::make_unique<DiagnosticLog>(&known)))) {
  if (records) recorder_ = &static_cast<RunRecorder&>(log_.AddSink(std::make_unique<RunRecorder>()));
  style_ = invocation.Value("--log").value_or("text");
  Add(LogFile::StandardOutput(), style_, session.Colour());
}

void RunLog::AddFile(const std::string& path) { Add(LogFile::Create(path), style_, ColourChoice::Never); }

void RunLog::Finish() {
  log_.Flush();
  for (const StreamSink* sink : sinks_) {
    if (!sink->Error().empty()) Session::Complain("part of the log is lost: " + sink->Error());
  }
}

void RunLog::Add(LogFile file, const std::string& style, ColourChoice colour) {
  std::unique_ptr<StreamSink> sink;
  if (const ServiceSystem* system = FindServiceSystem(style)) {
    sink = std::make_unique<StreamSink>(
        std::move(file), [log = ServiceLog(*system, diagnostics_)](
                             std::string& out, const LogRecord& record) mutable { log.Append(out, record); });
  } else {
    sink = std::make_unique<StreamSink>(std::move(file), style == "json" ? LogStyle::Json : LogStyle::Text,
                                        colour);
    sink->SetTones(&ToneOf);
  }
  sinks_.push_back(sink.get());
  log_.AddSink(std::move(sink));
}

}  // namespace qx::cli
