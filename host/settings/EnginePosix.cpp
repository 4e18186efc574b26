#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <optional>

#include "host/settings/Engine.h"
#include "host/system/HostProgram.h"
#include "platform/BuildEngines.h"
#include "platform/files/Files.h"

namespace qx {
namespace {

// Beside the program in a build tree, beside the packages where it was installed.
constexpr std::array kPlaces = {"engine/", QXHOST_ENGINE};

// Any of these lets the engine build something, as any of kBuildEngines does.
constexpr std::array kCompilers = {"mcs", "i686-w64-mingw32-g++", "x86_64-w64-mingw32-g++"};

constexpr std::array kProductKeys = {"7.0", "7.1", "8.0"};  // 2002, 2003, 2005

bool HasCompiler() {
  const auto isThere = [](const char* program) { return !FindOnPath(program).empty(); };
  return std::ranges::any_of(kBuildEngines, isThere, &BuildEngine::program) ||
         std::ranges::any_of(kCompilers, isThere);
}

// As a value of an export has it: quotes and backslashes behind a backslash.
std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

void PutVariable(const std::string& name, const std::optional<std::string>& value) {
  if (value) {
    setenv(name.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name.c_str());
  }
}

void SetVariable(const std::string& name, const std::string& value) {
  // What stood there before; the process's, as the environment is.
  static std::map<std::string, std::optional<std::string>> covered;
  const auto before = covered.find(name);
  if (!value.empty()) {
    const char* now = std::getenv(name.c_str());
    covered.try_emplace(name, now == nullptr ? std::nullopt : std::optional<std::string>(now));
    PutVariable(name, value);
  } else if (before != covered.end()) {
    PutVariable(name, before->second);
    covered.erase(before);
  }
}

}  // namespace

std::string InstalledEngineFolder() {
  const std::string program = ProgramFolder();
  for (const char* place : kPlaces) {
    if (FileExists(program + place + "devenv.com")) return HasCompiler() ? program + place : std::string();
  }
  return {};
}

std::string EngineRegistry(const std::string& folder) {
  if (folder.empty()) return {};
  std::string text = "REGEDIT4\n";
  for (const char* key : kProductKeys) {
    text += "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\VisualStudio\\" + std::string(key) +
            "]\n\"InstallDir\"=" + Quoted(folder) + "\n";
  }
  return text;
}

void ApplyEngineSettings(const EngineSettings& settings) {
  SetVariable("QX_ENGINE_LAUNCHER", settings.launcher);
  SetVariable("QX_ENGINE_JOBS", settings.jobs);
  SetVariable("QX_ENGINE_SKIP", settings.skip);
}

}  // namespace qx
