// The two ways in which a C# or Visual Basic project is built; NetBuild.cpp chooses.
#pragma once

#include "engine/Project.h"
#include "projects/net/NetProject.h"

namespace qx {

// Projects of 2002 and 2003, with mono's compilers. Raises Exception where a file cannot be written.
BuiltProject BuildWithMono(const NetProject& project, const ProjectTask& task, Console& console);

// Projects of 2005, with the MSBuild engine on the PATH.
BuiltProject BuildWithMsBuild(const NetProject& project, const ProjectTask& task, Console& console);

// `limit`: as in BuiltProject.
inline BuiltProject Failed(std::string reason, std::string limit = {}) {
  BuiltProject built;
  built.limit = std::move(limit);
  built.status = BuiltProject::Status::Failed;
  built.reason = std::move(reason);
  return built;
}

inline constexpr const char* kNoBasicCompiler =
    "Visual Basic cannot be compiled here: there is no compiler for it (vbnc) on the PATH";

}  // namespace qx
