// The four entries of the package library, and nothing else of it, are seen from outside.
#include "registration/Qxvsdotnetreg.h"

extern "C" {

QX_API void QXPackageLoad() { qx::StartUnits(); }
QX_API void QXPackageUnload() { qx::StopUnits(); }
QX_API qx::TQXUnitTable QXPackageUnits() { return qx::UnitTable(); }
QX_API void QXRegister(bool design) { qx::RegisterPackage(design); }
}
