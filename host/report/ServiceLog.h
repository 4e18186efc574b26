// The log as a continuous-integration system wants it: the lines of the text log, and between them what that system
// is told. One for each stream; it comes behind the run's DiagnosticLog.
#pragma once

#include <string>

#include "host/diagnostics/DiagnosticLog.h"
#include "host/report/ServiceMessages.h"

namespace qx {

class ServiceLog {
 public:
  // Both outlive it. The root is taken from the environment.
  ServiceLog(const ServiceSystem& system, const DiagnosticLog& diagnostics);

  // Appends the record, which the diagnostics have taken before.
  void Append(std::string& out, const LogRecord& record);

 private:
  void AppendOutput(std::string& out, const LogRecord& record);
  void AppendSummary(std::string& out, const LogRecord& record) const;
  void CloseProject(std::string& out);

  const ServiceSystem* system_;
  const DiagnosticLog* diagnostics_;
  std::string root_;
  std::string openProject_;
};

}  // namespace qx
