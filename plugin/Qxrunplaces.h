// What a run of an action will touch, told before it begins: an optional interface that an action class may
// implement besides TQXAction. An action without it works as ever; the host knows no names.
#pragma once

#include <string>
#include <vector>

#include "plugin/Qxaction.h"
#include "plugin/Qxtypes.h"

namespace qx {

// Implemented by an action class; asked by the host with RunPlacesOf. The current folder is the build project's.
// What cannot be found out is left out; raises nothing.
class IQXRunPlaces : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{0F6B2D71-A49C-4E38-8D50-9B17C3E4F2A6}");
  using Base = IInterface;

  // Folders whose files the run changes: one run at a time works in each. Before Execute, on its thread or
  // on the one that begins it.
  virtual std::vector<std::string> GetWorkFolders() = 0;
  // Every file that the run reads or rewrites, so that nothing else is written over one. Looks into files, so
  // it takes as long as opening them does.
  virtual std::vector<std::string> GetInputFiles() = 0;

 protected:
  ~IQXRunPlaces() = default;
};

// The action's places; null for an action that tells none.
inline IQXRunPlaces* RunPlacesOf(TQXAction& action) { return dynamic_cast<IQXRunPlaces*>(&action); }

}  // namespace qx
