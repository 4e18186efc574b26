// The few socket calls that the tests' web server needs; they are the same on both systems but for their
// names. One source a system. Everything is on 127.0.0.1.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qx::test_sockets {

using Socket = std::intptr_t;
inline constexpr Socket kNone = -1;

// Listens on a free port, which `port` receives.
Socket Listen(int& port);
// Waits for the next caller; kNone once the listener was closed.
Socket Accept(Socket listener);
Socket Connect(int port);
// How many bytes came, 0 at the end.
std::size_t Read(Socket socket, char* buffer, std::size_t size);
bool Write(Socket socket, std::string_view bytes);
// Ends both directions, so that whoever waits for the socket wakes up.
void Shut(Socket socket);
void Close(Socket socket);

}  // namespace qx::test_sockets
