#include "host/web/WebDavClient.h"

#include <algorithm>
#include <map>

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

std::string DescribeLimit(int seconds) {
  return "The server did not finish within " + std::to_string(seconds) + " seconds";
}

void TakeReplyHeader(WebDavReply& reply, std::string_view name, std::string_view value) {
  if (SameText(name, "Location")) reply.location = value;
  if (SameText(name, "ETag")) reply.etag = value;
  if (SameText(name, "Content-Encoding") && !SameText(value, "identity")) reply.encoding = value;
  if (SameText(name, "Content-Length") || SameText(name, "Transfer-Encoding")) reply.hasLength = true;
}

void RequireWholeFile(const WebDavReply& reply) {
  constexpr int kWhole = 200;
  if (reply.status != kWhole)
    throw Exception("The server did not send the file but " + DescribeStatus(reply));
  if (!reply.encoding.empty()) throw Exception("The server sent the file packed (" + reply.encoding + ")");
  if (reply.body.empty()) throw Exception("The server sent an empty file");
}

struct TQXWebDavClient::State {
  std::unique_ptr<WebDavConnection> connection;
  std::string errorText;
  std::map<std::string, std::string> etags;  // of what was fetched, by the path as it goes onto the wire

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

  // What was not whole is never stamped: it would be put back at half its size.
  std::string Fetch(const std::string& target) {
    etags.erase(target);
    WebDavReply reply = SendConnected("GET", target, std::nullopt);
    RequireWholeFile(reply);
    // A body that ends where the connection does may have been cut off anywhere, but hardly twice at one place.
    if (!reply.hasLength && SendConnected("GET", target, std::nullopt).body != reply.body)
      throw Exception("The server broke the connection before the end of the file");
    // Only a strong one can be asked for again.
    if (reply.etag.starts_with('"')) etags[target] = reply.etag;
    return std::move(reply.body);
  }

  void Put(const std::string& target, const std::string& bytes) {
    if (connection == nullptr) throw Exception("Not connected");
    const auto known = etags.find(target);
    const std::string etag = known == etags.end() ? std::string() : known->second;
    const WebDavReply reply = connection->Send("PUT", target, bytes, etag);
    constexpr int kChanged = 412;
    if (reply.status == kChanged && !etag.empty())
      throw Exception(DescribeStatus(reply) + ": somebody else changed the file since it was fetched");
    if (!IsSuccess(reply.status)) throw Exception(DescribeStatus(reply));
    etags.erase(target);
    if (reply.etag.starts_with('"')) etags[target] = reply.etag;
  }
};

TQXWebDavClient::TQXWebDavClient()
    : timeoutSeconds(CurrentHostSettings().webDavTimeout), state_(std::make_unique<State>()) {}
TQXWebDavClient::~TQXWebDavClient() = default;

bool TQXWebDavClient::Connect() {
  state_->connection = nullptr;
  const bool connected = state_->Try([this] {
    const int limit = std::max(CurrentHostSettings().webDavLimit, timeoutSeconds);
    auto connection = OpenWebDavConnection({host, port, userName, password, timeoutSeconds, limit});
    // Whatever the server says about its root, it is there: users may have rights further down only.
    connection->Send("OPTIONS", "/", std::nullopt);
    state_->connection = std::move(connection);
  });
  return connected;
}

void TQXWebDavClient::Disconnect() { state_->connection = nullptr; }

bool TQXWebDavClient::DownloadFile(const std::string& remotePath, const std::string& localPath) {
  return state_->Try([&] { ReplaceFile(localPath, state_->Fetch(EncodeRemotePath(remotePath))); });
}

bool TQXWebDavClient::UploadFile(const std::string& localPath, const std::string& remoteFolder) {
  return state_->Try([&] {
    const std::string bytes = ReadFile(localPath);
    // A dry run changes nothing on a server either.
    if (WritesAreCaptured()) return;
    state_->Put(EncodeRemotePath(remoteFolder + "/" + FilePart(localPath)), bytes);
  });
}

const std::string& TQXWebDavClient::GetErrorText() const { return state_->errorText; }

}  // namespace qx
