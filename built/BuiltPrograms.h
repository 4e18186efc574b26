// Whether a build made what it should: each program of a solution is looked for where it must lie, and the
// versions that it bears are compared with those that stand in the sources. Reads files only. A solution that
// cannot be read raises Exception; what is wrong with one project or program is that one's state.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/Qxtypes.h"
#include "programs/ProgramFile.h"
#include "projects/OutputPlaces.h"

namespace qx {

enum class BuiltState {
  Ok,       // it is there, not older than the files its versions stand in, and bears them
  Missing,  // it is not there
  Stale,    // it is older than one of those files
  Differs,  // it bears other versions, or is no program that can be read
  Skipped,  // the build leaves the project out, or the project makes no program
  Unknown,  // where it lies cannot be worked out
};
// "ok", "missing" ...
std::string_view NameOfState(BuiltState state);
// Whether something is wrong with the program.
bool IsFault(BuiltState state);

// Dotted; empty: not said.
struct ProgramVersions {
  std::string assembly, file;
};

struct BuiltProgram {
  std::string name, path, guid;  // of the project, as the solution has them
  std::string output;            // the program's absolute path; empty: it has none, or it is unknown
  BuiltState state = BuiltState::Unknown;
  std::string reason;               // what is wrong and what to do, one line; empty for Ok
  ProgramVersions expected, found;  // what the sources say, with their "*"; what the program bears
};

// Whether the build is to make the project of that identifier; none: all that the solution builds.
using IsProjectBuilt = std::function<bool(const std::string& guid)>;

// The solution has configurations, but not the one that was asked for; the message names them.
class UnknownConfiguration final : public Exception {
 public:
  using Exception::Exception;
};

// One for each project of the solution, in its order, solution folders left out. `asked` is a configuration
// as FindConfiguration takes it. Raises UnknownConfiguration, too.
std::vector<BuiltProgram> LookAtBuiltPrograms(const std::string& solutionFile, const std::string& asked,
                                              const std::map<std::string, std::string>& properties = {},
                                              const IsProjectBuilt& isBuilt = {});

// Whether numbers are those of a written version: "1.2" is 1.2.0.0, and from a "*" on any numbers agree.
bool VersionAgrees(std::string_view written, const BinaryVersion& numbers);

}  // namespace qx
