#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "host/testing/HttpTestServer.h"
#include "platform/Posix.h"
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

// How often the text stands in the memory of this process; it is given with each bit of it turned, so that it
// does not stand there by the question.
int CountInMemory(std::string_view whole) {
  // The allocator writes over the beginning of what is given back.
  const std::string_view turned = whole.substr(whole.size() / 2);
  std::ifstream maps("/proc/self/maps");
  std::vector<std::pair<std::uintptr_t, std::uintptr_t>> places;
  for (std::string line; std::getline(maps, line);) {
    unsigned long begin = 0, end = 0;
    char rights[8];
    if (std::sscanf(line.c_str(), "%lx-%lx %7s", &begin, &end, rights) == 3 &&
        std::string_view(rights).starts_with("rw"))
      places.emplace_back(begin, end);
  }
  // A stream would keep a part of it in a buffer of its own.
  const system::Descriptor memory(open("/proc/self/mem", O_RDONLY | O_CLOEXEC));
  int count = 0;
  std::vector<char> bytes;
  constexpr std::uintptr_t kMost = std::uintptr_t{1} << 28;  // more is a sanitizer's own
  for (const auto& [begin, end] : places) {
    if (end - begin > kMost) continue;
    bytes.assign(end - begin, 0);
    const ssize_t size = pread(memory.Number(), bytes.data(), bytes.size(), static_cast<off_t>(begin));
    for (char& byte : bytes) byte = static_cast<char>(~byte);
    const std::string_view text(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    for (std::size_t at = text.find(turned); at != std::string_view::npos; at = text.find(turned, at + 1))
      ++count;
    for (char& byte : bytes) byte = 0;
  }
  return count;
}

// Neither ours nor what the library copies.
TEST(WebDavPasswords, AreNowhereInMemoryBehindTheirUse) {
  const HttpTestServer server([](const HttpTestRequest& request) {
    if (request.headers.contains("authorization")) return HttpTestReply("200 OK", "x");
    return HttpTestReply("401 Unauthorized", "", "WWW-Authenticate: Basic realm=\"r\"\r\n");
  });
  // Behind the server, whose threads would begin with what registers hold of it.
  std::string turned = "a password that nobody would guess, and long";
  for (char& byte : turned) byte = static_cast<char>(~byte);
  {
    TQXWebDavClient client;
    client.host = "127.0.0.1";
    client.port = server.Port();
    client.userName = "ann";
    client.password.reserve(turned.size());
    for (const char byte : turned) client.password += static_cast<char>(~byte);
    ASSERT_GT(CountInMemory(turned), 0) << "it is not looked for where it is";
    ASSERT_TRUE(client.Connect()) << client.GetErrorText();
    ASSERT_TRUE(client.DownloadFile("/a.cs", GetTemporaryPath() + "/a.cs")) << client.GetErrorText();
  }
  EXPECT_EQ(CountInMemory(turned), 0);
}

}  // namespace
}  // namespace qx
