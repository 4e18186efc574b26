// What an action tells of its last run, beyond true or false: an optional interface that an action class may
// implement besides TQXAction. An action without it works as ever; the host knows no names.
#pragma once

#include <string>
#include <vector>

#include "plugin/Qxaction.h"
#include "plugin/Qxtypes.h"

namespace qx {

// Versions are dotted ("1.2.1.0"); texts are UTF-8; paths are as files are named on disk, or as they are
// written where there is no such file.
struct RunVersion {
  std::string name;      // "AssemblyVersion", "AssemblyFileVersion", "FileVersion" (of resource scripts)
  std::string from, to;  // before and after the run
};

struct RunFile {
  std::string path;
  std::string kind;      // "AssemblyInfo", "ResourceScript"
  bool changed = false;  // its bytes were others before
  std::string backup;    // the copy of what it was
};

struct RunProgramVersions {
  std::string assembly, file;  // empty: not said
};

struct RunProject {
  std::string name, path, output;  // output empty: it has none, or where it lies is unknown
  std::string status;              // "ok", "missing", "stale", "differs", "skipped", "unknown"
  std::string reason;              // one line, for all but "ok"
  RunProgramVersions expected, found;
  bool isFault = false;  // the run made no such program as it should have
};

struct RunReport {
  std::vector<RunVersion> versions;  // those that the run stamped
  std::vector<RunFile> files;        // those that it stamped
  std::vector<RunProject> projects;  // of a build or rebuild, where programs were to be looked for
};

// Implemented by an action class; asked by the host with RunReportOf.
class IQXRunReport : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{3C9E61D4-58B7-4A02-9F13-C4A7D20E6B58}");
  using Base = IInterface;

  // Of the last Execute, on any thread once that has ended. `looksForPrograms` false leaves the projects out.
  // What cannot be found out is said in the report; raises nothing.
  virtual RunReport ReportRun(bool looksForPrograms) = 0;

 protected:
  ~IQXRunReport() = default;
};

// The action's report interface; null for an action that has none.
inline IQXRunReport* RunReportOf(TQXAction& action) { return dynamic_cast<IQXRunReport*>(&action); }

}  // namespace qx
