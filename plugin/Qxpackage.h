// The entries that a package library exports, looked up by the host's loader under exactly these names,
// called on the thread that loads. Order: QXPackageLoad, QXRegister, ..., QXPackageUnload.
#pragma once

#include "plugin/Qxtypes.h"

namespace qx {

// One unit of a package: its name and how many times it has been started without being stopped.
struct TQXUnit {
  const char* name;
  int startCount;
};

// The unit table, in the order in which units start. Stays valid while the library is loaded.
struct TQXUnitTable {
  const TQXUnit* units;
  int count;
};

extern "C" {
// Starts the package's units in dependency order.
using QXPackageLoadEntry = void (*)();
// Stops them in reverse order.
using QXPackageUnloadEntry = void (*)();
using QXPackageUnitsEntry = TQXUnitTable (*)();
// Registers everything the package offers; `design`: property editors and pages are wanted too.
using QXRegisterEntry = void (*)(bool design);
}

// Before each entry of a package: QX_PACKAGE_ENTRY void QXRegister(bool design) { ... }
#ifdef __ELF__
#define QX_PACKAGE_ENTRY extern "C" __attribute__((visibility("default")))
#else
#define QX_PACKAGE_ENTRY extern "C" __declspec(dllexport)
#endif

inline constexpr const char* kPackageLoadName = "QXPackageLoad";
inline constexpr const char* kPackageUnloadName = "QXPackageUnload";
inline constexpr const char* kPackageUnitsName = "QXPackageUnits";
inline constexpr const char* kRegisterName = "QXRegister";

}  // namespace qx
