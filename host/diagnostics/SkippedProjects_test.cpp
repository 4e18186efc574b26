#include "host/diagnostics/SkippedProjects.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

RunProject Missing(const std::string& name, const std::string& path) {
  RunProject project;
  project.name = name;
  project.path = path;
  project.status = "missing";
  project.isFault = true;
  return project;
}

Diagnostic Skip(int action, std::string_view file, std::string_view project) {
  Diagnostic told;
  told.action = action;
  told.code = kEngineSkipCode;
  told.file = file;
  told.project = project;
  told.message = "it needs MFC";
  return told;
}

TEST(SkippedProjects, AreNoFaultsOfTheActionThatSkippedThem) {
  RunReport report;
  report.projects = {Missing("Banner", "..\\Banner\\Banner.vcproj"), Missing("Frame", "Frame\\Frame.vcproj")};
  TakeSkipped(report, 2, std::vector{Skip(1, "/s/Banner/Banner.vcproj", "Banner")});
  EXPECT_TRUE(report.projects[0].isFault) << "another action's";
  TakeSkipped(report, 1, std::vector{Skip(1, "/s/Banner/Banner.vcproj", "Banner")});
  EXPECT_EQ(report.projects[0].status, "skipped");
  EXPECT_EQ(report.projects[0].reason, "it needs MFC");
  EXPECT_FALSE(report.projects[0].isFault);
  EXPECT_TRUE(report.projects[1].isFault);
}

TEST(SkippedProjects, AreToldByFileAndCode) {
  RunReport report;
  report.projects = {Missing("Banner", "Banner\\Banner.vcproj")};
  Diagnostic other = Skip(1, "/s/Banner/Banner.vcproj", "Banner");
  other.code = "QXE0001";
  TakeSkipped(report, 1, std::vector{other, Skip(1, "/s/Old/Banner.vcproj", "Banner")});
  EXPECT_EQ(report.projects[0].status, "missing");
}

}  // namespace
}  // namespace qx
