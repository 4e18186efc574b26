#include "host/web/WebDavClient.h"

#include <algorithm>
#include <map>

#include "host/settings/HostSettings.h"
#include "host/system/UploadRehearsal.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/WriteObserver.h"
#include "plugin/Qxwebdavclient.h"

namespace qx {
namespace {

bool IsUnreserved(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
         c == '_' || c == '~';
}

constexpr int kPlainPort = 80;
constexpr int kSecurePort = 443;

// Names and addresses; bytes above 127 are left to the system, which knows international names.
bool MayStandInHost(char c) { return IsUnreserved(c) || c == ':' || static_cast<unsigned char>(c) > 127; }

bool IsSuccess(int status) { return status >= 200 && status <= 299; }

// Only a strong one can be asked for again.
bool IsStrong(const std::string& etag) { return etag.starts_with('"'); }

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

std::string UrlForPeople(const std::string& host, int port, std::string_view path) {
  const bool isSecure = port == kSecurePort;
  std::string url = (isSecure ? "https://" : "http://") + HostForUrl(host);
  if (!isSecure && port != kPlainPort) url += ":" + std::to_string(port);
  url += '/';
  for (const char c : path) {
    if (!IsDelimiter(c)) {
      url += c;
    } else if (url.back() != '/') {
      url += '/';
    }
  }
  return url;
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
  struct Fetched {
    std::string etag;  // empty: none that could be asked for again
    std::string bytes;
  };
  std::map<std::string, Fetched> fetched;  // by the path as it goes onto the wire

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
    if (IsSuccess(reply.status)) return reply;
    constexpr int kUnauthorized = 401;
    const bool isUnknown = reply.status == kUnauthorized && UploadsAreRehearsed();
    throw Exception(DescribeStatus(reply) +
                    (isUnknown ? ": a dry run sends no user name and no password" : ""));
  }

  // What was not whole is never stamped: it would be put back at half its size.
  const std::string& Fetch(const std::string& target) {
    fetched.erase(target);
    WebDavReply reply = SendConnected("GET", target, std::nullopt);
    RequireWholeFile(reply);
    // A body that ends where the connection does may have been cut off anywhere, but hardly twice at one place.
    if (!reply.hasLength && SendConnected("GET", target, std::nullopt).body != reply.body)
      throw Exception("The server broke the connection before the end of the file");
    Fetched& file = fetched[target];
    if (IsStrong(reply.etag)) file.etag = reply.etag;
    file.bytes = std::move(reply.body);
    return file.bytes;
  }

  // `url` for whoever keeps what is overwritten.
  void Put(const std::string& target, const std::string& url, std::string_view bytes) {
    if (connection == nullptr) throw Exception("Not connected");
    const auto known = fetched.find(target);
    if (known != fetched.end()) {
      const PlannedWrite planned{url, known->second.bytes, std::span(&bytes, 1)};
      TellObserver({&planned, 1});
    }
    const std::string etag = known == fetched.end() ? std::string() : known->second.etag;
    const WebDavReply reply = connection->Send("PUT", target, bytes, etag);
    constexpr int kChanged = 412;
    if (reply.status == kChanged && !etag.empty())
      throw Exception(DescribeStatus(reply) + ": somebody else changed the file since it was fetched");
    if (!IsSuccess(reply.status)) throw Exception(DescribeStatus(reply));
    // Who puts it once more overwrites this.
    fetched[target] = {IsStrong(reply.etag) ? reply.etag : std::string(), std::string(bytes)};
  }
};

TQXWebDavClient::TQXWebDavClient()
    : timeoutSeconds(CurrentHostSettings().webDavTimeout), state_(std::make_unique<State>()) {}
TQXWebDavClient::~TQXWebDavClient() { Wipe(password); }

bool TQXWebDavClient::Connect() {
  state_->connection = nullptr;
  const bool connected = state_->Try([this] {
    const int limit = std::max(CurrentHostSettings().webDavLimit, timeoutSeconds);
    WebDavServer server{host, port, userName, password, timeoutSeconds, limit};
    // A dry run tells no server who asks.
    if (UploadsAreRehearsed()) server.userName.clear(), server.password = {};
    auto connection = OpenWebDavConnection(server);
    // Whatever the server says about its root, it is there: users may have rights further down only.
    connection->Send("OPTIONS", "/", std::nullopt);
    state_->connection = std::move(connection);
  });
  return connected;
}

void TQXWebDavClient::Disconnect() { state_->connection = nullptr; }

bool TQXWebDavClient::DownloadFile(const std::string& remotePath, const std::string& localPath) {
  return state_->Try([&] {
    const auto rehearsed = RehearsedUpload(UrlForPeople(host, port, remotePath));
    ReplaceFile(localPath, rehearsed ? *rehearsed : state_->Fetch(EncodeRemotePath(remotePath)));
  });
}

bool TQXWebDavClient::UploadFile(const std::string& localPath, const std::string& remoteFolder) {
  return state_->Try([&] {
    const std::string bytes = ReadFile(localPath);
    const std::string path = remoteFolder + "/" + FilePart(localPath);
    const std::string target = EncodeRemotePath(path), url = UrlForPeople(host, port, path);
    if (!UploadsAreRehearsed()) return state_->Put(target, url, bytes);
    const auto known = state_->fetched.find(target);
    std::optional<std::string> before;
    if (known != state_->fetched.end()) before = known->second.bytes;
    RehearseUpload({url, std::move(before), bytes});
  });
}

const std::string& TQXWebDavClient::GetErrorText() const { return state_->errorText; }

}  // namespace qx
