#include "GreetAction.h"

#include <array>
#include <memory>

#include "plugin/Qxpackage.h"
#include "plugin/Qxservices.h"

void TGreetAction::Create() {
  TQXAction::Create();
  whom_ = "world";
  times_ = 1;
}

bool TGreetAction::Validate(qx::IQXActionValidationError& errors) {
  if (!whom_.empty()) return true;
  errors.AddError("Whom", "Nobody is named to be greeted");
  return false;
}

bool TGreetAction::Execute() {
  const std::string whom = ExpandExpression(whom_, true);
  for (int time = 0; time < times_; ++time) SendMessage("Hello, " + whom);
  return true;
}

const qx::TQXActionClass& GreetActionClass() {
  using A = TGreetAction;
  static constexpr std::array properties{
      qx::Property<&A::GetWhom, &A::SetWhom>("Whom"),
      qx::Property<&A::GetTimes, &A::SetTimes>("Times"),
  };
  static constexpr qx::TQXActionClass greet{
      "TGreetAction", [] { return std::string("Greet"); }, properties,
      []() -> std::unique_ptr<qx::TQXAction> { return std::make_unique<A>(); }};
  return greet;
}

// The four entries by which the host starts the package, asks what it is made of, has it register, and stops it.
namespace {
qx::TQXUnit units[] = {{"GreetAction", 0}};
}
QX_PACKAGE_ENTRY void QXPackageLoad() { ++units[0].startCount; }
QX_PACKAGE_ENTRY void QXPackageUnload() { --units[0].startCount; }
QX_PACKAGE_ENTRY qx::TQXUnitTable QXPackageUnits() { return {units, 1}; }
QX_PACKAGE_ENTRY void QXRegister(bool) {
  qx::QXActionServices().RegisterAction(GreetActionClass(), "Greet", "Examples", "GREET");
}
