// What the front asks of whoever builds one project, and what it is told of the outcome. The front calls one
// function a project, in the order of their dependencies; each prints through the console as it goes.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "engine/Console.h"

namespace qx {

class Turns;

enum class Goal { Build, Rebuild, Clean };

// What became of one project; handed to those that depend on it.
struct BuiltProject {
  enum class Status { Succeeded, UpToDate, Failed, Skipped };
  std::string name, guid, file;         // as the solution has them; file: the path on disk
  std::string configuration, platform;  // in which it was built, as in its task
  Status status = Status::Failed;
  std::string reason;  // of Failed or Skipped, one line
  // Of Failed: the key of what is not to be had here ("vb", "mfc", "atl", "managed" ...), under which the
  // user may ask for such projects to be skipped; empty: an ordinary failure.
  std::string limit;
  std::string output;                  // the program or library, absolute; empty: none
  std::string importLibrary;           // a DLL's; empty: none
  std::vector<std::string> libraries;  // a static library's: what those who link it must link besides
  int errors = 0, warnings = 0;        // filled in by the front from what the console counted
};

// What projects that are built at the same time have to know of one another. The front gives one to each project;
// without it a project is built by itself. A project waits only for those before it in the order of building.
class Neighbours {
 public:
  virtual ~Neighbours() = default;

  // What a project is about to make (absolute paths). One that runs commands of its own may rest on anything that
  // those before it make, and those behind it on anything that it makes: nothing else is built meanwhile.
  struct Intent {
    bool runsCommands = false;
    std::vector<std::string> makes;
  };
  // To be called once, before anything is written or run. Returns when those before it allow it: none of them
  // makes the same file, and where commands run, all have ended.
  virtual void Announce(const Intent& intent) = 0;
  // Returns when no project before this one is still to make a file of which that is so. For files that a project
  // uses without saying in its solution whose they are.
  virtual void Await(const std::function<bool(const std::string& made)>& isMeant) = 0;
};

// One project, in the configuration in which it is to be built.
struct ProjectTask {
  std::string name, guid, file, typeGuid;
  std::string configuration;  // the project's own: "Release"
  std::string platform;       // "Win32", "Any CPU"; empty in C# projects of 2002 and 2003
  std::string solutionFile;   // empty: built by itself
  Goal goal = Goal::Build;
  // All that it depends on, directly or not, already built, in the order they were built.
  std::vector<const BuiltProject*> needs;
  std::map<std::string, std::string> properties;  // MSBuild's /p: (OutputPath ...), names as they were given
  std::string launcher;          // stands before every C and C++ compile: "ccache"; empty: none
  int jobs = 0;                  // compilers at a time; 0: as many as there are processors
  const Turns* turns = nullptr;  // for the compilers of all projects that are built at the same time
  Neighbours* neighbours = nullptr;
};

// Both print errors and warnings as they come and leave name, guid and file to the front. A project that
// cannot be built here is Failed with the reason, or Skipped where its configuration makes nothing; neither
// raises for what a file says.
BuiltProject BuildVisualCpp(const ProjectTask& task, Console& console);  // engine/vc
BuiltProject BuildDotNet(const ProjectTask& task, Console& console);     // engine/dotnet

}  // namespace qx
