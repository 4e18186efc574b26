// What the compilers are asked, as the lines of a response file: no shell sees a project's text.
#pragma once

#include <string>
#include <vector>

#include "engine/dotnet/CompilePlan.h"

namespace qx {

// mono's C# compiler. `output` is the file to write.
std::vector<std::string> McsArguments(const NetProject& project, const CompilePlan& plan,
                                      const std::string& output);
// mono's Visual Basic compiler.
std::vector<std::string> VbncArguments(const NetProject& project, const CompilePlan& plan,
                                       const std::string& output);
// The program that makes a satellite assembly of one culture; `program` is the one it belongs to.
std::vector<std::string> AlArguments(const CompilePlan& plan, const std::string& culture,
                                     const std::string& program, const std::string& output);

// The arguments as a response file: one a line, in quotes.
std::string ResponseFileText(const std::vector<std::string>& arguments);

}  // namespace qx
