// A web server for tests, on a free port of 127.0.0.1: it does what the test tells it, also what no real
// server would.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace qx {

struct HttpTestRequest {
  std::string method;
  std::string target;                          // as it came
  std::map<std::string, std::string> headers;  // names in lower case
  std::string body;                            // as much as came before the caller hung up
};

class HttpTestServer {
 public:
  // Gives the bytes of the reply, head included; an empty reply hangs up. Called on the server's threads, one
  // at a time.
  using Handler = std::function<std::string(const HttpTestRequest&)>;
  explicit HttpTestServer(Handler handler);
  // A server that takes callers and never says a word.
  static std::unique_ptr<HttpTestServer> Silent();
  // One that passes everything on to another port and hangs up on both sides after so many bytes of the
  // caller's, or of the server's.
  static std::unique_ptr<HttpTestServer> Cutting(int port, std::size_t callersBytes,
                                                 std::size_t serversBytes);
  // One that gives the reply to any GET byte by byte, so many milliseconds apart; to others, what it is given.
  static std::unique_ptr<HttpTestServer> Dripping(std::string reply, int milliseconds);
  ~HttpTestServer();

  int Port() const;
  // How many callers hold their connection.
  int OpenConnections() const;
  // What came so far.
  std::vector<HttpTestRequest> Requests() const;

 private:
  struct State;
  explicit HttpTestServer(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

// "HTTP/1.1 200 OK", the length of the body, and what else is given: whole lines, each with CR LF.
std::string HttpTestReply(const std::string& status, const std::string& body,
                          const std::string& headers = {});

}  // namespace qx
