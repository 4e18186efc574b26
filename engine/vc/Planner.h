// The parts of a plan while it is made; for the sources of Plan.h alone.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "engine/vc/Plan.h"
#include "platform/files/Paths.h"

namespace qx {

// What a file of the project is made into.
enum class VcWork { None, Compile, Resource, Custom, Link, Unknown };

struct VcSource {
  const VcFile* file = nullptr;
  VcWork work = VcWork::None;
  std::string path;  // on disk
  std::string tool;  // of Unknown: the tool it would need
};

struct Planner {
  Planner(const VcSettings& theSettings, const ProjectTask& theTask, const Toolchain& theTools)
      : settings(theSettings), task(theTask), tools(theTools) {}

  const VcSettings& settings;
  const ProjectTask& task;
  const Toolchain& tools;
  VcPlan plan;
  NinjaFile ninja;
  PathFinder finder;
  std::vector<VcSource> sources;
  std::string overlay;  // the folder of forwarding headers to search; empty: none
  // Of sources to which a name means another file, by their path.
  std::map<std::string, std::string> ownOverlays;
  std::string literals;                // a header for "10i64", included before C++; empty: none needs it
  std::vector<std::string> objects;    // relative to the plan's folder, or absolute
  std::vector<std::string> generated;  // outputs of custom build steps
  std::vector<std::string> pragmaLibraries;
  bool wideEntry = false;  // the program begins at wmain or wWinMain

  // A name for a file in the plan's folder that no other has: "a.obj", "a_2.obj".
  std::string UniqueName(const std::string& stem, const std::string& extension);
  // Writes a file into the plan's folder where it is not there with these bytes already; its name.
  std::string Write(const std::string& name, std::string_view bytes);

 private:
  std::map<std::string, int> names_;
};

void FindSources(Planner& planner);  // VcSource of each file; errors for those that are missing
void PlanCustomSteps(Planner& planner);
void PlanCompiling(Planner& planner);
void PlanResources(Planner& planner);
void PlanLinking(Planner& planner);

}  // namespace qx
