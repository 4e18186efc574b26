#include "versioning/WebProjects.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "host/testing/HttpTestServer.h"
#include "host/testing/TestFolder.h"
#include "host/testing/TestLog.h"
#include "platform/files/Files.h"
#include "plugin/Qxutils.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

// Updates the title alone, by WebDAV unless the test says otherwise.
class Source final : public AnswersUncounted<IAssemblyInfoSource> {
 public:
  virtual ~Source() = default;
  bool IsAttributeUpdated(AssemblyAttribute attribute) override {
    return attribute == AssemblyAttribute::Title;
  }
  std::string GetAttributeText(AssemblyAttribute) override { return "T"; }
  bool IsFileVersionLinked() override { return false; }
  ProjectLocationSettings GetProjectLocation() override { return location; }
  std::string ExpandText(const std::string& text) override { return text; }
  InterfacePtr<IQXApplicationServices> GetServices() override { return nullptr; }
  ProjectLocationSettings location{2, 1, "wwwroot$", "ann", [] { return std::string("pw"); }};
};

// A server with these files; what is put replaces them.
class WebProject : public testing::Test {
 protected:
  void Serve(std::map<std::string, std::string> files) {
    files_ = std::move(files);
    server_ = std::make_unique<HttpTestServer>([this](const HttpTestRequest& request) {
      if (request.method == "OPTIONS") return HttpTestReply("200 OK", "");
      if (request.method == "PUT") files_[request.target] = request.body;
      const auto file = files_.find(request.target);
      if (file == files_.end()) return HttpTestReply("404 Not Found", "");
      return request.method == "PUT" ? HttpTestReply("204 No Content", "")
                                     : HttpTestReply("200 OK", file->second);
    });
  }
  std::string Url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(server_->Port()) + path;
  }
  InterfacePtr<IQXAssemblyInfoUpdater> Updater(const std::vector<std::string>& urls) {
    std::string solution = "Microsoft Visual Studio Solution File, Format Version 8.00\r\n";
    int count = 0;
    for (const std::string& url : urls) {
      solution += "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"P\", \"" + url +
                  "\", \"{11111111-0000-0000-0000-00000000000" + std::to_string(count++) +
                  "}\"\r\nEndProject\r\n";
    }
    folder_.Write("All.sln", solution + "Global\r\nEndGlobal\r\n");
    return GetAssemblyInfoUpdater(OpenSolution(folder_ / "All.sln"), source_, log_);
  }
  // The client's end of a connection takes a moment to reach the server.
  bool AllDisconnected() const {
    for (int i = 0; i < 500 && server_->OpenConnections() > 0; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return server_->OpenConnections() == 0;
  }

  TestFolder folder_;
  Source source_;
  InterfacePtr<TestLog> log_ = MakeInterface<TestLog>();
  std::map<std::string, std::string> files_;
  std::unique_ptr<HttpTestServer> server_;
};

constexpr const char* kOld = "[assembly: AssemblyTitle(\"old\")]\r\n";
constexpr const char* kNew = "[assembly: AssemblyTitle(\"T\")]\r\n";

TEST_F(WebProject, IsStampedByWebDavAndLogged) {
  Serve({{"/Site/App.csproj", "Include=\"Properties\\AssemblyInfo.cs\""},
         {"/Site/Properties/AssemblyInfo.cs", kOld}});
  Updater({Url("/Site/App.csproj")})->UpdateAll();
  EXPECT_EQ(files_["/Site/Properties/AssemblyInfo.cs"], kNew);
  const std::string local = GetTemporaryPath() + "\\";
  EXPECT_EQ(log_->lines, (std::vector<std::string>{
                             "1 projects to process.", "Processing Project File : " + local + "App.csproj",
                             "Processing AssemblyInfo File : " + local + "AssemblyInfo.cs",
                             "Backingup AssemblyInfo File : " + local + "AssemblyInfo.cs to :" + local +
                                 "AssemblyInfo.cs.bak",
                             "Processing Entry : AssemblyTitle"}));
  EXPECT_EQ(ReadFile(local + "AssemblyInfo.cs.bak"), kOld);
}

TEST_F(WebProject, GetsTheFormOfCppInAnyLetterCase) {
  for (const char* name : {"AssemblyInfo.cpp", "AssemblyInfo.CPP", "AssemblyInfo.Cpp"}) {
    const std::string target = std::string("/S/") + name;
    Serve({{"/S/A.vcproj", std::string("RelativePath=\"") + name + "\""},
           {target, "[assembly:AssemblyCultureAttribute(\"\")];\r\n"}});
    Updater({Url("/S/A.vcproj")})->UpdateAll();
    EXPECT_NE(files_[target].find("[assembly: AssemblyTitleAttribute(\"T\")];\r\n"), std::string::npos)
        << files_[target];
  }
}

TEST_F(WebProject, WithoutAssemblyInfoIsLeftAlone) {
  Serve({{"/S/A.csproj", "Include=\"Program.cs\""}});
  Updater({Url("/S/A.csproj")})->UpdateAll();
  for (const auto& request : server_->Requests()) EXPECT_NE(request.method, "PUT");
}

TEST_F(WebProject, AnHttpsAddressAloneIsTakenForAFile) {
  try {
    Updater({"https://127.0.0.1:1/S/A.csproj"})->UpdateAll();
    ADD_FAILURE() << "no error";
  } catch (const Exception& failure) {
    EXPECT_TRUE(failure.Message().starts_with("ERROR : Unable to find : ")) << failure.Message();
  }
}

TEST_F(WebProject, AnErrorDisconnectsTheClient) {
  Serve({{"/S/A.csproj", "Include=\"AssemblyInfo.cs\""}, {"/S/AssemblyInfo.cs", kOld}, {"/T/C.csproj", "x"}});
  const auto updater = Updater({Url("/S/A.csproj"), Url("/S/Nowhere.csproj"), Url("/T/C.csproj")});
  EXPECT_THROW(updater->UpdateAll(), Exception);
  EXPECT_TRUE(AllDisconnected());
  EXPECT_EQ(files_["/S/AssemblyInfo.cs"], kNew);
  for (const auto& request : server_->Requests()) EXPECT_NE(request.target, "/T/C.csproj");
}

TEST_F(WebProject, TheEndOfARunDisconnectsTheClient) {
  Serve({{"/S/A.csproj", "Include=\"AssemblyInfo.cs\""}, {"/S/AssemblyInfo.cs", kOld}});
  const auto updater = Updater({Url("/S/A.csproj")});
  updater->UpdateAll();
  EXPECT_TRUE(AllDisconnected());
}

TEST_F(WebProject, RefersToNoFileOutsideOfItself) {
  for (const char* reference :
       {"..\\AssemblyInfo.cs", "C:\\AssemblyInfo.cs", "C:AssemblyInfo.cs", "\\AssemblyInfo.cs",
        "\\\\server\\share\\AssemblyInfo.cs", "/etc/AssemblyInfo.cs", "a/../../AssemblyInfo.cs"}) {
    Serve({{"/S/A.csproj", std::string("Include=\"") + reference + "\""}, {"/AssemblyInfo.cs", kOld}});
    try {
      Updater({Url("/S/A.csproj")})->UpdateAll();
      ADD_FAILURE() << reference;
    } catch (const Exception& failure) {
      EXPECT_TRUE(failure.Message().starts_with("Refused to ")) << failure.Message();
    }
    EXPECT_EQ(server_->Requests().back().target, "/S/A.csproj") << reference;
  }
}

TEST_F(WebProject, BelowADotIsAskedForByItsPlainName) {
  for (const char* reference : {".\\AssemblyInfo.cpp", "./AssemblyInfo.cpp", "Sub\\.\\AssemblyInfo.cpp"}) {
    const std::string target =
        std::string(reference).starts_with("Sub") ? "/S/Sub/AssemblyInfo.cpp" : "/S/AssemblyInfo.cpp";
    Serve({{"/S/A.vcproj", std::string("RelativePath=\"") + reference + "\""},
           {target, "[assembly:AssemblyTitleAttribute(\"\")];\r\n"}});
    WebProjects projects(source_.location);
    projects.FindProjectFile(Url("/S/A.vcproj"));
    EXPECT_EQ(ReadFile(projects.Fetch(reference)), files_[target]);
    Updater({Url("/S/A.vcproj")})->UpdateAll();
    EXPECT_EQ(files_[target], "[assembly: AssemblyTitleAttribute(\"T\")];\r\n") << reference;
    EXPECT_EQ(server_->Requests().back().target, target);
  }
}

TEST_F(WebProject, IsLookedForAsTheActionWasSetWhenTheUpdaterWasMade) {
  Serve({{"/S/A.csproj", "Include=\"AssemblyInfo.cs\""}, {"/S/AssemblyInfo.cs", kOld}});
  const auto updater = Updater({Url("/S/A.csproj")});
  source_.location = {1, 7, "other$", "bob", [] { return std::string("other"); }};
  updater->UpdateAll();
  EXPECT_EQ(files_["/S/AssemblyInfo.cs"], kNew);
}

TEST_F(WebProject, IsLookedForOnTheShare) {
  WebProjects projects({1, 1, "wwwroot$", "", {}});
  EXPECT_EQ(projects.FindProjectFile("http://host/A/B/App.csproj"), "\\\\host\\wwwroot$\\A/B\\App.csproj");
  EXPECT_FALSE(projects.AreFetched());
}

TEST_F(WebProject, IsNowhereByAMethodThatIsNone) {
  EXPECT_EQ(WebProjects({3, 1, "", "", {}}).FindProjectFile("http://host/App.csproj"), "");
  EXPECT_EQ(WebProjects({-1, 1, "", "", {}}).FindProjectFile("http://host/App.csproj"), "");
}

}  // namespace
}  // namespace qx
