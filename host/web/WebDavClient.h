// What stands behind the contract's WebDAV client: the connection to one server, one source a system
// (WebDavClientPosix.cpp on libcurl, WebDavClientWindows.cpp on WinHTTP), and the texts that both need. No
// redirect is followed, so no server can have the password sent to another one, and no proxy is asked.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/system/LockedText.h"
#include "plugin/Qxtypes.h"

namespace qx {

struct WebDavServer {
  std::string host;  // a name or an address, of IPv6 without brackets
  int port = 80;     // 443 is spoken to over TLS, its certificate checked
  std::string userName;
  LockedText password;
  int timeoutSeconds = 60;  // how long nothing may happen, while connecting and between two bytes
  int limitSeconds = 600;   // how long one request may take from its begin to the last byte of its reply
};

struct WebDavReply {
  int status = 0;          // 200
  std::string reason;      // the server's words for it, may be empty
  std::string location;    // where a redirect leads
  std::string etag;        // as it came, quotes included
  std::string encoding;    // how the body is packed; empty: not at all
  bool hasLength = false;  // the server said where the body ends
  std::string body;
};

// Used on one thread. May keep its connection open between requests.
class WebDavConnection {
 public:
  virtual ~WebDavConnection() = default;
  // Sends one request and waits for the whole reply. `target` is a path encoded already. Raises Exception
  // with the reason when there is no whole reply, when its time is over and when a stop is asked for
  // (Stopping.h); a status of 400 or above is a reply. `ifMatch`: the server acts only on that state of the
  // file; empty: on any.
  virtual WebDavReply Send(const std::string& method, const std::string& target,
                           std::optional<std::string_view> body, const std::string& ifMatch = {}) = 0;
};

// Sends nothing yet. Raises Exception for a host or port that cannot be one.
std::unique_ptr<WebDavConnection> OpenWebDavConnection(const WebDavServer& server);

// No reply may be longer; project files are a thousandth of it.
inline constexpr std::size_t kLongestReply = std::size_t{256} << 20;

// A remote path as it goes onto the wire: every byte but letters, digits and "-._~/" percent-encoded (a percent
// sign too: the path is plain text, not part of a URL), backslashes made slashes, runs of slashes one slash.
std::string EncodeRemotePath(std::string_view path);

// The host as it stands in a URL, an IPv6 address in brackets. Raises Exception "Not a host name: ..." for
// what could lead a request elsewhere or add to its head.
std::string HostForUrl(const std::string& host);
// The address of a file as people read it: "http://host:8080/My Site/a.cs", nothing in it encoded.
std::string UrlForPeople(const std::string& host, int port, std::string_view path);
// Raises Exception "Not a port: 70000".
void RequirePort(int port);

// "404 Not Found"; of a redirect also where it leads.
std::string DescribeStatus(const WebDavReply& reply);
// The texts for a server that kept silent, and for one that took too long altogether.
std::string DescribeTimeout(int seconds);
std::string DescribeLimit(int seconds);
inline constexpr const char* kTransferStopped = "The transfer was stopped";

// Takes what is wanted of one header of a reply; names in any letter case.
void TakeReplyHeader(WebDavReply& reply, std::string_view name, std::string_view value);
// Raises Exception unless the reply to GET holds a whole file: 200, and something in it as it is.
void RequireWholeFile(const WebDavReply& reply);

}  // namespace qx
