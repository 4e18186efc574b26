// Where the programs of a solution lie when it is built in one of its configurations. What cannot be worked
// out from the files is unknown, with the reason, and never guessed. Reads project files and property sheets;
// starts nothing, prints nothing, and is the same on Windows and outside.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "projects/ProjectKind.h"
#include "projects/SolutionMap.h"

namespace qx {

struct OutputPlace {
  enum class Answer {
    Program,  // a program or library, which may bear versions
    File,     // a file without versions: a static library, what a makefile makes
    Nothing,  // the project is not built in this configuration, or makes no file
    Unknown,
  };
  std::string name, path, guid;  // of the project, as the solution has them
  ProjectKind kind = ProjectKind::Other;
  std::string file;  // the project's file on disk; empty: it is not there
  Answer answer = Answer::Unknown;
  std::string output;  // of Program and File: the absolute path
  std::string reason;  // of Nothing and Unknown, one line
};

// The build that is asked about.
struct BuildOfSolution {
  std::string solutionFile;                       // absolute
  std::string configuration;                      // one of the map's
  std::map<std::string, std::string> properties;  // that the engine is given (MSBuild's /p:)
};

// One for each project of the solution, in its order; solution folders are left out.
std::vector<OutputPlace> FindOutputPlaces(const SolutionMap& map, const BuildOfSolution& build);

}  // namespace qx
