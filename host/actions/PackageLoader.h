// Loads package libraries, rung by rung, and unloads them in the only right order. A package that stops on a
// rung keeps it, with an error that names the file and who is to blame.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/actions/Catalogue.h"
#include "host/system/SharedLibrary.h"
#include "plugin/Qxpackage.h"

namespace qx {

// The ladder. Each rung implies those before it.
enum class PackageState { Named, Found, Opened, Resolved, Started, Registered };
std::string_view PackageStateName(PackageState state);

// Whether a package registers its property editors and pages too.
enum class Registration { Runtime, Design };

class LoadedPackage {
 public:
  // Climbs as far as it goes; never raises. `catalogue` is where the package's calls arrive.
  LoadedPackage(std::string file, Registration registration, const Catalogue& catalogue);
  // Stops the units and closes the library. Everything made by the package is gone by now: PackageLoader sees
  // to it.
  ~LoadedPackage();
  LoadedPackage(const LoadedPackage&) = delete;
  LoadedPackage& operator=(const LoadedPackage&) = delete;

  const std::string& File() const { return file_; }  // absolute
  PackageState State() const { return state_; }
  // Empty once it is registered: "FILE: the package does not export QXRegister (the package's fault)".
  const std::string& Error() const { return error_; }
  // Its unit table as it is now; empty before the package is resolved.
  std::vector<TQXUnit> Units() const;
  // Its registration calls in Catalogue::Calls(): the first one, and the one behind the last.
  std::size_t FirstCall() const { return firstCall_; }
  std::size_t EndOfCalls() const { return endOfCalls_; }

 private:
  void Climb(Registration registration);

  std::string file_;
  PackageState state_ = PackageState::Named;
  std::string error_;
  std::unique_ptr<SharedLibrary> library_;
  QXPackageLoadEntry load_ = nullptr;
  QXPackageUnloadEntry unload_ = nullptr;
  QXPackageUnitsEntry units_ = nullptr;
  QXRegisterEntry register_ = nullptr;
  std::size_t firstCall_ = 0;
  std::size_t endOfCalls_ = 0;
};

class PackageLoader {
 public:
  explicit PackageLoader(Catalogue& catalogue) : catalogue_(catalogue) {}
  // Everything that was registered is forgotten, options objects included, before the packages go, the last
  // one first. Actions must be gone: they belong to their projects.
  ~PackageLoader();
  PackageLoader(const PackageLoader&) = delete;
  PackageLoader& operator=(const PackageLoader&) = delete;

  // Loads a file; one that is loaded already is given back as it is.
  const LoadedPackage& Load(const std::string& file, Registration registration);
  const std::vector<std::unique_ptr<LoadedPackage>>& Packages() const { return packages_; }

  // The file of a package called `name` that comes with the program: beside it, or where an installation puts it
  // (lib/qxhost). Empty when there is none. The name is without an ending.
  static std::string FindInstalled(std::string_view name);

 private:
  Catalogue& catalogue_;
  std::vector<std::unique_ptr<LoadedPackage>> packages_;
};

}  // namespace qx
