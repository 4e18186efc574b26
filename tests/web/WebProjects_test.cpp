// Whole builds of solutions with web projects: qxhost and the package stamp them through each of the three
// ways, with Apache's mod_dav as the server. with_apache.sh starts it and says in the environment where
// everything is.
#include <gtest/gtest.h>

#include <filesystem>

#include "host/actions/Variables.h"
#include "host/history/RunHistory.h"
#include "host/testing/HttpTestServer.h"
#include "host/web/WebDavClient.h"
#include "platform/files/Files.h"
#include "tests/support/RunProgram.h"

namespace qx {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

std::string Setting(const char* name) { return ReadEnvironment(name).value_or(""); }
bool IsWindows() { return Setting("QX_WEB_SYSTEM") == "windows"; }
fs::path NativePath(const std::string& text) { return fs::path(std::u8string(text.begin(), text.end())); }

constexpr const char* kProjectFile =
    "<VisualStudioProject><File RelPath = \"AssemblyInfo.cs\" /></VisualStudioProject>\r\n";
constexpr const char* kOld = "// kept\r\n[assembly: AssemblyVersion(\"1.0.*\")]\r\n";
constexpr const char* kStamped = "// kept\r\n[assembly: AssemblyVersion(\"2.1.0.7\")]\r\n";

class WebBuild : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(Setting("QX_WEB_ROOT"), "") << "to be started by with_apache.sh";
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    std::string name = test.name();
    for (char& c : name) c = c == '/' ? '-' : c;
    folder_ = fs::temp_directory_path() / ("qx-web-" + name);
    site_ = name;
    fs::remove_all(folder_);
    fs::remove_all(NativePath(RunHistory(PathOf("build.xml")).Folder()));
    fs::create_directories(folder_ / "vs");
    fs::create_directories(folder_ / "tmp");
    fs::copy_file(NativePath(QX_RECORDER), folder_ / "vs" / "devenv.com");
    ASSERT_EQ(Host({"options", "DevEnv2003Location=" + PathOf("vs"), "WebDavTimeout=10"}).code, 0);
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string PathOf(const std::string& name) const { return (folder_ / name).string(); }
  test::ProgramResult Host(Words words) const {
    words.insert(words.begin(), {"--package", QX_PACKAGE, "--options", PathOf("options.xml")});
    return test::RunProgram(QX_HOST, words, folder_.string());
  }

  // A file below the folder that is served, in the test's own site.
  std::string OnServer(const std::string& name) const {
    return Setting("QX_WEB_ROOT") + "/" + site_ + "/" + name;
  }
  void PutOnServer(const std::string& name, const std::string& bytes) const {
    // The server makes the folders, so that they are its own to write into.
    const auto server = OpenWebDavConnection({"127.0.0.1", std::stoi(Setting("QX_WEB_BASIC_PORT")),
                                              Setting("QX_WEB_USER"), Setting("QX_WEB_PASSWORD"), 10});
    const std::string path = site_ + "/" + name;
    for (std::size_t end = path.find('/'); end != std::string::npos; end = path.find('/', end + 1)) {
      if (FolderExists(Setting("QX_WEB_ROOT") + "/" + path.substr(0, end))) continue;
      const WebDavReply reply =
          server->Send("MKCOL", EncodeRemotePath(path.substr(0, end)) + "/", std::nullopt);
      ASSERT_EQ(reply.status, 201) << reply.reason;
    }
    ReplaceFile(OnServer(name), bytes);
  }
  void PutSiteOnServer(const std::string& info = kOld) const {
    PutOnServer("App.csproj", kProjectFile);
    PutOnServer("AssemblyInfo.cs", info);
  }

  // A build project for a solution with these projects, that stamps the version 2.1.0.7.
  void MakeBuild(const Words& urls, Words settings) {
    std::string solution = "Microsoft Visual Studio Solution File, Format Version 8.00\r\n";
    int count = 0;
    for (const std::string& url : urls) {
      solution += "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"P\", \"" + url +
                  "\", \"{11111111-0000-0000-0000-00000000000" + std::to_string(count++) +
                  "}\"\r\nEndProject\r\n";
    }
    ReplaceFile(
        PathOf("All.sln"),
        solution +
            "Global\r\n\tGlobalSection(SolutionConfiguration) = preSolution\r\n\t\tRelease = Release\r\n"
            "\tEndGlobalSection\r\nEndGlobal\r\n");
    RemoveFile(PathOf("build.xml"));
    ASSERT_EQ(Host({"new", PathOf("build.xml")}).code, 0);
    Words words{"add",
                PathOf("build.xml"),
                "Build VS.Net Solution",
                "Solution=" + PathOf("All.sln"),
                "SolutionConFiguration=Release",
                "VStudioVersion=vs2003",
                "UpdateAssemblyInfo=True",
                "UpdateAssemblyVersion=True",
                "AssemblyVersion=2|1|0|7"};
    words.insert(words.end(), settings.begin(), settings.end());
    const test::ProgramResult made = Host(words);
    ASSERT_EQ(made.code, 0) << made.err;
  }
  Words WebDav(const std::string& password = Setting("QX_WEB_PASSWORD")) const {
    return {"ProjLocationDetectMethod=useWebDAV", "WebDAVUsername=" + Setting("QX_WEB_USER"),
            "WebDAVPassword=" + password};
  }
  test::ProgramResult Run(const Words& more = {}) const {
    Words words{"run", PathOf("build.xml")};
    words.insert(words.end(), more.begin(), more.end());
    return Host(words);
  }
  static bool Holds(const test::ProgramResult& result, const std::string& text) {
    return (result.out + result.err).find(text) != std::string::npos;
  }
  // The run failed with these texts in its log, and no compiler was started.
  void ExpectFailure(const Words& texts, const Words& options = {}) const {
    const test::ProgramResult result = Run(options);
    EXPECT_EQ(result.code, 1) << result.out << result.err;
    for (const std::string& text : texts)
      EXPECT_TRUE(Holds(result, text)) << text << "\nis not in\n" << result.out << result.err;
    EXPECT_FALSE(Holds(result, Setting("QX_WEB_PASSWORD"))) << result.out << result.err;
    EXPECT_FALSE(FileExists(PathOf("vs/record")));
  }

  fs::path folder_;
  std::string site_;
};

// Once with each kind of authentication.
class WebDavBuild : public WebBuild, public testing::WithParamInterface<const char*> {
 protected:
  std::string Port() const {
    return Setting(GetParam() == std::string("Basic") ? "QX_WEB_BASIC_PORT" : "QX_WEB_DIGEST_PORT");
  }
  std::string Url(const std::string& name) const { return UrlAt(Port(), site_ + "/" + name); }
  static std::string UrlAt(const std::string& port, const std::string& path) {
    return "http://127.0.0.1:" + port + "/" + path;
  }
};
INSTANTIATE_TEST_SUITE_P(With, WebDavBuild, testing::Values("Basic", "Digest"),
                         [](const auto& with) { return std::string(with.param); });

TEST_P(WebDavBuild, StampsTheFileOnTheServer) {
  PutSiteOnServer();
  MakeBuild({Url("App.csproj")}, WebDav());
  const test::ProgramResult result = Run();
  EXPECT_EQ(result.code, 0) << result.out << result.err;
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), kStamped);
  EXPECT_EQ(ReadFile(OnServer("App.csproj")), kProjectFile);
  EXPECT_TRUE(Holds(result, "Processing Entry : AssemblyVersion"));
  EXPECT_TRUE(FileExists(PathOf("vs/record"))) << "the compiler comes after the stamping";
}

TEST_P(WebDavBuild, KeepsItsBackupInTheTemporaryFolderAndRemovesBoth) {
  PutSiteOnServer();
  MakeBuild({Url("App.csproj")}, WebDav());
  const test::ProgramResult result = Run();
  EXPECT_FALSE(FileExists(OnServer("AssemblyInfo.cs.bak")));
  const std::string mark = "Backingup AssemblyInfo File : ";
  const std::size_t at = result.out.find(mark);
  ASSERT_NE(at, std::string::npos) << result.out;
  const std::string backup =
      result.out.substr(at + mark.size(), result.out.find(" to :", at) - at - mark.size());
  EXPECT_NE(backup.find("qxhost-"), std::string::npos) << backup;
  EXPECT_EQ(backup.substr(backup.size() - 16), "\\AssemblyInfo.cs");
  EXPECT_FALSE(FolderExists(backup.substr(0, backup.size() - 16))) << "gone with the run";
}

TEST_P(WebDavBuild, StampsSeveralProjectsAndFilesBelowThem) {
  PutSiteOnServer();
  PutOnServer("Two/B.csproj", "<File Include=\"Properties\\AssemblyInfo.cs\" />");
  PutOnServer("Two/Properties/AssemblyInfo.cs", kOld);
  MakeBuild({Url("App.csproj"), Url("Two/B.csproj")}, WebDav());
  const test::ProgramResult result = Run();
  EXPECT_EQ(result.code, 0) << result.out << result.err;
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), kStamped);
  EXPECT_EQ(ReadFile(OnServer("Two/Properties/AssemblyInfo.cs")), kStamped);
}

TEST_P(WebDavBuild, ReachesNamesWithBlanksUmlautsAndSigns) {
  PutOnServer("My S\xC3\xAFte/A pp.csproj", "<File Include=\"C#\\100% \xC3\xBC\\AssemblyInfo.cs\" />");
  PutOnServer("My S\xC3\xAFte/C#/100% \xC3\xBC/AssemblyInfo.cs", kOld);
  MakeBuild({Url("My S\xC3\xAFte/A pp.csproj")}, WebDav());
  const test::ProgramResult result = Run();
  EXPECT_EQ(result.code, 0) << result.out << result.err;
  EXPECT_EQ(ReadFile(OnServer("My S\xC3\xAFte/C#/100% \xC3\xBC/AssemblyInfo.cs")), kStamped);
}

TEST_P(WebDavBuild, TellsThatThePasswordIsWrong) {
  PutSiteOnServer();
  MakeBuild({Url("App.csproj")}, WebDav("not-" + Setting("QX_WEB_PASSWORD")));
  ExpectFailure({"Error retrieving file with WebDAV: 401 Unauthorized", "Servername: 127.0.0.1",
                 "Serverport: " + Port(), "UserID: " + Setting("QX_WEB_USER"),
                 "Requested file: /" + site_ + "/App.csproj"});
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), kOld);
}

TEST_P(WebDavBuild, TellsWhichFileIsMissing) {
  PutSiteOnServer();
  MakeBuild({Url("Nowhere.csproj")}, WebDav());
  ExpectFailure(
      {"Error retrieving file with WebDAV: 404 Not Found", "Requested file: /" + site_ + "/Nowhere.csproj"});
  PutOnServer("App.csproj", "<File Include=\"Sub\\AssemblyInfo.cs\" />");
  MakeBuild({Url("App.csproj")}, WebDav());
  ExpectFailure({"Error retrieving file with WebDAV: 404 Not Found",
                 "Requested file: /" + site_ + "/Sub/AssemblyInfo.cs"});
}

TEST_P(WebDavBuild, TellsThatTheFolderTakesNothing) {
  const std::string folder = Setting("QX_WEB_READ_ONLY");
  const std::string file = Setting("QX_WEB_ROOT") + "/" + folder + "/AssemblyInfo.cs";
  const std::string before = ReadFile(file);
  MakeBuild({UrlAt(Port(), folder + "/App.csproj")}, WebDav());
  ExpectFailure({"Error uploading file with WebDAV: ", "Remote Path: /" + folder + "/", "UserID: "});
  EXPECT_EQ(ReadFile(file), before);
}

TEST_P(WebDavBuild, TellsThatTheDiskIsFull) {
  const std::string folder = Setting("QX_WEB_FULL");
  if (folder.empty()) GTEST_SKIP() << "no small disk may be mounted here";
  const std::string file = Setting("QX_WEB_ROOT") + "/" + folder + "/AssemblyInfo.cs";
  const std::string before = ReadFile(file);
  MakeBuild({UrlAt(Port(), folder + "/App.csproj")}, WebDav());
  ExpectFailure({"Error uploading file with WebDAV: ", "Remote Path: /" + folder + "/"});
  EXPECT_EQ(ReadFile(file), before);
}

TEST_P(WebDavBuild, LeavesTheServersFileWhenTheConnectionBreaksWhileUploading) {
  const std::string info = kOld + std::string(300000, '/') + "\r\n";
  PutSiteOnServer(info);
  const auto proxy = HttpTestServer::Cutting(std::stoi(Port()), 100000, 100000000);
  MakeBuild({UrlAt(std::to_string(proxy->Port()), site_ + "/App.csproj")}, WebDav());
  ExpectFailure({"Error uploading file with WebDAV: "});
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), info);
}

TEST_P(WebDavBuild, LeavesTheServersFileWhenTheConnectionBreaksWhileDownloading) {
  const std::string info = kOld + std::string(300000, '/') + "\r\n";
  PutSiteOnServer(info);
  const auto proxy = HttpTestServer::Cutting(std::stoi(Port()), 100000000, 100000);
  MakeBuild({UrlAt(std::to_string(proxy->Port()), site_ + "/App.csproj")}, WebDav());
  ExpectFailure({"Error retrieving file with WebDAV: "});
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), info);
}

TEST_P(WebDavBuild, GivesUpOnAServerThatNeverAnswers) {
  const auto silent = HttpTestServer::Silent();
  ASSERT_EQ(Host({"options", "WebDavTimeout=1"}).code, 0);
  MakeBuild({UrlAt(std::to_string(silent->Port()), "Site/App.csproj")}, WebDav());
  ExpectFailure({"Unable to connect using WebDAV : The server did not answer within 1 seconds"});
}

TEST_P(WebDavBuild, GivesUpOnAServerThatIsNotThere) {
  int port = 0;
  { port = HttpTestServer::Silent()->Port(); }
  MakeBuild({UrlAt(std::to_string(port), "Site/App.csproj")}, WebDav());
  ExpectFailure({"Unable to connect using WebDAV : "});
}

TEST_P(WebDavBuild, StopsAtTheFirstErrorAndKeepsWhatWasDone) {
  PutSiteOnServer();
  PutOnServer("Three/C.csproj", kProjectFile);
  PutOnServer("Three/AssemblyInfo.cs", kOld);
  MakeBuild({Url("App.csproj"), Url("Two/Nowhere.csproj"), Url("Three/C.csproj")}, WebDav());
  ExpectFailure({"404 Not Found"});
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), kStamped);
  EXPECT_EQ(ReadFile(OnServer("Three/AssemblyInfo.cs")), kOld);
}

TEST_P(WebDavBuild, FetchesNoFileThatWouldLeaveItsFolders) {
  PutSiteOnServer();
  PutOnServer("Sub/App.csproj", "<File Include=\"..\\AssemblyInfo.cs\" />");
  MakeBuild({Url("Sub/App.csproj")}, WebDav());
  ExpectFailure(
      {"Refused to use the remote folder \"" + site_ + "/Sub/..\": it leads out of the project's folder"});
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), kOld);
  MakeBuild({Url("nul.csproj")}, WebDav());
  ExpectFailure(
      {"Refused to use \"nul.csproj\" as the name of a temporary file: it is the name of a device"});
}

TEST_P(WebDavBuild, ShowsThePasswordNowhere) {
  PutSiteOnServer();
  MakeBuild({Url("App.csproj"), Url("Nowhere.csproj")}, WebDav());
  const std::string password = Setting("QX_WEB_PASSWORD");
  for (const char* format : {"text", "json"}) {
    const test::ProgramResult result = Run({"--log", format, "--log-file", PathOf("log")});
    EXPECT_EQ(result.code, 1);
    EXPECT_FALSE(Holds(result, password));
    EXPECT_EQ(ReadFile(PathOf("log")).find(password), std::string::npos);
  }
  for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
    EXPECT_EQ(entry.path().string().find(password), std::string::npos);
    if (!entry.is_regular_file()) continue;
    EXPECT_EQ(ReadFile(entry.path().string()).find(password), std::string::npos) << entry.path();
  }
}

// It does not say who it is, and so sees nothing where a server wants to know.
TEST_P(WebDavBuild, ChangesNothingInADryRun) {
  PutSiteOnServer();
  MakeBuild({Url("App.csproj")}, WebDav());
  const test::ProgramResult result = Run({"--dry-run"});
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), kOld) << result.out << result.err;
  EXPECT_TRUE(Holds(result, "401 Unauthorized: a dry run sends no user name and no password"))
      << result.out << result.err;
}

// What it was before the run is had back with the login of the action, also when the run has changed it twice.
TEST_P(WebDavBuild, KeepsWhatTheServerHad) {
  PutSiteOnServer();
  MakeBuild({Url("App.csproj")}, WebDav());
  ASSERT_EQ(Run().code, 0);
  ASSERT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), kStamped);
  const std::string url = Url("AssemblyInfo.cs");
  const test::ProgramResult history = Host({"history", PathOf("build.xml")});
  EXPECT_TRUE(Holds(history, "1 file changed\n")) << history.out;
  EXPECT_TRUE(Holds(history, "    " + url + "\n")) << history.out;
  const test::ProgramResult planned = Host({"restore", PathOf("build.xml"), "--dry-run"});
  EXPECT_EQ(planned.out, "would restore " + url + ", unless it was changed since\n") << planned.err;
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), kStamped);
  const test::ProgramResult restored = Host({"restore", PathOf("build.xml")});
  EXPECT_EQ(restored.code, 0) << restored.err;
  EXPECT_EQ(restored.out, "restored " + url + "\n");
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), kOld);
  EXPECT_EQ(Host({"restore", PathOf("build.xml")}).out, "");
}

TEST_P(WebDavBuild, RestoresNoFileThatSomebodyChangedSinceUnlessForced) {
  PutSiteOnServer();
  MakeBuild({Url("App.csproj")}, WebDav());
  ASSERT_EQ(Run().code, 0);
  PutOnServer("AssemblyInfo.cs", "// theirs\r\n");
  const test::ProgramResult refused = Host({"restore", PathOf("build.xml")});
  EXPECT_EQ(refused.code, 1);
  EXPECT_TRUE(Holds(refused, Url("AssemblyInfo.cs") + " was changed since run 1 and is left alone"))
      << refused.err;
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), "// theirs\r\n");
  EXPECT_EQ(Host({"restore", PathOf("build.xml"), "--force"}).code, 0);
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), kOld);
  EXPECT_EQ(Host({"restore", PathOf("build.xml")}).code, 0) << "what was overwritten is kept in turn";
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), "// theirs\r\n");
}

// No action names the server any more: nobody knows who may write there.
TEST_P(WebDavBuild, WritesAsideWhatItCannotPutBack) {
  PutSiteOnServer();
  MakeBuild({Url("App.csproj")}, WebDav());
  ASSERT_EQ(Run().code, 0);
  ASSERT_EQ(Host({"set", PathOf("build.xml"), "ProjLocationDetectMethod=useShare"}).code, 0);
  const test::ProgramResult result = Host({"restore", PathOf("build.xml")});
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(Holds(result, Url("AssemblyInfo.cs") + " is not put back: no action of the build project"))
      << result.err;
  EXPECT_EQ(ReadFile(PathOf("AssemblyInfo.cs.before-run-1")), kOld);
  EXPECT_EQ(ReadFile(OnServer("AssemblyInfo.cs")), kStamped);
}

// Where a server asks nobody, a dry run shows what would be put.
TEST_F(WebBuild, ShowsThePutThatWouldFollow) {
  HttpTestServer server([](const HttpTestRequest& request) {
    if (request.target == "/Site/App.csproj") return HttpTestReply("200 OK", kProjectFile);
    return HttpTestReply("200 OK", kOld);
  });
  const std::string site = "http://127.0.0.1:" + std::to_string(server.Port()) + "/Site/";
  MakeBuild({site + "App.csproj"}, {"ProjLocationDetectMethod=useWebDAV", "WebDAVUsername=ann",
                                    "WebDAVPassword=" + Setting("QX_WEB_PASSWORD")});
  const test::ProgramResult result = Run({"--dry-run"});
  EXPECT_EQ(result.code, 0) << result.out << result.err;
  EXPECT_TRUE(Holds(result, "Would put " + site +
                                "AssemblyInfo.cs (asked for without a user name):\n"
                                "    | @@ -1,2 +1,2 @@\n    |  // kept\n"
                                "    | -[assembly: AssemblyVersion(\"1.0.*\")]\n"
                                "    | +[assembly: AssemblyVersion(\"2.1.0.7\")]\n"))
      << result.out;
  EXPECT_FALSE(Holds(result, "AssemblyInfo.cs.bak"))
      << "the temporary files are nobody's business: " << result.out;
  for (const HttpTestRequest& request : server.Requests()) {
    EXPECT_NE(request.method, "PUT");
    EXPECT_FALSE(request.headers.contains("authorization"));
  }
}

TEST_F(WebBuild, StampsThroughAShare) {
  const std::string share = Setting("QX_WEB_SHARE");
  const std::string info = share + "/" + site_ + "/Sub/Properties/AssemblyInfo.cs";
  fs::create_directories(NativePath(info).parent_path());
  ReplaceFile(info, kOld);
  ReplaceFile(share + "/" + site_ + "/Sub/App.csproj", "<File Include=\"Properties\\AssemblyInfo.cs\" />");
  if (!IsWindows()) {
    ASSERT_EQ(Host({"options", "Unc.\\\\qxserver\\wwwroot$=" + share}).code, 0);
  }
  MakeBuild({"http://qxserver/" + site_ + "/Sub/App.csproj"},
            {"ProjLocationDetectMethod=useShare", "SharePath=wwwroot$"});
  const test::ProgramResult result = Run();
  EXPECT_EQ(result.code, 0) << result.out << result.err;
  EXPECT_TRUE(
      Holds(result, "Processing Project File : \\\\qxserver\\wwwroot$\\" + site_ + "/Sub\\App.csproj"))
      << result.out;
  EXPECT_EQ(ReadFile(info), kStamped);
  EXPECT_EQ(ReadFile(info + ".bak"), kOld);
}

TEST_F(WebBuild, NamesTheFileThatIsNotOnTheShare) {
  MakeBuild({"http://qxnowhere/Site/App.csproj"},
            {"ProjLocationDetectMethod=useShare", "SharePath=wwwroot$"});
  ExpectFailure({"ERROR : Unable to find : \\\\qxnowhere\\wwwroot$\\Site\\App.csproj"});
}

TEST_F(WebBuild, FailsForAProjectThatTheMetabaseDoesNotHold) {
  MakeBuild({"http://qxserver/Nowhere/App.csproj"}, {"ProjLocationDetectMethod=useWMI", "WMIWebsiteNum=1"});
  ExpectFailure({"Unable to resolve to physical path - no object found"});
}

TEST_F(WebBuild, AsksTheMetabase) {
  if (!IsWindows()) GTEST_SKIP() << "outside Windows there is no metabase to ask";
  const Words settings{"ProjLocationDetectMethod=useWMI", "WMIWebsiteNum=1"};
  MakeBuild({"http://qxserver/Wrong/App.csproj"}, settings);
  ExpectFailure({"Unable to resolve to physical path - no object found"});

  const std::string site = Setting("QX_WEB_DRIVE") + "/Web/Site";
  for (const std::string folder : {"/", "/Sub/"}) {
    fs::create_directories(NativePath(site + folder));
    ReplaceFile(site + folder + "App.csproj", kProjectFile);
    ReplaceFile(site + folder + "AssemblyInfo.cs", kOld);
    MakeBuild({"http://qxserver/Site" + folder + "App.csproj"}, settings);
    const test::ProgramResult result = Run();
    EXPECT_EQ(result.code, 0) << result.out << result.err;
    EXPECT_EQ(ReadFile(site + folder + "AssemblyInfo.cs"), kStamped);
  }
}

TEST_F(WebBuild, AsksTheMetabaseForItsSite) {
  if (!IsWindows()) GTEST_SKIP() << "outside Windows there is no metabase to ask";
  MakeBuild({"http://qxserver/Site/App.csproj"}, {"ProjLocationDetectMethod=useWMI", "WMIWebsiteNum=2"});
  ExpectFailure({"ERROR : Unable to find : \\\\qxserver\\E$\\Second\\App.csproj"});
}

}  // namespace
}  // namespace qx
