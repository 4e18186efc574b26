#include "host/testing/HttpTestServer.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <thread>

#include "host/testing/TestSockets.h"

namespace qx {
namespace {

using test_sockets::Socket;

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return text;
}

// Reads from a caller, keeping what came too early.
class Caller {
 public:
  explicit Caller(Socket socket) : socket_(socket) {}
  bool Receive() {
    char buffer[4096];
    const std::size_t size = test_sockets::Read(socket_, buffer, sizeof buffer);
    waiting_.append(buffer, size);
    return size > 0;
  }
  bool TakeRequest(HttpTestRequest& request) {
    std::size_t end = 0;
    while ((end = waiting_.find("\r\n\r\n")) == std::string::npos) {
      if (!Receive()) return false;
    }
    ReadHead(waiting_.substr(0, end + 2), request);
    waiting_.erase(0, end + 4);
    const std::size_t length = std::stoul("0" + request.headers["content-length"]);
    if (Lower(request.headers["expect"]) == "100-continue" && waiting_.size() < length) {
      test_sockets::Write(socket_, "HTTP/1.1 100 Continue\r\n\r\n");
    }
    while (waiting_.size() < length && Receive()) continue;
    request.body = waiting_.substr(0, length);
    waiting_.erase(0, request.body.size());
    return true;
  }

 private:
  static void ReadHead(const std::string& head, HttpTestRequest& request) {
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = head.find("\r\n", begin)) != std::string::npos; begin = end + 2) {
      const std::string line = head.substr(begin, end - begin);
      if (begin == 0) {
        const std::size_t first = line.find(' ');
        request.method = line.substr(0, first);
        request.target = line.substr(first + 1, line.rfind(' ') - first - 1);
      } else if (const std::size_t colon = line.find(": "); colon != std::string::npos) {
        request.headers[Lower(line.substr(0, colon))] = line.substr(colon + 2);
      }
    }
  }

  Socket socket_;
  std::string waiting_;
};

}  // namespace

struct HttpTestServer::State {
  std::function<void(Socket)> serve;
  int port = 0;
  Socket listener = test_sockets::Listen(port);
  mutable std::mutex mutex;
  std::vector<HttpTestRequest> requests;
  std::vector<Socket> open;
  std::vector<std::thread> threads;
  int connections = 0;
  bool ending = false;

  // A thread that does its work with an open socket, which is closed when the server ends.
  void Keep(Socket socket) {
    const std::lock_guard guard(mutex);
    open.push_back(socket);
    if (ending) test_sockets::Shut(socket);
  }
  void Count(int change) {
    const std::lock_guard guard(mutex);
    connections += change;
  }
  void AcceptAll() {
    std::vector<std::thread> callers;
    for (;;) {
      const Socket caller = test_sockets::Accept(listener);
      {
        const std::lock_guard guard(mutex);
        if (ending || caller == test_sockets::kNone) {
          if (caller != test_sockets::kNone) open.push_back(caller);
          break;
        }
      }
      Keep(caller);
      callers.emplace_back([this, caller] {
        Count(1);
        serve(caller);
        Count(-1);
      });
    }
    for (std::thread& thread : callers) thread.join();
  }
};

HttpTestServer::HttpTestServer(std::unique_ptr<State> state) : state_(std::move(state)) {
  state_->threads.emplace_back([this] { state_->AcceptAll(); });
}

HttpTestServer::HttpTestServer(Handler handler)
    : HttpTestServer([&handler] {
        auto made = std::make_unique<State>();
        made->serve = [state = made.get(), handler = std::move(handler)](Socket socket) {
          Caller caller(socket);
          for (HttpTestRequest request; caller.TakeRequest(request); request = {}) {
            std::string reply;
            {
              const std::lock_guard guard(state->mutex);
              state->requests.push_back(request);
              reply = handler(request);
            }
            if (reply.empty() || !test_sockets::Write(socket, reply)) break;
            // A reply that says so ends the connection, whole or not.
            if (reply.find("Connection: close\r\n") != std::string::npos) break;
          }
          test_sockets::Shut(socket);
        };
        return made;
      }()) {}

std::unique_ptr<HttpTestServer> HttpTestServer::Silent() {
  auto state = std::make_unique<State>();
  state->serve = [](Socket socket) {
    Caller caller(socket);
    while (caller.Receive()) continue;
  };
  return std::unique_ptr<HttpTestServer>(new HttpTestServer(std::move(state)));
}

std::unique_ptr<HttpTestServer> HttpTestServer::Dripping(std::string reply, int milliseconds) {
  auto state = std::make_unique<State>();
  state->serve = [reply = std::move(reply), milliseconds](Socket socket) {
    Caller caller(socket);
    for (HttpTestRequest request; caller.TakeRequest(request); request = {}) {
      const auto pause = std::chrono::milliseconds(request.method == "GET" ? milliseconds : 0);
      for (const char byte : reply) {
        std::this_thread::sleep_for(pause);
        if (!test_sockets::Write(socket, std::string_view(&byte, 1))) return test_sockets::Shut(socket);
      }
    }
  };
  return std::unique_ptr<HttpTestServer>(new HttpTestServer(std::move(state)));
}

std::unique_ptr<HttpTestServer> HttpTestServer::Cutting(int port, std::size_t callersBytes,
                                                        std::size_t serversBytes) {
  auto state = std::make_unique<State>();
  state->serve = [state = state.get(), port, callersBytes, serversBytes](Socket caller) {
    const Socket server = test_sockets::Connect(port);
    if (server == test_sockets::kNone) return test_sockets::Shut(caller);
    state->Keep(server);
    const auto pass = [caller, server](Socket from, Socket to, std::size_t left) {
      char buffer[1024];
      while (left > 0) {
        const std::size_t size = test_sockets::Read(from, buffer, std::min(left, sizeof buffer));
        if (size == 0 || !test_sockets::Write(to, {buffer, size})) break;
        left -= size;
      }
      test_sockets::Shut(caller);
      test_sockets::Shut(server);
    };
    std::thread back(pass, server, caller, serversBytes);
    pass(caller, server, callersBytes);
    back.join();
  };
  return std::unique_ptr<HttpTestServer>(new HttpTestServer(std::move(state)));
}

HttpTestServer::~HttpTestServer() {
  {
    const std::lock_guard guard(state_->mutex);
    state_->ending = true;
    for (const Socket socket : state_->open) test_sockets::Shut(socket);
  }
  // A last caller wakes the thread that waits for callers.
  const Socket last = test_sockets::Connect(state_->port);
  for (std::thread& thread : state_->threads) thread.join();
  if (last != test_sockets::kNone) test_sockets::Close(last);
  for (const Socket socket : state_->open) test_sockets::Close(socket);
  test_sockets::Close(state_->listener);
}

int HttpTestServer::Port() const { return state_->port; }

int HttpTestServer::OpenConnections() const {
  const std::lock_guard guard(state_->mutex);
  return state_->connections;
}

std::vector<HttpTestRequest> HttpTestServer::Requests() const {
  const std::lock_guard guard(state_->mutex);
  return state_->requests;
}

std::string HttpTestReply(const std::string& status, const std::string& body, const std::string& headers) {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" + headers +
         "\r\n" + body;
}

}  // namespace qx
