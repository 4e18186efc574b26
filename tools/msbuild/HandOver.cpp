#include "tools/msbuild/HandOver.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace qx {
namespace {

namespace fs = std::filesystem;

struct Candidate {
  const char* program;
  const char* argument;  // null when the program is the engine itself
};

// In the order of preference: the newest engine first.
constexpr Candidate kCandidates[] = {{"msbuild", nullptr}, {"dotnet", "msbuild"}, {"xbuild", nullptr}};

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

bool Exists(const std::string& name) {
  std::error_code ignored;
  return fs::exists(name, ignored);
}

bool IsProgram(const std::string& name) {
  std::error_code ignored;
  return fs::is_regular_file(name, ignored) && access(name.c_str(), X_OK) == 0;
}

char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualButForCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, LowerCase, LowerCase);
}

// The entry of `folder` that is meant by `name`: the one of that very name, else the first that differs in
// case only, else `name` itself.
std::string FindEntry(const std::string& folder, std::string_view name) {
  if (name.empty() || Exists(folder + std::string(name))) return std::string(name);
  std::string found;
  std::error_code error;
  for (fs::directory_iterator at(folder.empty() ? "." : folder, error), end; !error && at != end;
       at.increment(error)) {
    std::string entry = at->path().filename().string();
    if (EqualButForCase(entry, name) && (found.empty() || entry < found)) found = std::move(entry);
  }
  return found.empty() ? std::string(name) : found;
}

}  // namespace

std::optional<Engine> FindEngine(std::string_view search_path) {
  const std::vector<std::string_view> folders = Split(search_path, ':');
  for (const Candidate& candidate : kCandidates) {
    for (const std::string_view folder : folders) {
      std::string program = std::string(folder.empty() ? "." : folder) + "/" + candidate.program;
      if (!IsProgram(program)) continue;
      if (candidate.argument == nullptr) return Engine{std::move(program), {}};
      return Engine{std::move(program), {candidate.argument}};
    }
  }
  return std::nullopt;
}

bool IsSwitch(std::string_view argument) {
  if (argument.starts_with('-') || argument.starts_with('@')) return true;
  if (!argument.starts_with('/')) return false;
  const std::string_view name = argument.substr(1, argument.find(':') - 1);
  return std::ranges::all_of(name, [](char c) {
    const char lower = LowerCase(c);
    return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '?';
  });
}

std::string FindProjectFile(std::string_view name) {
  std::string turned(name);
  if (Exists(turned)) return turned;
  std::ranges::replace(turned, '\\', '/');

  std::string found;
  const std::vector<std::string_view> parts = Split(turned, '/');
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) found += '/';
    found += FindEntry(found, parts[i]);
  }
  return found;
}

std::vector<std::string> EngineCommand(const Engine& engine, std::vector<std::string> arguments) {
  const auto project = std::ranges::find_if_not(arguments, IsSwitch);
  if (project != arguments.end()) *project = FindProjectFile(*project);

  std::vector<std::string> command = {engine.program};
  command.insert(command.end(), engine.arguments.begin(), engine.arguments.end());
  command.insert(command.end(), std::make_move_iterator(arguments.begin()),
                 std::make_move_iterator(arguments.end()));
  return command;
}

}  // namespace qx
