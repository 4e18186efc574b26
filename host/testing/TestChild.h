// What the tests' child program, qx_test_child, asks of the system it runs on. (The program and its orders
// are described in TestChild.cpp.)
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qx::test_child {

// All in UTF-8 on Windows.
std::vector<std::string> Arguments(int argc, char** argv);
// What the program was started with, as the system keeps it; on Windows byte for byte the caller's.
std::string CommandLine();
std::string CurrentFolder();
// Bytes as they are, at once. 1 standard output, 2 standard error.
void Write(int stream, std::string_view bytes);
// How many bytes standard input gives until its end.
std::size_t ReadInput();
void Sleep(int milliseconds);
// Starts this program again with other orders, and does not wait for it. It gets the same streams.
void Spawn(const std::vector<std::string>& orders);
// Leaves the session it was started in; drops every environment variable for what it spawns; shuts its ears
// to polite requests. On Windows they do what comes nearest, or nothing.
void LeaveSession();
void DropEnvironment();
void IgnoreRequests();
// Kills whoever started this program, as the meanest child would. On Windows nothing: there is nobody between.
void KillParent();
// Waits for a polite request to end: SIGTERM, or on Windows the closing of its window. False: it cannot get one.
bool AwaitRequest();
// Ends by a signal (Windows: exits with its number).
void EndBySignal(int signal);
// How many descriptors or handles of files and pipes beyond the three standard ones it was given.
int OpenBeyondStandard();

}  // namespace qx::test_child
