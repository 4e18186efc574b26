// What the package gives the host: its units, started and stopped in order, and everything it registers. The
// library's four entries (Qxpackage.h) call these; nobody else does. All on the thread that loads the package.
#pragma once

#include "plugin/Qxpackage.h"

namespace qx {

// Registers the package's actions and options and, when `design` is set, property editors and pages.
void RegisterPackage(bool design);

// Start the units in the order of the table, stop them in reverse. A stop without a start changes nothing.
void StartUnits();
void StopUnits();

TQXUnitTable UnitTable();

}  // namespace qx
