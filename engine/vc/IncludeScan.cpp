#include "engine/vc/IncludeScan.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>

#include "engine/vc/OldLiterals.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kDeepestInclude = 200;
// Names that begin with "..\" or "../" that often are found too, for the folder to search lies as deep.
constexpr int kDeepestParent = 8;

bool IsWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

bool HasWord(std::string_view line, std::string_view word) {
  const std::size_t comment = line.find("//");
  line = line.substr(0, comment);
  for (std::size_t at = line.find(word); at != std::string_view::npos; at = line.find(word, at + 1)) {
    const bool begins = at == 0 || !IsWord(line[at - 1]);
    const bool ends = at + word.size() == line.size() || !IsWord(line[at + word.size()]);
    if (begins && ends) return true;
  }
  return false;
}

void ScanInclude(std::string_view rest, ScannedText& scanned) {
  rest = TrimView(rest);
  if (rest.empty() || (rest[0] != '"' && rest[0] != '<')) return;
  const std::size_t end = rest.find(rest[0] == '"' ? '"' : '>', 1);
  if (end == std::string_view::npos || end == 1) return;
  scanned.includes.push_back({std::string(rest.substr(1, end - 1)), rest[0] == '"'});
}

// comment(lib, "ws2_32.lib")
void ScanPragma(std::string_view rest, ScannedText& scanned) {
  std::string_view text = TrimView(rest);
  for (const std::string_view part : {"comment", "(", "lib", ",", "\""}) {
    if (!text.starts_with(part)) return;
    text = TrimView(text.substr(part.size()));
  }
  const std::size_t end = text.find('"');
  if (end != std::string_view::npos && end > 0) scanned.libraries.emplace_back(text.substr(0, end));
}

void ScanDirective(std::string_view line, ScannedText& scanned) {
  line = TrimView(line.substr(1));
  if (line.starts_with("include")) ScanInclude(line.substr(7), scanned);
  if (line.starts_with("pragma")) ScanPragma(line.substr(6), scanned);
  if (line.starts_with("define")) scanned.hasOldLiterals |= MayHoldOldLiteral(line);
}

}  // namespace

ScannedText ScanSource(std::string_view text) {
  ScannedText scanned;
  ForEachLine(text, [&](std::string_view line) {
    while (!line.empty() && (line[0] == ' ' || line[0] == '\t')) line.remove_prefix(1);
    if (line.starts_with('#')) {
      ScanDirective(line, scanned);
    } else {
      scanned.hasOldLiterals |= MayHoldOldLiteral(line);
    }
    if (line.find("ain") != std::string_view::npos) {
      scanned.hasWideMain |= HasWord(line, "wmain") || HasWord(line, "wWinMain");
      scanned.hasGenericMain |= HasWord(line, "_tmain") || HasWord(line, "_tWinMain");
    }
  });
  return scanned;
}

IncludeScan::IncludeScan(std::vector<std::string> folders, std::vector<std::string> systemFolders)
    : folders_(std::move(folders)), systemFolders_(std::move(systemFolders)) {}

bool IncludeScan::IsExact(const std::string& path) {
  const auto [place, isNew] = exact_.try_emplace(path, false);
  std::error_code error;
  if (isNew) place->second = fs::is_regular_file(path, error);
  return place->second;
}

bool IncludeScan::IsInFolders(const std::string& name) {
  const auto [place, isNew] = inFolders_.try_emplace(name, false);
  if (!isNew) return place->second;
  const auto has = [&](const std::string& folder) { return IsExact(folder + name); };
  return place->second = std::any_of(folders_.begin(), folders_.end(), has) ||
                         std::any_of(systemFolders_.begin(), systemFolders_.end(), has);
}

void IncludeScan::Add(const std::string& source) {
  std::vector<std::string> includers;
  Follow(source, includers);
}

void IncludeScan::AddForced(const std::string& name, const std::string& folder) {
  if (IsAbsolute(name)) return Add(name);
  std::vector<std::string> includers{folder};
  Resolve({name, true}, includers);
}

void IncludeScan::Follow(const std::string& path, std::vector<std::string>& includers) {
  if (includers.size() > kDeepestInclude || !read_.insert(path).second) return;
  std::string bytes;
  if (!TryReadFile(path, bytes)) return;
  const ScannedText scanned = ScanSource(bytes);
  if (includers.empty()) {
    hasWideMain_ |= scanned.hasWideMain;
    hasGenericMain_ |= scanned.hasGenericMain;
  }
  hasOldLiterals_ |= scanned.hasOldLiterals;
  for (const std::string& library : scanned.libraries) {
    if (knownLibraries_.insert(library).second) libraries_.push_back(library);
  }
  includers.push_back(FolderPart(path));
  for (const ScannedText::Include& include : scanned.includes) Resolve(include, includers);
  includers.pop_back();
}

// The includer's folder, for quoted names those of the files that include the includer, then the listed
// folders. A name that is found as it is written is gcc's to find, whatever else differs in letter case only.
void IncludeScan::Resolve(const ScannedText::Include& include, std::vector<std::string>& includers) {
  const std::string& name = include.name;
  if (name.find('\0') != std::string::npos || IsAbsolute(name)) return;
  const std::string& own = includers.back();
  if (include.quoted && IsExact(own + name)) return Follow(own + name, includers);
  if (IsInFolders(name)) {
    const auto folder = std::find_if(folders_.begin(), folders_.end(),
                                     [&](const std::string& each) { return IsExact(each + name); });
    if (folder != folders_.end()) Follow(*folder + name, includers);
    return;
  }
  if (!resolved_.insert(include.quoted ? own + '\n' + name : name).second) return;
  std::vector<std::string> places;
  if (include.quoted) places.assign(includers.rbegin(), includers.rend());
  places.insert(places.end(), folders_.begin(), folders_.end());
  const std::size_t projectPlaces = places.size();
  places.insert(places.end(), systemFolders_.begin(), systemFolders_.end());
  for (std::size_t at = 0; at < places.size(); ++at) {
    std::string path = places[at] + name;
    if (!finder_.FindFile(path)) continue;
    const auto [known, isNew] = forwards_.emplace(name, ExpandPath("", path));
    if (!isNew && known->second != ExpandPath("", path)) ambiguous_.insert(name);
    if (at < projectPlaces) Follow(path, includers);
    return;
  }
}

std::string WriteForwards(const std::map<std::string, std::string>& forwards, const std::string& folder) {
  std::error_code ignored;
  if (forwards.empty()) {
    fs::remove_all(folder, ignored);
    return {};
  }
  std::string searched = folder;
  for (int depth = 0; depth < kDeepestParent; ++depth) searched += "/p";
  std::set<std::string> wanted;
  for (const auto& [name, target] : forwards) {
    const fs::path file = fs::path(searched + "/" + name).lexically_normal();
    if (!file.string().starts_with(folder + "/")) continue;  // it climbs higher than any tree is deep
    CreateFolders(file.parent_path().string());
    std::string text = "#include \"" + target + "\"\n";
    std::string old;
    if (!TryReadFile(file.string(), old) || old != text) {
      std::ofstream(file, std::ios::binary) << text;
    }
    wanted.insert(file.string());
  }
  for (const auto& entry : fs::recursive_directory_iterator(folder, ignored)) {
    if (entry.is_regular_file() && !wanted.contains(entry.path().string())) fs::remove(entry.path(), ignored);
  }
  return searched;
}

}  // namespace qx
