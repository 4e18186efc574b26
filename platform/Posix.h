// What the sources for POSIX systems share: the owner of a file descriptor, the system's errors as texts,
// texts from one encoding into another, and how a program is found and started. Outside Windows only.
#pragma once

#include <spawn.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx::system {

// The system's text for an errno; LastError for the one of now.
std::string ErrorText(int error);
std::string LastError();

// An open descriptor, closed with its owner; a negative number is none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(other.Release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { Close(); }

  int Number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }
  // Gives it up without closing it.
  int Release() { return std::exchange(number_, -1); }
  // False, and errno, when the system refuses: what was written may then be lost.
  bool Close();

 private:
  int number_ = -1;
};

// Writes all of the bytes, whatever interrupts it; false, and errno, when the system refuses.
bool WriteAll(int number, std::string_view bytes);

// Texts from one encoding into another, both by the C library's names ("UTF-8", "CP1252").
class Converter {
 public:
  Converter(const char* to, const char* from);
  ~Converter();
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  // Whether the system knows both encodings; else nothing may be converted.
  bool IsOpen() const;
  // Appends what it can convert and takes it off the bytes: all of it, unless something has no place in the
  // other encoding, or stands in it by something like it only; the bytes then begin at or behind that.
  bool Convert(std::string_view& bytes, std::string& out);

 private:
  void* handle_;
};

// The folders of the PATH, with colons between them; the usual ones in an environment without it.
std::string SearchPath();
// The file of a program in the first folder of a search path that has it, an empty folder meaning the current
// one; empty when none has. Folders and files that nobody may run are passed over.
std::string FindProgramOn(std::string_view searchPath, std::string_view name);

// What a program or its environment is given: pointers into the texts, and a null behind them.
std::vector<char*> Pointers(std::vector<std::string>& texts);

// Becomes the program that the first text names, which gets all of them; returns, with errno, only when that
// cannot be.
void BecomeProgram(std::vector<std::string> command);

// What posix_spawn is told, freed with it.
struct SpawnOrders {
  // The program starts with every signal as the system has it and none held back; `flags` are further ones
  // (POSIX_SPAWN_SETSID).
  explicit SpawnOrders(short flags);
  ~SpawnOrders();
  SpawnOrders(const SpawnOrders&) = delete;
  SpawnOrders& operator=(const SpawnOrders&) = delete;

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
};

}  // namespace qx::system
