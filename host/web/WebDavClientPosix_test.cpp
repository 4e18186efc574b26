#include <gtest/gtest.h>

#include "host/testing/HttpTestServer.h"
#include "platform/files/Files.h"
#include "plugin/Qxutils.h"
#include "plugin/Qxwebdavclient.h"

namespace qx {
namespace {

// For libcurl alone: Wine's WinHTTP takes the end of the connection for the end of such a reply.
TEST(WebDavPieces, FailWhenTheServerBreaksOffWithinOne) {
  const HttpTestServer server([](const HttpTestRequest& request) {
    if (request.method != "GET") return HttpTestReply("200 OK", "");
    return std::string("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nConnection: close\r\n\r\n64\r\nabc");
  });
  TQXWebDavClient client;
  client.host = "127.0.0.1";
  client.port = server.Port();
  const std::string local = GetTemporaryPath() + "/pieces-test.cs";
  ASSERT_TRUE(client.Connect()) << client.GetErrorText();
  EXPECT_FALSE(client.DownloadFile("/a.cs", local));
  EXPECT_NE(client.GetErrorText(), "");
  EXPECT_FALSE(FileExists(local));
}

}  // namespace
}  // namespace qx
