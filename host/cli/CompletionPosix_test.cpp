// What bash offers while somebody types, with the functions that the program prints and the program behind them.
#include "host/cli/testdata/CliFixture.h"

namespace qx::cli {
namespace {

class BashCompletionOf : public CliTest {
 protected:
  // What is offered for the last of these words, as readline parts them; a line each.
  std::string Offered(const std::string& words) const {
    Write("complete.bash",
          test::RunProgram(ProgramFile("qxhost"), {"--print-completion", "bash"}, folder_.string()).out);
    Write("ask.bash",
          "qxhost() { " + ProgramFile("qxhost") + " --package " + PackageFile("tiny") +
              " --options options.xml \"$@\"; }\nsource complete.bash\nCOMP_WORDS=(" + words +
              ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_qxhost\nprintf '%s\\n' \"${COMPREPLY[@]}\"\n");
    return test::RunProgram("/bin/bash", {"ask.bash"}, folder_.string()).out;
  }
};

TEST_F(BashCompletionOf, PropertiesAndTheirValues) {
  Project("p.xml", {{}});
  EXPECT_EQ(Offered("qxhost set p.xml De"), "Deed=\n");
  EXPECT_EQ(Offered("qxhost set p.xml Deed = tdTh"), "tdThrow\ntdThrowNumber\n");
  EXPECT_EQ(Offered("qxhost set p.xml Loud ="), "True\nFalse\n");
  EXPECT_EQ(Offered("qxhost set p.xml --action 1 Text = a Co"), "Count=\n");
  EXPECT_EQ(Offered("qxhost set p.xml --action 2 Co"), "\n") << "there is no such action";
  EXPECT_EQ(Offered("qxhost add p.xml 'Tiny\\ Task' Se"), "Seconds=\n");
}

TEST_F(BashCompletionOf, OptionsOfThePackageAndTheHost) {
  EXPECT_EQ(Offered("qxhost options Gr"), "Greeting=\n");
  EXPECT_EQ(Offered("qxhost options Hist"), "History=\n");
}

// A word is looked at, never obeyed.
TEST_F(BashCompletionOf, RunsNothingThatIsTyped) {
  Offered("qxhost set '$(touch obeyed)' De");
  EXPECT_FALSE(Exists("obeyed"));
}

}  // namespace
}  // namespace qx::cli
