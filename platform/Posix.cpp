#include "platform/Posix.h"

#include <iconv.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace qx::system {
namespace {

// The C library's sign for encodings that it does not know.
iconv_t NoConverter() { return reinterpret_cast<iconv_t>(-1); }

}  // namespace

std::string ErrorText(int error) { return std::generic_category().message(error); }
std::string LastError() { return ErrorText(errno); }

bool Descriptor::Close() {
  const int number = Release();
  return number < 0 || close(number) == 0;
}

bool WriteAll(int number, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(number, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

Converter::Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {}

Converter::~Converter() {
  if (IsOpen()) iconv_close(handle_);
}

bool Converter::IsOpen() const { return handle_ != NoConverter(); }

bool Converter::Convert(std::string_view& bytes, std::string& out) {
  std::array<char, 4096> buffer;
  while (!bytes.empty()) {
    char* from = const_cast<char*>(bytes.data());  // the interface is older than const; it only reads
    char* to = buffer.data();
    std::size_t left = bytes.size();
    std::size_t room = buffer.size();
    const std::size_t replaced = iconv(handle_, &from, &left, &to, &room);
    const bool isFull = replaced == static_cast<std::size_t>(-1) && errno == E2BIG;
    bytes.remove_prefix(bytes.size() - left);
    out.append(buffer.data(), buffer.size() - room);
    if (replaced != 0 && !isFull) return false;
  }
  return true;
}

std::string SearchPath() {
  constexpr const char* kUsual = "/usr/local/bin:/usr/bin:/bin";
  const char* variable = std::getenv("PATH");
  return variable == nullptr ? kUsual : variable;
}

std::string FindProgramOn(std::string_view searchPath, std::string_view name) {
  for (;;) {
    const std::size_t end = searchPath.find(':');
    const std::string_view folder = searchPath.substr(0, end);
    std::string file = std::string(folder.empty() ? "." : folder).append("/").append(name);
    struct stat status;
    const bool isFile = stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    if (isFile && access(file.c_str(), X_OK) == 0) return file;
    if (end == std::string_view::npos) return {};
    searchPath.remove_prefix(end + 1);
  }
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

void BecomeProgram(std::vector<std::string> command) {
  const std::vector<char*> words = Pointers(command);
  execv(words.front(), words.data());
}

SpawnOrders::SpawnOrders(short flags) {
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigset_t all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setflags(&attributes,
                           static_cast<short>(flags | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
}

SpawnOrders::~SpawnOrders() {
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
}

}  // namespace qx::system
