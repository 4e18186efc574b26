// Carries a request out: a solution project by project in the order of their needs, or one project by itself.
// What fails keeps back only what needs it. Prints all of it.
#pragma once

#include <functional>

#include "engine/Console.h"
#include "engine/Project.h"
#include "engine/front/BuildReport.h"
#include "engine/front/BuildRequest.h"
#include "engine/front/SolutionPlan.h"

namespace qx {

// Who builds the projects, and who reads what their files refer to.
struct Builders {
  std::function<BuiltProject(const ProjectTask&, Console&)> visualCpp, dotNet;
  ReadReferences references;
};
// Those of the engine.
Builders RealBuilders();

// Whether all of it succeeded (or was skipped as asked). Raises Exception when it could not even begin: no
// such file, no solution, no such configuration or project.
bool CarryOut(const BuildRequest& request, const FrontSettings& settings, const Builders& builders,
              Console& console);

}  // namespace qx
