// What is to be done for one configuration of a project that is compiled here: which files go in, which come
// out. Looks at files, changes none.
#pragma once

#include <string>
#include <vector>

#include "engine/Project.h"
#include "engine/dotnet/Assemblies.h"
#include "projects/net/NetProject.h"

namespace qx {

struct PlannedReference {
  std::string file;        // the assembly, absolute
  bool copyLocal = false;  // it goes beside the output
};

struct PlannedResource {
  std::string source;    // the file as it is in the tree
  std::string embedded;  // what the compiler takes: the same, or a .resources file in the intermediate folder
  std::string name;      // in the assembly
  std::string culture;   // empty: in the program itself
  bool IsCompiled() const { return embedded != source; }
};

struct PlanProblem {
  bool isError;
  std::string file;  // what it is about
  std::string code;  // "CS2001"
  std::string text;
};

struct CompilePlan {
  std::string name;              // of the assembly
  std::string fileName;          // with its extension
  std::string folder;            // the project's, with a delimiter behind, as all folders here
  std::string intermediate;      // "obj/Release/"
  std::string intermediateFile;  // the program in it
  std::string output;            // where it goes
  std::vector<std::string> sources;
  std::vector<PlannedResource> resources;
  std::vector<PlannedReference> references;
  std::string keyFile, icon, documentationFile, applicationConfig;  // absolute, or empty
  std::string codePage;                                             // of the sources; empty: UTF-8
  std::vector<PlanProblem> problems;
  std::vector<std::string> notes;  // what was left out, for the log

  bool CanBeCompiled() const;
  std::string OutputFolder() const;
  // Of one culture; without one: of the program itself.
  std::vector<const PlannedResource*> ResourcesOf(const std::string& culture) const;
  std::vector<std::string> Cultures() const;  // sorted, each once, without the empty one
  // "CULTURE/NAME.resources.dll", below the intermediate or output folder.
  std::string SatelliteName(const std::string& culture) const;
};

CompilePlan MakeCompilePlan(const NetProject& project, const ProjectTask& task,
                            const AssemblyFolders& folders);

// The code page of a project's sources, for the compiler; empty: they are UTF-8, or marked.
std::string CodePageOfSources(const NetProject& project);

// Where an assembly that a project refers to lies; empty: nowhere. `isLocal` tells whether it belongs beside
// the output unless the project says otherwise.
std::string ResolveReference(const NetProject& project, const NetReference& reference,
                             const ProjectTask& task, const AssemblyFolders& folders, bool& isLocal);

}  // namespace qx
