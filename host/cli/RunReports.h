// The reports of a run that the command line asks for: which, where to, and that none of them is written over what
// the run reads.
#pragma once

#include <string>
#include <vector>

#include "host/cli/Session.h"
#include "host/report/Reports.h"

namespace qx::cli {

class RunReports {
 public:
  // Takes each --report FORMAT=FILE. Raises Exception for a format that is not there, a folder that is missing, a
  // file named twice, and one that is among the inputs (absolute; empty ones are passed over).
  RunReports(const Invocation& invocation, const std::vector<std::string>& inputs);
  bool AreWanted() const { return !reports_.empty(); }

  // Once the project is open: raises Exception for a report that is the same file as one that a property of an
  // action names.
  void RefuseFilesOf(const OpenProject& project) const;

  // The files that are written, absolute.
  std::vector<std::string> Files() const;

  // Each whole or not at all; false, with a complaint each, where one cannot be written.
  bool Write(const RunRecord& record) const;

 private:
  struct Report {
    const ReportFormat* format;
    std::string file;  // absolute
  };
  void Refuse(const std::string& input, const std::string& what) const;

  std::vector<Report> reports_;
};

}  // namespace qx::cli
