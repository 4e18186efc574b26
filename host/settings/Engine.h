// The build engine that the host brings along where the old products cannot be installed: a folder with
// programs of their names. EnginePosix.cpp finds it; on Windows there is none, for there the products are.
#pragma once

#include <string>

namespace qx {

// How the engine was set up; it is handed on to the processes that actions start by environment variables
// (QX_ENGINE_LAUNCHER, QX_ENGINE_JOBS, QX_ENGINE_SKIP).
struct EngineSettings {
  std::string launcher;  // stands before every C and C++ compile: "ccache", "distcc"; empty: none
  std::string jobs;      // compilers at a time; empty: as many as there are processors
  std::string skip;      // "vb,setup": projects that cannot be built are skipped instead of failed
};

// With a delimiter behind it; empty when the engine is not installed, or nothing on the PATH could build.
std::string InstalledEngineFolder();

// A .reg export that says that the products are installed in that folder; empty for an empty folder.
std::string EngineRegistry(const std::string& folder);

// From now on children of this process get these. What is empty is as the environment has it.
void ApplyEngineSettings(const EngineSettings& settings);

}  // namespace qx
