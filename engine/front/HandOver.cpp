#include "engine/front/HandOver.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace qx {
namespace {

namespace fs = std::filesystem;

bool Exists(const std::string& name) {
  std::error_code ignored;
  return fs::exists(name, ignored);
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
  // A name that exists is left alone, backslashes and all (docs/deliberate.md).
  std::string turned(name);
  if (Exists(turned)) return turned;
  std::ranges::replace(turned, '\\', '/');

  std::string found;
  for (std::size_t begin = 0;;) {
    const std::size_t end = std::min(turned.find('/', begin), turned.size());
    found += FindEntry(found, std::string_view(turned).substr(begin, end - begin));
    if (end == turned.size()) return found;
    found += '/';
    begin = end + 1;
  }
}

std::vector<std::string> EngineCommand(const Engine& engine, std::vector<std::string> arguments) {
  // A second name, and a text that is no path, stay as they were written (docs/deliberate.md).
  const auto project = std::ranges::find_if_not(arguments, IsSwitch);
  if (project != arguments.end()) *project = FindProjectFile(*project);
  for (std::string& argument : arguments) argument = WithTurnedPaths(argument);

  std::vector<std::string> command = {engine.program};
  command.insert(command.end(), engine.arguments.begin(), engine.arguments.end());
  command.insert(command.end(), std::make_move_iterator(arguments.begin()),
                 std::make_move_iterator(arguments.end()));
  return command;
}

}  // namespace qx
