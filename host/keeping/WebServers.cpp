#include "host/keeping/WebServers.h"

#include <algorithm>

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "plugin/Qxutils.h"
#include "plugin/Qxwebdavclient.h"
#include "plugin/Qxweblogin.h"

namespace qx {
namespace {

// The parts of "http://host:8080/Site/My folder/a.cs", as the web client made it.
struct Address {
  std::string host;
  int port = 80;
  std::string folder;  // "/Site/My folder/"
  std::string file;
};

Address AddressIn(const std::string& url) {
  Address address;
  const bool isSecure = url.starts_with("https://");
  const std::size_t begin = url.find("://") + 3;
  const std::size_t path = std::min(url.find('/', begin), url.size());
  address.host = url.substr(begin, path - begin);
  constexpr int kSecurePort = 443;
  if (isSecure) address.port = kSecurePort;
  // The colons of an IPv6 address stand between brackets.
  const std::size_t colon = address.host.rfind(':');
  if (colon != std::string::npos && address.host.find(']', colon) == std::string::npos) {
    address.port = ToInteger(address.host.substr(colon + 1)).value_or(0);
    address.host.resize(colon);
  }
  if (address.host.starts_with('[')) address.host = address.host.substr(1, address.host.size() - 2);
  const std::size_t name = url.rfind('/') + 1;
  address.folder = url.substr(path, name - path);
  address.file = url.substr(name);
  return address;
}

WebLogin LoginFor(OpenProject& project, const std::string& url) {
  for (int i = 0; i < project.ActionCount(); ++i) {
    IQXWebLogin* logins = project.Action(i) == nullptr ? nullptr : WebLoginOf(*project.Action(i));
    if (logins == nullptr) continue;
    if (const auto login = logins->GetWebLogin(url)) return *login;
  }
  throw Exception("no action of the build project names that server");
}

void Require(bool done, const TQXWebDavClient& client) {
  if (!done) throw Exception(client.GetErrorText());
}

}  // namespace

struct WebServers::Connection {
  std::string url;
  Address address;
  TQXWebDavClient client;
  std::string LocalFile() const { return GetTemporaryPath() + "/" + address.file; }
};

WebServers::WebServers(OpenProject& project) : project_(project) {}
WebServers::~WebServers() = default;

std::string WebServers::Read(const std::string& url) {
  connection_ = std::make_unique<Connection>();
  Connection& connection = *connection_;
  connection.url = url;
  connection.address = AddressIn(url);
  const WebLogin login = LoginFor(project_, url);
  connection.client.host = connection.address.host;
  connection.client.port = connection.address.port;
  connection.client.userName = login.userName;
  connection.client.password = login.password;
  Require(connection.client.Connect(), connection.client);
  const std::string local = connection.LocalFile();
  Require(connection.client.DownloadFile(connection.address.folder + connection.address.file, local),
          connection.client);
  return ReadFile(local);
}

void WebServers::Put(const std::string& url, std::string_view bytes) {
  if (connection_ == nullptr || connection_->url != url) throw Exception("It was not read before");
  const std::string local = connection_->LocalFile();
  ReplaceFile(local, bytes);
  Require(connection_->client.UploadFile(local, connection_->address.folder), connection_->client);
}

}  // namespace qx
