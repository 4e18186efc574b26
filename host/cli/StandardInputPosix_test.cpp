// What is read from standard input, through the shell.
#include "host/cli/testdata/CliFixture.h"

namespace qx::cli {
namespace {

using StandardInput = CliTest;

TEST_F(StandardInput, DriveAnswersLineByLineUntilItEnds) {
  Project("p.xml", {{"Text=one"}});
  const std::string host =
      "'" + ProgramFile("qxhost") + "' --package '" + PackageFile("tiny") + "' --options o.xml drive p.xml";
  const auto result = test::RunProgram(
      "/bin/sh", {"-c", "printf 'pages\\r\\n\\ntext Tiny Page.txtText two\\nwrite' | " + host},
      folder_.string());
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out, "[\"Tiny Page\"]\n{\"ok\":true}\n{\"ok\":true}\n");
  EXPECT_TRUE(Holds(Content("p.xml"), ">two<"));
}

}  // namespace
}  // namespace qx::cli
