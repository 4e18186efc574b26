#include "engine/vc/BuildRecord.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/Texts.h"
#include "platform/files/Files.h"

namespace qx {
namespace {

constexpr std::string_view kHead = "build record 1";
constexpr std::int64_t kNanoseconds = 1'000'000'000;

std::optional<std::string> Variable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

// Names and values stand one a line.
bool HasLineEnd(std::string_view text) { return text.find_first_of("\r\n") != std::string_view::npos; }

std::string_view Word(std::string_view& line) {
  const std::size_t end = std::min(line.find(' '), line.size());
  const std::string_view word = line.substr(0, end);
  line.remove_prefix(std::min(end + 1, line.size()));
  return word;
}

}  // namespace

FileStamp StampOf(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return {};
  return {status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec, status.st_size};
}

std::int64_t TimeOfFileMadeNow(const std::string& path) {
  RemoveFile(path);
  ReplaceFile(path, {});
  return StampOf(path).time;
}

bool BuildRecord::IsCurrent() const {
  return std::all_of(environment.begin(), environment.end(),
                     [](const auto& each) { return Variable(each.first) == each.second; }) &&
         std::all_of(files.begin(), files.end(),
                     [](const auto& each) { return StampOf(each.first) == each.second; });
}

void BuildRecord::Save(const std::string& path) const {
  std::string text(kHead);
  const auto line = [&](std::string_view word, const std::string& value) {
    ((text += '\n') += word) += ' ' + value;
  };
  line("key", key);
  for (const auto& [name, value] : environment)
    line(value ? "set" : "unset", value ? name + "=" + *value : name);
  for (const auto& [name, stamp] : files) {
    if (HasLineEnd(name)) return;  // such a project is looked at anew each time
    line("file", std::to_string(stamp.time) + ' ' + std::to_string(stamp.size) + ' ' + name);
  }
  line("output", output);
  line("import", importLibrary);
  for (const std::string& library : libraries) line("library", library);
  ReplaceFile(path, text + "\n");
}

std::optional<BuildRecord> BuildRecord::Load(const std::string& path) {
  std::string bytes;
  if (!TryReadFile(path, bytes) || !bytes.starts_with(kHead)) return std::nullopt;
  BuildRecord record;
  ForEachLine(bytes, [&](std::string_view line) {
    const std::string_view word = Word(line);
    const std::string value(line);
    if (word == "key") record.key = value;
    if (word == "unset") record.environment[value] = std::nullopt;
    if (word == "set")
      record.environment[value.substr(0, value.find('='))] = value.substr(value.find('=') + 1);
    if (word == "output") record.output = value;
    if (word == "import") record.importLibrary = value;
    if (word == "library") record.libraries.push_back(value);
    if (word != "file") return;
    FileStamp stamp;
    stamp.time = std::strtoll(std::string(Word(line)).c_str(), nullptr, 10);
    stamp.size = std::strtoll(std::string(Word(line)).c_str(), nullptr, 10);
    record.files.emplace(line, stamp);
  });
  return record;
}

// "target: a b\ c \" with a backslash before a blank or a line end, and "$$" for "$".
std::vector<std::string> DependenciesIn(std::string_view text) {
  std::vector<std::string> found;
  std::string name;
  std::size_t at = text.find(": ");
  at = at == std::string_view::npos ? text.size() : at + 1;
  const auto finish = [&] {
    if (!name.empty()) found.push_back(std::exchange(name, {}));
  };
  for (; at < text.size(); ++at) {
    const char c = text[at];
    const char next = at + 1 < text.size() ? text[at + 1] : '\0';
    if (c == '\\' && (next == ' ' || next == '#')) {
      name += next;
      ++at;
    } else if ((c == '\\' && (next == '\n' || next == '\r')) || c == ' ' || c == '\n' || c == '\r' ||
               c == '\t') {
      finish();
    } else {
      name += c;
      if (c == '$' && next == '$') ++at;
    }
  }
  finish();
  return found;
}

}  // namespace qx
