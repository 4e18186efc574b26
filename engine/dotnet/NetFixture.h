// Projects for tests that are built with the real tools, in a folder of the test's own.
#pragma once

#include <string>
#include <vector>

#include "engine/ChildCommand.h"
#include "engine/Project.h"
#include "host/testing/TestFolder.h"

namespace qx {

struct NetRun {
  BuiltProject built;
  std::string printed;
  Console::Counts counts;
};

class NetFixture : public testing::Test {
 protected:
  // Copies a folder of testdata into the test's own.
  void Take(const std::string& name);
  // Changes a text that stands in a file, wherever it stands.
  void Change(const std::string& file, const std::string& from, const std::string& to);
  // Makes a file's time a little later than that of everything written so far.
  void Touch(const std::string& file);

  ProjectTask Task(const std::string& file, const std::string& configuration,
                   const std::string& platform = "") const;
  NetRun Build(const std::string& file, const std::string& configuration, const std::string& platform = "",
               const std::vector<const BuiltProject*>& needs = {});
  NetRun Build(const ProjectTask& task);
  // What a program prints under mono, its exit code behind it when it is not 0.
  std::string Run(const std::string& program);
  // A tool's output.
  std::string Output(const std::vector<std::string>& arguments);
  static bool Has(const char* program) { return !FindProgram(program).empty(); }

  TestFolder folder_;
  // As a solution gives them: set for those that are needed by others.
  std::string guid_;
};

// Prints why and leaves the test.
#define QX_NEEDS(program) \
  if (!Has(program)) GTEST_SKIP() << program << " is not on the PATH: scripts/setup installs it"

}  // namespace qx
