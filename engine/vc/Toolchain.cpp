#include "engine/vc/Toolchain.h"

#include <array>
#include <filesystem>
#include <map>
#include <mutex>

#include "engine/ChildCommand.h"
#include "platform/Texts.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

struct Machine {
  std::string_view platform, prefix, package;
};
constexpr std::array kMachines = {Machine{"win32", "i686-w64-mingw32-", "g++-mingw-w64-i686-posix"},
                                  Machine{"x64", "x86_64-w64-mingw32-", "g++-mingw-w64-x86-64-posix"}};

// The variant with posix threads, where the names tell them apart: only it has std::thread.
std::string FindTool(const Machine& machine, const std::string& tool) {
  const std::string name = std::string(machine.prefix) + tool;
  for (const std::string& each : {name + "-posix", name}) {
    std::string found = FindProgram(each);
    if (!found.empty()) return found;
  }
  throw Exception("no compiler for " + std::string(machine.platform) + ": " + name +
                  " is not on the PATH (Debian's package " + std::string(machine.package) + ")");
}

std::string Folder(std::string_view path) {
  return WithTrailingDelimiter(std::filesystem::path(TrimView(path)).lexically_normal().string());
}

// What the compiler itself says: asking beats guessing where a system keeps it.
void AskFolders(Toolchain& tools) {
  bool listed = false;
  RunChild({{tools.cpp, "-E", "-v", "-x", "c++", "/dev/null"}, "", {{"LC_ALL", "C"}}},
           [&](std::string_view line) {
             if (line.starts_with("End of search list")) listed = false;
             if (listed && line.starts_with(' ')) tools.includeFolders.push_back(Folder(line));
             if (line.starts_with("#include <...>")) listed = true;
           });
  RunChild({{tools.c, "-print-search-dirs"}, "", {{"LC_ALL", "C"}}}, [&](std::string_view line) {
    constexpr std::string_view kLibraries = "libraries: =";
    if (!line.starts_with(kLibraries)) return;
    line.remove_prefix(kLibraries.size());
    for (;;) {
      const std::size_t end = line.find(':');
      tools.libraryFolders.push_back(Folder(line.substr(0, end)));
      if (end == std::string_view::npos) return;
      line.remove_prefix(end + 1);
    }
  });
}

}  // namespace

const Toolchain& ToolchainFor(std::string_view platform) {
  static std::map<std::string, Toolchain> known;
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  const std::string wanted = LowerCase(platform);
  if (const auto found = known.find(wanted); found != known.end()) return found->second;
  for (const Machine& machine : kMachines) {
    if (machine.platform != wanted) continue;
    Toolchain tools;
    tools.prefix = machine.prefix;
    tools.c = FindTool(machine, "gcc");
    tools.cpp = FindTool(machine, "g++");
    tools.windres = FindTool(machine, "windres");
    tools.ar = FindTool(machine, "ar");
    tools.nm = FindTool(machine, "nm");
    tools.dlltool = FindTool(machine, "dlltool");
    AskFolders(tools);
    return known.emplace(wanted, std::move(tools)).first->second;
  }
  throw Exception("the platform \"" + std::string(platform) +
                  "\" cannot be built here: there are compilers for Win32 and x64");
}

const std::string& NinjaProgram() {
  static const std::string program = FindProgram("ninja");
  if (program.empty()) throw Exception("ninja is not on the PATH (Debian's package ninja-build)");
  return program;
}

}  // namespace qx
