#include "host/web/WebDavClient.h"

#include <algorithm>

#include "host/settings/HostSettings.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "plugin/Qxwebdavclient.h"

namespace qx {
namespace {

bool IsUnreserved(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
         c == '_' || c == '~';
}

// Names and addresses; bytes above 127 are left to the system, which knows international names.
bool MayStandInHost(char c) { return IsUnreserved(c) || c == ':' || static_cast<unsigned char>(c) > 127; }

bool IsSuccess(int status) { return status >= 200 && status <= 299; }

}  // namespace

std::string EncodeRemotePath(std::string_view path) {
  std::string encoded = "/";
  for (const char c : path) {
    if (IsDelimiter(c)) {
      if (encoded.back() != '/') encoded += '/';
    } else if (IsUnreserved(c)) {
      encoded += c;
    } else {
      encoded += '%' + UpperHex(static_cast<unsigned char>(c), 2);
    }
  }
  return encoded;
}

std::string HostForUrl(const std::string& host) {
  if (host.empty()) throw Exception("No host name is given");
  if (!std::all_of(host.begin(), host.end(), MayStandInHost)) throw Exception("Not a host name: " + host);
  return host.find(':') == std::string::npos ? host : "[" + host + "]";
}

void RequirePort(int port) {
  if (port < 1 || port > 65535) throw Exception("Not a port: " + std::to_string(port));
}

std::string DescribeStatus(const WebDavReply& reply) {
  std::string text = std::to_string(reply.status);
  if (!reply.reason.empty()) text += " " + reply.reason;
  const bool isRedirect = reply.status >= 300 && reply.status <= 399;
  if (isRedirect && !reply.location.empty()) text += ", redirects are not followed: " + reply.location;
  return text;
}

std::string DescribeTimeout(int seconds) {
  return "The server did not answer within " + std::to_string(seconds) + " seconds";
}

struct TQXWebDavClient::State {
  std::unique_ptr<WebDavConnection> connection;
  std::string errorText;

  // Runs one operation; its failure becomes the error text.
  template <class Operation>
  bool Try(Operation operation) {
    errorText.clear();
    try {
      operation();
      return true;
    } catch (const Exception& failure) {
      errorText = failure.Message();
      return false;
    }
  }

  WebDavReply SendConnected(const std::string& method, const std::string& target,
                            std::optional<std::string_view> body) {
    if (connection == nullptr) throw Exception("Not connected");
    WebDavReply reply = connection->Send(method, target, body);
    if (!IsSuccess(reply.status)) throw Exception(DescribeStatus(reply));
    return reply;
  }
};

TQXWebDavClient::TQXWebDavClient()
    : timeoutSeconds(CurrentHostSettings().webDavTimeout), state_(std::make_unique<State>()) {}
TQXWebDavClient::~TQXWebDavClient() = default;

bool TQXWebDavClient::Connect() {
  state_->connection = nullptr;
  const bool connected = state_->Try([this] {
    auto connection = OpenWebDavConnection({host, port, userName, password, timeoutSeconds});
    // Whatever the server says about its root, it is there: users may have rights further down only.
    connection->Send("OPTIONS", "/", std::nullopt);
    state_->connection = std::move(connection);
  });
  return connected;
}

void TQXWebDavClient::Disconnect() { state_->connection = nullptr; }

bool TQXWebDavClient::DownloadFile(const std::string& remotePath, const std::string& localPath) {
  return state_->Try([&] {
    const WebDavReply reply = state_->SendConnected("GET", EncodeRemotePath(remotePath), std::nullopt);
    ReplaceFile(localPath, reply.body);
  });
}

bool TQXWebDavClient::UploadFile(const std::string& localPath, const std::string& remoteFolder) {
  return state_->Try([&] {
    const std::string bytes = ReadFile(localPath);
    // A dry run changes nothing on a server either.
    if (WritesAreCaptured()) return;
    state_->SendConnected("PUT", EncodeRemotePath(remoteFolder + "/" + FilePart(localPath)), bytes);
  });
}

const std::string& TQXWebDavClient::GetErrorText() const { return state_->errorText; }

}  // namespace qx
