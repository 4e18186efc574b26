// What the compilers are told, through qxhost and the package: the exact parameter string in the log, the
// arguments as the program gets them, its starting folder, the log's lines and the exit code.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "platform/files/Files.h"
#include "tests/support/RunProgram.h"

namespace qx {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

constexpr const char* kLibId = "{11111111-0000-0000-0000-000000000001}";
constexpr const char* kAppId = "{11111111-0000-0000-0000-000000000002}";
constexpr const char* kToolId = "{11111111-0000-0000-0000-000000000003}";
constexpr const char* kGoneId = "{99999999-0000-0000-0000-000000000009}";

// One run of the compiler: what the log shows of it and what the program was given.
struct Call {
  std::string parameters;  // with "SLN" for the solution's path
  Words arguments;
};

class CompilerRuns : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    const fs::path temporary = fs::canonical(fs::temp_directory_path());
    folder_ = temporary / ("qx runs " + std::string(test.name()));
    fs::remove_all(folder_);
    std::string solution = "\r\nMicrosoft Visual Studio Solution File, Format Version 9.00\r\n";
    for (const auto& [name, id] : {std::pair{"Lib", kLibId}, {"App", kAppId}, {"Tool", kToolId}}) {
      const std::string stem(name);
      fs::create_directories(folder_ / "src" / stem);
      ReplaceFile(PathOf("src/" + stem + "/" + stem + ".csproj"), "<Project/>\r\n");
      solution += "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"" + stem + "\", \"" + stem + "\\" +
                  stem + ".csproj\", \"" + id + "\"\r\nEndProject\r\n";
    }
    ReplaceFile(PathOf("src/App.sln"), solution + "Global\r\nEndGlobal\r\n");
    fs::create_directories(folder_ / "vs");
    for (const char* name : {"devenv.com", "MSBuild.exe"}) fs::copy_file(QX_RECORDER, folder_ / "vs" / name);
    ASSERT_EQ(Host({"options", "DevEnvLocation=" + PathOf("vs"), "DevEnv2003Location=" + PathOf("vs"),
                    "DevEnv2005Location=" + PathOf("vs"), "Framework.v2.0=" + PathOf("vs")})
                  .code,
              0);
  }
  void TearDown() override {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  std::string PathOf(const std::string& name) const { return (folder_ / name).make_preferred().string(); }
  test::ProgramResult Host(Words words) const {
    words.insert(words.begin(), {"--package", QX_PACKAGE, "--options", PathOf("options.xml")});
    return test::RunProgram(QX_HOST, words, folder_.string());
  }
  test::ProgramResult Run(Words settings) const {
    RemoveFile(PathOf("build.xml"));
    RemoveFile(PathOf("vs/record"));
    EXPECT_EQ(Host({"new", PathOf("build.xml")}).code, 0);
    settings.insert(settings.begin(), {"add", PathOf("build.xml"), "Build VS.Net Solution",
                                       "Solution=" + PathOf("src/App.sln")});
    const test::ProgramResult added = Host(settings);
    EXPECT_EQ(added.code, 0) << added.err;
    return Host({"run", PathOf("build.xml")});
  }
  std::string WithSolution(std::string text) const {
    const std::size_t at = text.find("SLN");
    return at == std::string::npos ? text : text.replace(at, 3, PathOf("src/App.sln"));
  }
  std::string Compiler(const Words& settings) const {
    const bool msbuild = std::find(settings.begin(), settings.end(), "UseMSBuild=True") != settings.end();
    return PathOf(msbuild ? "vs/MSBuild.exe" : "vs/devenv.com");
  }
  std::string Log(const std::string& compiler, const std::string& parameters) const {
    return "Running " + compiler + " with parameters : " + WithSolution(parameters) + "\n------\n";
  }
  // What the stand-in wrote down for these calls.
  std::string Record(const std::vector<Call>& calls) const {
    std::string record;
    for (std::size_t i = 0; i < calls.size(); ++i) {
      record += "call " + std::to_string(i + 1) + "\nin " + PathOf("src") + "\n";
      for (const std::string& argument : calls[i].arguments) record += WithSolution(argument) + "\n";
    }
    return record;
  }

  fs::path folder_;
};

TEST_F(CompilerRuns, OfAWholeSolution) {
  struct Case {
    Words settings;
    Call call;
  };
  const std::string release = "SolutionConFiguration=Release";
  const Case cases[] = {
      {{"SolutionConFiguration=Debug", "VStudioVersion=vs2002"},
       {R"(/build "Debug" "SLN")", {"/build", "Debug", "SLN"}}},
      {{release, "VStudioVersion=vs2003", "BuildAction=baRebuild"},
       {R"(/rebuild "Release" "SLN")", {"/rebuild", "Release", "SLN"}}},
      {{release, "VStudioVersion=vs2005", "BuildAction=baClean"},
       {R"(/clean "Release" "SLN")", {"/clean", "Release", "SLN"}}},
      {{release, "VStudioVersion=vs2005", "BuildAction=baDeploy", "UseEnv=True"},
       {R"(/useenv /deploy "Release" "SLN")", {"/useenv", "/deploy", "Release", "SLN"}}},
      {{"SolutionConFiguration=Debug|Win32", "VStudioVersion=vs2005"},
       {R"(/build "Debug|Win32" "SLN")", {"/build", "Debug|Win32", "SLN"}}},
      {{"VStudioVersion=vs2005"}, {R"(/build "" "SLN")", {"/build", "", "SLN"}}},
      {{release, "VStudioVersion=vs2003", "UseMSBuild=False"},
       {R"(/build "Release" "SLN")", {"/build", "Release", "SLN"}}},
      {{release, "VStudioVersion=vs2005", "UseMSBuild=True"},
       {R"("SLN" /t:Build /p:Configuration="Release")", {"SLN", "/t:Build", "/p:Configuration=Release"}}},
      {{"SolutionConFiguration=Release|Win32", "VStudioVersion=vs2005", "UseMSBuild=True",
        "BuildAction=baClean"},
       {R"("SLN" /t:Clean /p:Configuration="Release";Platform="Win32")",
        {"SLN", "/t:Clean", "/p:Configuration=Release;Platform=Win32"}}},
      {{"SolutionConFiguration=Release|Any CPU", "VStudioVersion=vs2005", "UseMSBuild=True",
        "BuildAction=baRebuild", "UseEnv=True"},
       {R"("SLN" /t:Rebuild /p:useenv=1 /p:Configuration="Release";Platform="Any CPU";OutputPath="bin\Release")",
        {"SLN", "/t:Rebuild", "/p:useenv=1",
         R"(/p:Configuration=Release;Platform=Any CPU;OutputPath=bin\Release)"}}},
      {{"SolutionConFiguration=Release|ANY CPU", "VStudioVersion=vs2005", "UseMSBuild=True",
        "BuildAction=baDeploy"},
       {R"("SLN" /t:Deploy /p:Configuration="Release";Platform="ANY CPU";OutputPath="bin\Release")",
        {"SLN", "/t:Deploy", R"(/p:Configuration=Release;Platform=ANY CPU;OutputPath=bin\Release)"}}},
      {{"SolutionConFiguration=A|B|C", "VStudioVersion=vs2005", "UseMSBuild=True"},
       {R"("SLN" /t:Build /p:Configuration="A";Platform="B|C")",
        {"SLN", "/t:Build", "/p:Configuration=A;Platform=B|C"}}},
  };
  for (const Case& one : cases) {
    const test::ProgramResult result = Run(one.settings);
    EXPECT_EQ(result.code, 0) << result.out << result.err;
    EXPECT_TRUE(result.out.starts_with(Log(Compiler(one.settings), one.call.parameters))) << result.out;
    EXPECT_EQ(ReadFile(PathOf("vs/record")), Record({one.call}));
  }
}

TEST_F(CompilerRuns, OfSelectedProjects) {
  struct Case {
    Words settings;
    std::vector<Call> calls;
  };
  const std::string lib = R"("Lib\Lib.csproj")", app = R"("App\App.csproj")", tool = R"("Tool\Tool.csproj")";
  const std::string selected = std::string("SelectedProjects=") + kToolId + ";" + kLibId + ";" + kAppId;
  const Case cases[] = {
      {{"SolutionConFiguration=Debug|Win32", "VStudioVersion=vs2003"},
       {{R"(/build "Debug|Win32" /project )" + tool + R"( "SLN")",
         {"/build", "Debug|Win32", "/project", R"(Tool\Tool.csproj)", "SLN"}},
        {R"(/build "Debug|Win32" /project )" + lib + R"( "SLN")",
         {"/build", "Debug|Win32", "/project", R"(Lib\Lib.csproj)", "SLN"}},
        {R"(/build "Debug|Win32" /project )" + app + R"( "SLN")",
         {"/build", "Debug|Win32", "/project", R"(App\App.csproj)", "SLN"}}}},
      {{"SolutionConFiguration=Debug|Any CPU", "VStudioVersion=vs2005", "UseMSBuild=True"},
       {{tool + R"( /t:Build /p:Configuration="Debug";Platform="Any CPU";OutputPath="bin\Debug")",
         {R"(Tool\Tool.csproj)", "/t:Build",
          R"(/p:Configuration=Debug;Platform=Any CPU;OutputPath=bin\Debug)"}},
        {lib + R"( /t:Build /p:Configuration="Debug")",
         {R"(Lib\Lib.csproj)", "/t:Build", "/p:Configuration=Debug"}},
        {app + R"( /t:Build /p:Configuration="Debug")",
         {R"(App\App.csproj)", "/t:Build", "/p:Configuration=Debug"}}}},
  };
  const std::string names[] = {"Tool", "Lib", "App"};
  for (Case one : cases) {
    const std::string compiler = Compiler(one.settings);
    one.settings.insert(one.settings.end(), {"BuildType=btSelectedProjects", selected});
    const test::ProgramResult result = Run(one.settings);
    EXPECT_EQ(result.code, 0) << result.out << result.err;
    std::string log;
    for (std::size_t i = 0; i < one.calls.size(); ++i) {
      log += "Processing Project : " + names[i] + "\n" + Log(compiler, one.calls[i].parameters);
    }
    EXPECT_TRUE(result.out.starts_with(log)) << result.out;
    EXPECT_EQ(ReadFile(PathOf("vs/record")), Record(one.calls));
  }
}

TEST_F(CompilerRuns, EndAtAProjectThatIsGone) {
  const std::string gone =
      "A Project selected is no longer part of this solution, please open the action properties dialog and "
      "select the correct projects\n";
  const Words settings = {"SolutionConFiguration=Debug", "VStudioVersion=vs2005",
                          "BuildType=btSelectedProjects"};
  const auto with = [&](const std::string& ids) {
    Words all = settings;
    all.push_back("SelectedProjects=" + ids);
    return all;
  };
  const test::ProgramResult later = Run(with(std::string(kLibId) + ";" + kGoneId + ";" + kAppId));
  EXPECT_EQ(later.code, 0);
  EXPECT_EQ(later.out.find("Processing Project : App"), std::string::npos) << later.out;
  EXPECT_NE(later.out.find("------\n" + gone), std::string::npos) << later.out;
  const test::ProgramResult first = Run(with(std::string(kGoneId) + ";" + kLibId));
  EXPECT_EQ(first.code, 1);
  EXPECT_TRUE(first.out.starts_with(gone)) << first.out;
  EXPECT_FALSE(FileExists(PathOf("vs/record")));
  const test::ProgramResult none = Run(settings);
  EXPECT_EQ(none.code, 1);
  EXPECT_TRUE(none.out.starts_with("No Projects selected to build\n")) << none.out;
}

TEST_F(CompilerRuns, FailByTheirExitCodeOrByWhatTheyPrint) {
  struct Case {
    std::string version, script;
    int code;
    std::string log;  // behind the two lines of the start
  };
  const std::string devenv = PathOf("vs/devenv.com");
  const Case cases[] = {
      {"vs2005", "out a\nerr b\nexit 3\n", 1, devenv + " returned Error code : 3\n"},
      {"vs2003", "out Build: 0 succeeded, 1 failed\n", 1, "Build: 0 succeeded, 1 failed\n"},
      {"vs2005", "out Build: 0 succeeded, 1 failed\n", 0, "Build: 0 succeeded, 1 failed\n"},
      {"vs2002", "out x: 0 succeeded,\nexit 4\n", 1, "x: 0 succeeded,\n"},
  };
  for (const Case& one : cases) {
    ReplaceFile(PathOf("vs/script"), one.script);
    const test::ProgramResult result = Run({"SolutionConFiguration=Debug", "VStudioVersion=" + one.version});
    EXPECT_EQ(result.code, one.code) << one.version << one.script << result.out;
    const std::size_t end = result.out.find("Build VS.Net Solution: ");
    ASSERT_NE(end, std::string::npos) << result.out;
    EXPECT_TRUE(result.out.substr(0, end).ends_with(one.log)) << result.out;
  }
  RemoveFile(PathOf("vs/script"));
}

TEST_F(CompilerRuns, SayWhyACompilerCannotBeStarted) {
  RemoveFile(PathOf("vs/devenv.com"));
  const test::ProgramResult result = Run({"SolutionConFiguration=Debug", "VStudioVersion=vs2005"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.out.find("Error Running " + PathOf("vs/devenv.com") + " : "), std::string::npos)
      << result.out;
}

}  // namespace
}  // namespace qx
