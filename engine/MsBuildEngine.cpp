#include "engine/MsBuildEngine.h"

#include <algorithm>
#include <utility>

#include "platform/BuildEngines.h"
#include "platform/Posix.h"
#include "platform/Texts.h"

namespace qx {
namespace {

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

constexpr const char* kPathEndings[] = {"path", "dir", "directory", "folder", "file"};

bool IsPathProperty(std::string_view name) {
  return std::ranges::any_of(kPathEndings, [name](std::string_view ending) {
    return name.size() >= ending.size() && SameText(name.substr(name.size() - ending.size()), ending);
  });
}

}  // namespace

std::optional<Engine> FindEngine(std::string_view searchPath) {
  for (const BuildEngine& candidate : kBuildEngines) {
    std::string program = system::FindProgramOn(searchPath, candidate.program);
    if (program.empty()) continue;
    if (candidate.argument == nullptr) return Engine{std::move(program), {}};
    return Engine{std::move(program), {candidate.argument}};
  }
  return std::nullopt;
}

std::string WithTurnedPaths(const std::string& argument) {
  const std::size_t colon = argument.find(':');
  if (colon == std::string::npos || (argument[0] != '/' && argument[0] != '-')) return argument;
  const std::string_view name = std::string_view(argument).substr(1, colon - 1);
  if (!SameText(name, "p") && !SameText(name, "property")) return argument;
  std::string turned = argument.substr(0, colon + 1);
  bool isFirst = true;
  for (const std::string_view pair : Split(std::string_view(argument).substr(colon + 1), ';')) {
    if (!std::exchange(isFirst, false)) turned += ';';
    const std::size_t begin = turned.size();
    turned += pair;
    if (IsPathProperty(pair.substr(0, pair.find('=')))) {
      std::replace(turned.begin() + static_cast<std::ptrdiff_t>(begin), turned.end(), '\\', '/');
    }
  }
  return turned;
}

}  // namespace qx
