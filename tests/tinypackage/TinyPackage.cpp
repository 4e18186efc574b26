// The entries of the tiny package. Built again with TINY_FAULT it is a package that breaks on one rung of the ladder.
#include "plugin/Qxpackage.h"
#include "plugin/Qxservices.h"
#include "tests/tinypackage/TinyAction.h"
#include "tests/tinypackage/TinyPages.h"

#ifndef TINY_FAULT
#define TINY_FAULT 0
#endif
#define TINY_FAULT_NO_REGISTER 1
#define TINY_FAULT_IN_LOAD 2
#define TINY_FAULT_IN_REGISTER 3

namespace {

qx::TQXUnit units[] = {{"TinyAction", 0}, {"TinyPackage", 0}};

}  // namespace

QX_PACKAGE_ENTRY void QXPackageLoad() {
  if (TINY_FAULT == TINY_FAULT_IN_LOAD) throw qx::Exception("the tiny units will not start");
  for (qx::TQXUnit& unit : units) ++unit.startCount;
}

QX_PACKAGE_ENTRY void QXPackageUnload() {
  for (qx::TQXUnit& unit : units) --unit.startCount;
}

QX_PACKAGE_ENTRY qx::TQXUnitTable QXPackageUnits() { return {units, 2}; }

#if TINY_FAULT != TINY_FAULT_NO_REGISTER
QX_PACKAGE_ENTRY void QXRegister(bool design) {
  qx::QXActionServices().RegisterAction(qx::tiny::TinyActionClass(), "Tiny Task", "Testing", "TINY");
  qx::QXOptionsServices().RegisterOptions(qx::tiny::TinyOptionsClass(), "TINY");
  qx::QXScriptingServices().RegisterFunction("TinyOptions", [](qx::IQXScriptCall& call) {
    call.SetResult(qx::QXOptionsServices().FindOptions("Testing", "Tiny"));
  });
  qx::QXScriptingServices().RegisterFunction("Nothing",
                                             [](qx::IQXScriptCall& call) { call.SetResult(nullptr); });
  qx::QXScriptingServices().RegisterFunction(
      "Trouble", [](qx::IQXScriptCall&) { throw qx::Exception("the tiny function fails"); });
  qx::QXScriptingServices().RegisterEnumeration("TTinyVerdict", qx::ValueNames<qx::tiny::TTinyVerdict>);
  if (TINY_FAULT == TINY_FAULT_IN_REGISTER) throw qx::Exception("the tiny catalogue is full");
  if (!design) return;
  static constexpr qx::TQXPropertyEditorClass editor{
      "TShowActionPropertiesEditor", []() -> std::unique_ptr<qx::TQXPropertyEditor> {
        return std::make_unique<qx::TShowActionPropertiesEditor>();
      }};
  qx::QXActionServices().RegisterPropertyEditor(qx::tiny::TinyActionClass(), "Text", editor);
  const qx::TFrameClass* const pages[] = {&qx::tiny::TinyFrameClass()};
  qx::QXActionServices().RegisterPropertyPages(qx::tiny::TinyActionClass(), pages);
  qx::QXOptionsServices().RegisterOptionsPage(qx::tiny::TinyOptionsClass(),
                                              qx::tiny::TinyOptionsFrameClass());
}
#endif
