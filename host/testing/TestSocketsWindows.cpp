#include <winsock2.h>

#include <stdexcept>

#include "host/testing/TestSockets.h"

namespace qx::test_sockets {
namespace {

SOCKET Native(Socket socket) { return static_cast<SOCKET>(socket); }

SOCKET MakeSocket() {
  static const bool started = [] {
    WSADATA data;
    return WSAStartup(MAKEWORD(2, 2), &data) == 0;
  }();
  const SOCKET made = started ? socket(AF_INET, SOCK_STREAM, 0) : INVALID_SOCKET;
  if (made == INVALID_SOCKET) throw std::runtime_error("no socket to be had");
  return made;
}

sockaddr_in Loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

}  // namespace

Socket Listen(int& port) {
  const SOCKET listener = MakeSocket();
  sockaddr_in address = Loopback(0);
  int size = sizeof address;
  if (bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener, 16) != 0 ||
      getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("no port to listen on");
  }
  port = ntohs(address.sin_port);
  return static_cast<Socket>(listener);
}

Socket Accept(Socket listener) { return static_cast<Socket>(accept(Native(listener), nullptr, nullptr)); }

Socket Connect(int port) {
  const SOCKET peer = MakeSocket();
  const sockaddr_in address = Loopback(port);
  if (connect(peer, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
    return static_cast<Socket>(peer);
  closesocket(peer);
  return kNone;
}

std::size_t Read(Socket socket, char* buffer, std::size_t size) {
  const int got = recv(Native(socket), buffer, static_cast<int>(size), 0);
  return got > 0 ? static_cast<std::size_t>(got) : 0;
}

bool Write(Socket socket, std::string_view bytes) {
  while (!bytes.empty()) {
    const int sent = send(Native(socket), bytes.data(), static_cast<int>(bytes.size()), 0);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

// The shutdown fails the reads that are to come, but wakes none that waits already.
void Shut(Socket socket) {
  shutdown(Native(socket), SD_BOTH);
  CancelIoEx(reinterpret_cast<HANDLE>(Native(socket)), nullptr);
}

void Close(Socket socket) { closesocket(Native(socket)); }

}  // namespace qx::test_sockets
