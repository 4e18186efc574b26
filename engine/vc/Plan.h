// One configuration of a Visual C++ project as commands: which sources, with which tools, into which objects
// and which program, as the text of a build.ninja.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "engine/Project.h"
#include "engine/vc/IncludeScan.h"
#include "engine/vc/NinjaFile.h"
#include "engine/vc/Toolchain.h"
#include "projects/vc/VcSettings.h"

namespace qx {

// Where a project is built, all absolute and, as far as folders are there already, in the letter case they have.
struct VcPlaces {
  std::string folder;                 // the project's own, in the intermediate one; with its delimiter
  std::string output, importLibrary;  // empty: none
  std::string map;                    // the linker's map file; empty: none

  // What is written besides the folder.
  std::vector<std::string> Files() const;
};
VcPlaces PlacesOf(const VcSettings& settings);

struct VcPlan {
  VcPlaces places;
  std::string ninja;                    // the text of its build.ninja
  std::string exports;                  // of a DLL with a .def file: that file as ld reads it
  std::vector<std::string> objects;     // relative to the folder
  std::vector<std::string> libraries;   // a static library's: what those who link it must link besides
  std::vector<std::string> inputs;      // files it rests on, besides those that dependency files name
  std::vector<std::string> made;        // files it makes, besides the output
  std::vector<std::string> depfiles;    // dependency files of the objects
  std::vector<std::string> notes;       // what was left out or done in another way, for the log
  std::vector<std::string> errors;      // why it cannot be built at all
  std::vector<std::string> linkErrors;  // why it cannot be linked: "fatal error LNK1104: ..."
};

// The names of Ninja's targets: all objects, and everything.
inline constexpr const char* kObjectsTarget = "objects";
inline constexpr const char* kAllTarget = "all";

// Looks at the sources, and writes into the project's own folder what the commands read besides them:
// forwarding headers, resource scripts, module definitions, batch files. Raises Exception where a file cannot
// be written.
VcPlan PlanVisualCpp(const VcSettings& settings, const VcPlaces& places, const ProjectTask& task,
                     const Toolchain& tools);

}  // namespace qx
