#include "host/diagnostics/ProjectMark.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace qx {
namespace {

// "KIND project number projectNumber"; "none" where the line is no mark.
std::string Read(std::string_view line) {
  constexpr std::array<const char*, 5> kNames{"begins", "enters", "leaves", "closes", "repeats"};
  const auto mark = ReadProjectMark(line);
  if (!mark) return "none";
  return std::string(kNames.at(static_cast<std::size_t>(mark->kind))) + " " + std::string(mark->project) +
         " " + std::to_string(mark->number) + " " + std::to_string(mark->projectNumber);
}

TEST(ProjectMark, ReadsVisualStudiosHeadings) {
  EXPECT_EQ(Read("------ Build started: Project: App, Configuration: Debug Win32 ------"), "begins App 0 0");
  EXPECT_EQ(Read("------ Rebuild All started: Project: A, B, Configuration: Debug .NET ------"),
            "begins A, B 0 0");
  EXPECT_EQ(Read("12>------ Build started: Project: App, Configuration: Debug Win32 ------"),
            "begins App 12 0");
  EXPECT_EQ(Read("------ Erstellen gestartet: Projekt: App, Konfiguration: Debug Win32 ------\r"),
            "begins App 0 0");
  EXPECT_EQ(Read("------ Skipped Build: Project: Setup, Configuration: Debug ------"), "begins Setup 0 0");
}

TEST(ProjectMark, ReadsVisualStudiosEnd) {
  EXPECT_EQ(Read("---------------------- Done ----------------------"), "closes  0 0");
  EXPECT_EQ(Read("========== Build: 2 succeeded, 0 failed, 1 skipped =========="), "closes  0 0");
}

TEST(ProjectMark, ReadsMSBuildsMarks) {
  EXPECT_EQ(Read("Project \"C:\\s\\A.sln\" (default targets):"), "enters  0 0");
  EXPECT_EQ(Read("Project \"C:\\s\\A.sln\" is building \"C:\\s\\Lib.csproj\" (default targets):"),
            "enters Lib 0 0");
  EXPECT_EQ(Read("\t\tProject \"/s/Lib.csproj\" (default target(s)):"), "enters Lib 0 0");
  EXPECT_EQ(
      Read("     1>Project \"A.sln\" (1) is building \"Lib.csproj\" (2:3) on node 1 (default targets)."),
      "enters Lib 1 2");
  EXPECT_EQ(Read("Project \"Lib.csproj\" on node 1 (Build target(s))."), "enters Lib 0 0");
  EXPECT_EQ(Read("Done building project \"C:\\s\\Lib.csproj\".-- FAILED"), "leaves Lib 0 0");
  EXPECT_EQ(Read("2>Done Building Project \"Lib.csproj\" (default targets)."), "leaves Lib 2 0");
  EXPECT_EQ(Read("Build FAILED."), "repeats  0 0");
  EXPECT_EQ(Read("Build succeeded."), "repeats  0 0");
}

TEST(ProjectMark, PassesOverWhatIsNone) {
  for (const std::string_view line :
       {"", "------", "------ ", "------ x ------", "------ a: b: c ------", "------ a, b: c: d ------",
        "Project", "Project \"", "Project \"x", "Project \"x\"", "Project \"a\" is building \"b",
        "Done building project x", "Done building project \"x", "Build FAILED", "Build: 1 succeeded",
        "==========", "Debug Win32", "1>"}) {
    EXPECT_EQ(Read(line), "none") << line;
  }
}

}  // namespace
}  // namespace qx
