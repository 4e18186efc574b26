// Making an action ready to run from the file that it is to work on (a solution, say): an optional interface
// that an action class may implement besides TQXAction. The host knows no names and asks every class it has.
#pragma once

#include <string>
#include <vector>

#include "plugin/Qxaction.h"
#include "plugin/Qxtypes.h"

namespace qx {

struct FromFileRequest {
  std::string file;           // absolute, as it is named on disk
  std::string projectFolder;  // absolute, with its delimiter: where the build project will stand
  std::string configuration;  // the one that is wanted; empty: the action chooses
  bool stamps = false;        // whether it is to stamp version numbers
};

struct FromFileAnswer {
  std::vector<std::string> decisions;  // what was chosen, a line each
  std::vector<std::string> warnings;   // likewise
  // How many of the files that a stamping run rewrites end a line in LF alone.
  int filesWithLineFeeds = 0;
};

// Implemented by an action class; asked by the host with FromFileOf, on the thread that edits.
class IQXFromFile : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{E94A3C17-05F8-4B2D-9D6E-7A1B8C40F523}");
  using Base = IInterface;

  // Whether the action works on such a file, by its name alone. May be asked before Create.
  virtual bool TakesFile(const std::string& file) = 0;
  // Sets the properties of a new action. Raises Exception where no build of that file is possible.
  virtual FromFileAnswer SetUpFromFile(const FromFileRequest& request) = 0;

 protected:
  ~IQXFromFile() = default;
};

// The action's way to be made from a file; null for an action that has none.
inline IQXFromFile* FromFileOf(TQXAction& action) { return dynamic_cast<IQXFromFile*>(&action); }

}  // namespace qx
