#include "host/report/ServiceMessages.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

const ServiceSystem& System(std::string_view name) { return *FindServiceSystem(name); }

std::string Line(std::string_view system, std::string_view text) {
  std::string out;
  System(system).line(out, text);
  return out;
}

std::string Told(std::string_view system, const Diagnostic& diagnostic, const std::string& root = {}) {
  std::string out;
  System(system).diagnostic(out, "LINE", diagnostic, root);
  return out;
}

Diagnostic Made(Severity severity, std::string_view file, std::string_view message) {
  Diagnostic diagnostic;
  diagnostic.severity = severity;
  diagnostic.code = "C1";
  diagnostic.file = file;
  diagnostic.line = 12;
  diagnostic.column = 5;
  diagnostic.message = message;
  return diagnostic;
}

TEST(ServiceMessages, AreOfTheSystemsThatAreKnown) {
  EXPECT_EQ(FindServiceSystem("jenkins"), nullptr);
  EXPECT_EQ(System("github").name, "github");
}

TEST(ServiceMessages, LeaveAPlainLineAsItIs) {
  for (const std::string_view system : {"teamcity", "github", "azure"}) {
    for (const std::string_view text : {"", "Compiling...", "std::string x[3]; // # one", "  a :: b [c]",
                                        "########", "# a[1] #b", "\xC3\xA4"}) {
      if (system != "teamcity" && text == "# a[1] #b") continue;
      EXPECT_EQ(Line(system, text), std::string(text) + "\n") << system;
    }
    EXPECT_EQ(Line(system, "a\rb\r\nc"), "a\nb\nc\n") << system;
    EXPECT_EQ(Line(system, "\xFF"), "\xEF\xBF\xBD\n") << system;
  }
}

// Somebody may read the log in a terminal, and a service's own page is no place for them either.
TEST(ServiceMessages, ShowControlCharactersAsEscapes) {
  const std::string hostile =
      "a\x1B]0;title\x07\xE2\x80\xAE"
      "b";
  const std::string shown = "a\\u001B]0;title\\u0007\\u202Eb";
  for (const std::string_view system : {"teamcity", "github", "azure"}) {
    EXPECT_EQ(Line(system, hostile), shown + "\n") << system;
    std::string told = Told(system, Made(Severity::Error, hostile, hostile));
    System(system).problem(told, hostile);
    System(system).open(told, hostile);
    System(system).version(told, hostile, hostile, true);
    EXPECT_EQ(told.find('\x1B'), std::string::npos) << told;
    EXPECT_EQ(told.find("|0x001b"), std::string::npos) << told;
    EXPECT_EQ(told.find("|0x202e"), std::string::npos) << told;
    EXPECT_NE(told.find("\\u001B"), std::string::npos) << told;
  }
}

TEST(ServiceMessages, MakeHostileLinesText) {
  EXPECT_EQ(Line("teamcity", "x ##teamcity[buildNumber '9']"),
            "##teamcity[message text='x ##teamcity|[buildNumber |'9|'|]']\n");
  EXPECT_EQ(Line("teamcity", "##TeamCity[x]"), "##teamcity[message text='##TeamCity|[x|]']\n");
  EXPECT_EQ(Line("teamcity", "a\n##teamcity[x]"), "##teamcity[message text='a|n##teamcity|[x|]']\n");
  for (const std::string_view system : {"github", "azure"}) {
    EXPECT_EQ(Line(system, "::error::x"), ": :error::x\n");
    EXPECT_EQ(Line(system, " \t::stop-commands::x"), " \t: :stop-commands::x\n");
    EXPECT_EQ(Line(system, "\xC2\xA0:\xE2\x80\x8B:error::x"), "\xC2\xA0: \xE2\x80\x8B:error::x\n");
    EXPECT_EQ(Line(system, "a\r::error::x"), "a\n: :error::x\n");
    EXPECT_EQ(Line(system, "x ##vso[task.complete result=Succeeded;]"),
              "x # #vso[task.complete result=Succeeded;]\n");
    EXPECT_EQ(Line(system, "##[error]x"), "# #[error]x\n");
    EXPECT_EQ(Line(system, "###[error]x"), "# # #[error]x\n");
    EXPECT_EQ(Line(system, "#\xE2\x80\x8B#[error]"), "# \xE2\x80\x8B#[error]\n");
  }
}

TEST(ServiceMessages, TellTeamCity) {
  EXPECT_EQ(Told("teamcity", Made(Severity::Error, "a.cpp", "x")),
            "##teamcity[message text='LINE' status='ERROR']\n");
  EXPECT_EQ(Told("teamcity", Made(Severity::Warning, "a.cpp", "x")),
            "##teamcity[message text='LINE' status='WARNING']\n");
  std::string out;
  System("teamcity").open(out, "it's |\r\n\x1b\xC3\xA4\xF0\x9F\x98\x80\xE2\x80\xA8");
  EXPECT_EQ(out, "##teamcity[blockOpened name='it|'s |||r|n\\u001B|0x00e4|0xd83d|0xde00\\u2028']\n");
  out.clear();
  System("teamcity").version(out, "FileVersion", "1.2.3.4", true);
  System("teamcity").version(out, "AssemblyVersion", "9", false);
  System("teamcity").progress(out, 50, "2 of 4: x");
  System("teamcity").openProject(out, "App");
  System("teamcity").closeProject(out, "App");
  EXPECT_EQ(
      out,
      "##teamcity[buildNumber '1.2.3.4']\n##teamcity[progressMessage '2 of 4: x']\n"
      "##teamcity[compilationStarted compiler='App']\n##teamcity[compilationFinished compiler='App']\n");
  out.clear();
  System("teamcity").problem(out, std::string(3999, 'x') + "\xC3\xA4");
  EXPECT_EQ(out, "##teamcity[buildProblem description='" + std::string(3999, 'x') + "']\n");
}

TEST(ServiceMessages, TellGitHub) {
  EXPECT_EQ(Told("github", Made(Severity::Error, "/r/src\\a,b:c.cpp", "50%\n::x"), "/r/"),
            "LINE\n::error file=src/a%2Cb%3Ac.cpp,line=12,col=5,title=C1::50%25%0A::x\n");
  EXPECT_EQ(Told("github", Made(Severity::Warning, "", "x")), "LINE\n::warning title=C1::x\n");
  EXPECT_EQ(Told("github", {}), "LINE\n::error::\n");
  std::string out;
  System("github").open(out, "a\nb");
  System("github").close(out, "a");
  System("github").version(out, "FileVersion", "1.2", false);
  System("github").problem(out, "a\nb");
  EXPECT_EQ(out, "::group::a%0Ab\n::endgroup::\n::notice title=FileVersion::1.2\n::error::a%0Ab\n");
}

TEST(ServiceMessages, TellAzure) {
  EXPECT_EQ(
      Told("azure", Made(Severity::Error, "C:\\a;b].cpp", "50%\r\n]x")),
      "LINE\n##vso[task.logissue type=error;sourcepath=C:\\a%3Bb%5D.cpp;linenumber=12;columnnumber=5;code=C1;"
      "]50%AZP25%0D%0A]x\n");
  std::string out;
  System("azure").open(out, "a\n##vso[x]");
  System("azure").close(out, "a");
  System("azure").progress(out, 50, "x");
  System("azure").version(out, "FileVersion", "1.2", true);
  System("azure").version(out, "AssemblyVersion", "1.3", false);
  System("azure").problem(out, "x");
  EXPECT_EQ(out,
            "##[group]a # #vso[x]\n##[endgroup]\n##vso[task.setprogress value=50;]x\n"
            "##vso[build.updatebuildnumber]1.2\n##vso[task.logissue type=error;]x\n");
}

// The guards look at each byte a bounded number of times.
TEST(ServiceMessages, TakeLongLines) {
  for (const std::string_view system : {"teamcity", "github", "azure"}) {
    for (const char c : {'#', ':', '[', ' ', '\x01', '%'}) {
      EXPECT_GE(Line(system, "[" + std::string(std::size_t{1} << 20, c)).size(), std::size_t{1} << 20);
    }
  }
}

}  // namespace
}  // namespace qx
