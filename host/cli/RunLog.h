// What a run writes besides its work: the log on standard output and in a file, the errors and warnings read out of
// it, and the baseline of those that are known.
#pragma once

#include <string>
#include <vector>

#include "host/cli/Session.h"
#include "host/diagnostics/Baseline.h"
#include "host/diagnostics/DiagnosticLog.h"
#include "host/project/Runner.h"
#include "host/report/RunRecorder.h"

namespace qx::cli {

// What is known already, by --baseline; with --update-baseline the file may be missing: it is made then.
class KnownDiagnostics {
 public:
  // `folder`: the build project's. Raises Exception that names a file that is no baseline.
  KnownDiagnostics(const Invocation& invocation, const std::string& folder);
  const Baseline& Known() const { return baseline_; }
  // Absolute; empty: there is none.
  const std::string& File() const { return file_; }

  // Writes the file where that was asked for. Only a run that went through has seen everything: what a part of
  // one did not come to would be new the next time. False, with a complaint, when it cannot be written.
  bool Update(const DiagnosticLog& diagnostics, RunOutcome outcome) const;

 private:
  std::string file_;
  std::string folder_;
  bool updates_;
  Baseline baseline_;
};

// The log's way out: standard output, and a file when one is named.
class RunLog {
 public:
  // The baseline outlives it. `records`: the run is kept for its reports.
  RunLog(const Session& session, const Invocation& invocation, const Baseline& known, bool records);
  // From now on the log goes into this file too, which is made anew. Raises Exception that names it.
  void AddFile(const std::string& path);

  ActionLog& Log() { return log_; }
  const DiagnosticLog& Diagnostics() const { return diagnostics_; }
  // Whether nobody asked for another form than text.
  bool IsText() const { return style_ == "text"; }
  // Null: the run is not recorded.
  RunRecorder* Recorder() { return recorder_; }
  // Hands on what is left and complains about what could not be written.
  void Finish();

 private:
  void Add(LogFile file, const std::string& style, ColourChoice colour);

  std::string style_;
  ActionLog log_;
  const DiagnosticLog& diagnostics_;
  RunRecorder* recorder_ = nullptr;  // the log's
  std::vector<const StreamSink*> sinks_;
};

}  // namespace qx::cli
