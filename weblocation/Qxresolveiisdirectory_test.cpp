#include "weblocation/Qxresolveiisdirectory.h"

#include <gtest/gtest.h>

#include "host/testing/HttpTestServer.h"
#include "platform/files/Files.h"
#include "plugin/Qxutils.h"

namespace qx {
namespace {

TEST(ShareName, KeepsTheSlashesBetweenFolders) {
  EXPECT_EQ(BuildShareName("http://host/A/B/App.csproj", "wwwroot$"), "\\\\host\\wwwroot$\\A/B\\App.csproj");
  EXPECT_EQ(BuildShareName("http://host/A/App.csproj", "wwwroot$"), "\\\\host\\wwwroot$\\A\\App.csproj");
}

TEST(ShareName, HasTwoBackslashesWhereThereIsNoFolder) {
  EXPECT_EQ(BuildShareName("http://host/App.csproj", "wwwroot$"), "\\\\host\\wwwroot$\\\\App.csproj");
  EXPECT_EQ(BuildShareName("App.csproj", "wwwroot$"), "\\\\\\wwwroot$\\\\App.csproj");
}

TEST(ShareName, LeavesThePortOut) {
  EXPECT_EQ(BuildShareName("http://host:8080/A/App.csproj", ""), "\\\\host\\\\A\\App.csproj");
}

template <class Call>
std::string ComplaintOf(Call call) {
  try {
    call();
  } catch (const Exception& e) {
    return e.Message();
  }
  return {};
}

TEST(WebDavFunctions, AssertsItsClient) {
  const std::string complaint = "Assertion failure (PlugIns/VStudio.NET/QXResolveIISDirectory)";
  std::string folder, file;
  EXPECT_EQ(ComplaintOf([&] { GetProjectFileUsingWebDAV(nullptr, "http://h/A.csproj", folder, file); }),
            complaint);
  EXPECT_EQ(ComplaintOf([&] { GetFileUsingWebDAV(nullptr, "A", "A.csproj", file); }), complaint);
  EXPECT_EQ(ComplaintOf([&] { PutFileUsingWebDAV(nullptr, "A.csproj", "A"); }), complaint);
}

// A server that answers GET and PUT with one status each.
class WebDavLocation : public testing::Test {
 protected:
  WebDavLocation() {
    client_.userName = "ann";
    client_.password = "never-shown";
    client_.timeoutSeconds = 10;
  }
  void Serve(std::string get, std::string put = "204 No Content") {
    server_ = std::make_unique<HttpTestServer>([get, put](const HttpTestRequest& request) {
      if (request.method == "GET") return HttpTestReply(get, "content of " + request.target);
      return HttpTestReply(request.method == "PUT" ? put : "200 OK", "");
    });
    port_ = std::to_string(server_->Port());
    url_ = "http://127.0.0.1:" + port_ + "/My Site/Sub/App.csproj";
  }
  void Connect() {
    client_.host = "127.0.0.1";
    client_.port = server_->Port();
    ASSERT_TRUE(client_.Connect()) << client_.GetErrorText();
  }
  std::string Temporary(const std::string& name) { return GetTemporaryPath() + "\\" + name; }

  TQXWebDavClient client_;
  std::unique_ptr<HttpTestServer> server_;
  std::string port_, url_, folder_, file_;
};

TEST_F(WebDavLocation, FetchesTheProjectFileIntoTheTemporaryFolder) {
  Serve("200 OK");
  GetProjectFileUsingWebDAV(&client_, url_, folder_, file_);
  EXPECT_EQ(folder_, "My Site/Sub");
  EXPECT_EQ(file_, Temporary("App.csproj"));
  EXPECT_EQ(ReadFile(file_), "content of /My%20Site/Sub/App.csproj");
  EXPECT_EQ(client_.host, "127.0.0.1");
  EXPECT_EQ(std::to_string(client_.port), port_);
}

TEST_F(WebDavLocation, UsesPortEightyWhereTheUrlNamesNone) {
  for (const char* url :
       {"http://no such host/A.csproj", "http://no such host:/A.csproj", "http://no such host:x/A.csproj"}) {
    client_.port = 1;
    EXPECT_EQ(ComplaintOf([&] { GetProjectFileUsingWebDAV(&client_, url, folder_, file_); }),
              "Unable to connect using WebDAV : Not a host name: no such host");
    EXPECT_EQ(client_.port, 80);
  }
}

TEST_F(WebDavLocation, TellsThatItCannotConnect) {
  Serve("200 OK");
  server_ = nullptr;
  const std::string complaint =
      ComplaintOf([&] { GetProjectFileUsingWebDAV(&client_, url_, folder_, file_); });
  EXPECT_EQ(complaint, "Unable to connect using WebDAV : " + client_.GetErrorText());
  EXPECT_NE(client_.GetErrorText(), "");
}

TEST_F(WebDavLocation, TellsEverythingAboutAFailedDownloadButThePassword) {
  Serve("404 Not Found");
  EXPECT_EQ(ComplaintOf([&] { GetProjectFileUsingWebDAV(&client_, url_, folder_, file_); }),
            "Error retrieving file with WebDAV: 404 Not Found\rDownload filename: " +
                Temporary("App.csproj") + "\rServername: 127.0.0.1\rServerport: " + port_ +
                "\rUserID: ann\rRequested file: /My Site/Sub/App.csproj");
}

TEST_F(WebDavLocation, TellsEverythingAboutAFailedUploadButThePassword) {
  Serve("200 OK", "403 Forbidden");
  Connect();
  ReplaceFile(Temporary("A.cs"), "x");
  EXPECT_EQ(ComplaintOf([&] { PutFileUsingWebDAV(&client_, Temporary("A.cs"), "My Site"); }),
            "Error uploading file with WebDAV: 403 Forbidden\rLocal filename: " + Temporary("A.cs") +
                "\rServername: 127.0.0.1\rServerport: " + port_ + "\rUserID: ann\rRemote Path: /My Site/");
}

TEST_F(WebDavLocation, ReplacesAFileOfThatName) {
  Serve("200 OK");
  Connect();
  ReplaceFile(Temporary("A.cs"), "from another project");
  GetFileUsingWebDAV(&client_, "S", "A.cs", file_);
  EXPECT_EQ(ReadFile(file_), "content of /S/A.cs");
}

TEST_F(WebDavLocation, LeavesNoOldFileBehindAFailedDownload) {
  Serve("404 Not Found");
  Connect();
  ReplaceFile(Temporary("A.cs"), "from another project");
  EXPECT_NE(ComplaintOf([&] { GetFileUsingWebDAV(&client_, "S", "A.cs", file_); }), "");
  EXPECT_FALSE(FileExists(Temporary("A.cs")));
}

TEST_F(WebDavLocation, GoesOnWhereTheOldFileCannotBeDeleted) {
  Serve("200 OK");
  Connect();
  CreateFolders(Temporary("A folder.cs"));
  const std::string complaint = ComplaintOf([&] { GetFileUsingWebDAV(&client_, "S", "A folder.cs", file_); });
  EXPECT_TRUE(complaint.starts_with("Error retrieving file with WebDAV: Cannot write ")) << complaint;
}

TEST_F(WebDavLocation, PutsTheFileUnderItsOwnNameIntoTheFolder) {
  Serve("200 OK");
  Connect();
  ReplaceFile(Temporary("A b.cs"), "stamped");
  PutFileUsingWebDAV(&client_, Temporary("A b.cs"), "My Site/Properties");
  EXPECT_EQ(server_->Requests().back().method, "PUT");
  EXPECT_EQ(server_->Requests().back().target, "/My%20Site/Properties/A%20b.cs");
  EXPECT_EQ(server_->Requests().back().body, "stamped");
}

TEST_F(WebDavLocation, ReachesTheServersRoot) {
  Serve("200 OK");
  GetProjectFileUsingWebDAV(&client_, "http://127.0.0.1:" + port_ + "/App.csproj", folder_, file_);
  EXPECT_EQ(folder_, "");
  EXPECT_EQ(server_->Requests().back().target, "/App.csproj");
  PutFileUsingWebDAV(&client_, file_, folder_);
  EXPECT_EQ(server_->Requests().back().target, "/App.csproj");
}

TEST_F(WebDavLocation, AsksForNoFileWhoseNameWouldLeaveTheTemporaryFolder) {
  Serve("200 OK");
  Connect();
  const std::size_t before = server_->Requests().size();
  for (const char* name : {"..", "../x.cs", "..\\x.cs", "C:x.cs", "a\nb.cs", "nul.cs", ""}) {
    const std::string complaint = ComplaintOf([&] { GetFileUsingWebDAV(&client_, "S", name, file_); });
    EXPECT_TRUE(complaint.starts_with("Refused to use ")) << name << ": " << complaint;
  }
  for (const char* folder : {"S/..", "..\\Other", "S/a\nb"}) {
    EXPECT_NE(ComplaintOf([&] { GetFileUsingWebDAV(&client_, folder, "A.cs", file_); }), "") << folder;
    EXPECT_NE(ComplaintOf([&] { PutFileUsingWebDAV(&client_, Temporary("A.cs"), folder); }), "") << folder;
  }
  EXPECT_EQ(server_->Requests().size(), before);
}

TEST_F(WebDavLocation, RefusesADocumentThatIsADevice) {
  Serve("200 OK");
  const std::string url = "http://127.0.0.1:" + port_ + "/Site/aux.csproj";
  EXPECT_EQ(ComplaintOf([&] { GetProjectFileUsingWebDAV(&client_, url, folder_, file_); }),
            "Refused to use \"aux.csproj\" as the name of a temporary file: it is the name of a device");
}

}  // namespace
}  // namespace qx
