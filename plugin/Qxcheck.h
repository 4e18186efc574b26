// What an action can tell of a run before it: an optional interface that an action class may implement besides
// TQXAction. An action without it works as ever; the host knows no names.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "plugin/Qxaction.h"
#include "plugin/Qxtypes.h"

namespace qx {

// An error makes the run fail before or at its first file; of everything else there are warnings.
enum class CheckSeverity : std::uint8_t { Error, Warning, Info };

// Texts are UTF-8, one line each; paths are as files are named on disk where they are there.
struct CheckFinding {
  CheckSeverity severity = CheckSeverity::Warning;
  std::string subject;  // the property's name where there is one, else the file's
  std::string message;  // what is so
  std::string file;     // empty: it is about none
  std::string hint;     // what to do about it; may be empty
};

struct CheckedProject {
  std::string name, path;  // as the solution has them
  std::string language;    // "C#", "Visual Basic", "Visual C++", "J#", "Setup", "Web", "Folder", "Other"
  bool builds = false;     // this run builds it
  std::string reason;      // why not; empty when it does
};

struct CheckedStamp {
  std::string file;
  std::string project;       // its name
  std::string kind;          // "AssemblyInfo", "ResourceScript"
  std::string assemblyFrom;  // the versions that stand there now, dotted; empty: it does not say
  std::string fileFrom;
};

struct CheckReport {
  std::vector<CheckFinding> findings;
  std::vector<CheckedProject> projects;  // in the order of the solution
  std::vector<CheckedStamp> stamps;      // in the order in which they would be stamped
};

// Implemented by an action class; asked by the host with CheckOf.
class IQXCheck : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{61D0E8B3-7C42-4F95-B1A8-3E5F29C7D064}");
  using Base = IInterface;

  // Whatever can be known without building or writing, beyond what Validate says; changes neither a file nor
  // the action. The current folder is the build project's. While no run is under way; raises nothing.
  virtual CheckReport CheckRun() = 0;

 protected:
  ~IQXCheck() = default;
};

// The action's check; null for an action that has none.
inline IQXCheck* CheckOf(TQXAction& action) { return dynamic_cast<IQXCheck*>(&action); }

}  // namespace qx
