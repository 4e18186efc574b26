#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

#include "host/testing/TestSockets.h"

namespace qx::test_sockets {
namespace {

sockaddr_in Loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

}  // namespace

Socket Listen(int& port) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = Loopback(0);
  socklen_t size = sizeof address;
  if (bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener, 16) != 0 ||
      getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("no port to listen on");
  }
  port = ntohs(address.sin_port);
  return listener;
}

Socket Accept(Socket listener) { return accept4(static_cast<int>(listener), nullptr, nullptr, SOCK_CLOEXEC); }

Socket Connect(int port) {
  const int peer = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = Loopback(port);
  if (connect(peer, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return peer;
  close(peer);
  return kNone;
}

std::size_t Read(Socket socket, char* buffer, std::size_t size) {
  const ssize_t got = recv(static_cast<int>(socket), buffer, size, 0);
  return got > 0 ? static_cast<std::size_t>(got) : 0;
}

bool Write(Socket socket, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = send(static_cast<int>(socket), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void Shut(Socket socket) { shutdown(static_cast<int>(socket), SHUT_RDWR); }
void Close(Socket socket) { close(static_cast<int>(socket)); }

}  // namespace qx::test_sockets
