// The sources of the tree as the tests of the house read them: which there are, which room each lies in, what
// each includes. A tree is a folder, so that a test of a test can plant one of its own.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace qx::house {

namespace fs = std::filesystem;
// A room's folder, and the folders of the rooms that it may include.
using Layers = std::map<std::string, std::set<std::string>>;

inline Layers ReadLayers(const fs::path& file) {
  Layers layers;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    const auto colon = line.find(':');
    std::istringstream allowed(line.substr(colon + 1));
    auto& rooms = layers[line.substr(0, colon)];
    for (std::string room; allowed >> room;) rooms.insert(room);
  }
  return layers;
}

// The room a path relative to the root lies in: the longest listed folder that leads it, empty when none does.
inline std::string RoomOf(const std::string& path, const Layers& layers) {
  std::string best;
  for (const auto& [room, allowed] : layers) {
    if (path.starts_with(room + "/") && room.size() > best.size()) best = room;
  }
  return best;
}

inline std::vector<std::string> QuotedIncludes(const fs::path& file) {
  std::vector<std::string> names;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (!line.starts_with("#include \"")) continue;
    names.push_back(line.substr(10, line.find('"', 10) - 10));
  }
  return names;
}

inline bool IsSource(const fs::path& path) { return path.extension() == ".h" || path.extension() == ".cpp"; }

// Tests, fuzzers and what serves them only: they may include what they try.
inline bool IsTest(const std::string& path) {
  return path.find("_test.") != std::string::npos || path.find("_fuzz.") != std::string::npos ||
         path.find("testdata/") != std::string::npos || path.find("Fixture.") != std::string::npos;
}

// Every header and source below the root, relative to it, in the order of their names. What is built is left out.
inline std::vector<std::string> SourcesOf(const fs::path& root) {
  std::set<std::string> sources;
  for (auto at = fs::recursive_directory_iterator(root); at != fs::recursive_directory_iterator(); ++at) {
    const std::string path = fs::relative(at->path(), root).generic_string();
    if (path == "build" || path == ".git") at.disable_recursion_pending();
    if (IsSource(at->path()) && at->is_regular_file()) sources.insert(path);
  }
  return {sources.begin(), sources.end()};
}

// One sentence for each include that runs against an arrow, and for each source of a room that is not listed.
// `count` is told how many includes were read.
inline std::vector<std::string> IncludesAgainstAnArrow(const fs::path& root, const Layers& layers,
                                                       int& count) {
  std::vector<std::string> faults;
  count = 0;
  for (const std::string& path : SourcesOf(root)) {
    const std::string room = RoomOf(path, layers);
    if (room.empty() || IsTest(path)) continue;
    for (const std::string& name : QuotedIncludes(root / path)) {
      const std::string target = RoomOf(name, layers);
      ++count;
      if (target == room || layers.at(room).contains(target)) continue;
      faults.push_back(path + " includes " + name + ", but " + room + " may not include " +
                       (target.empty() ? "anything outside the rooms" : target));
    }
  }
  return faults;
}

}  // namespace qx::house
