// Names and values of the host's settings, all of them by the table.
#include "host/settings/HostSettings.h"

#include <algorithm>
#include <array>
#include <optional>

#include "host/settings/Engine.h"
#include "platform/LineEnds.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/registry/Registry.h"

namespace qx {
namespace {

std::string VersionAsStored(std::string_view key) {
  return IsFrameworkVersion(key) ? LowerCase(key) : std::string();
}

// "\\server\share", without anything behind it.
std::string ShareAsStored(std::string_view key) {
  if (!key.starts_with("\\\\")) return {};
  const std::string_view text = key.substr(2);
  const std::size_t delimiter = text.find_first_of("\\/");
  if (delimiter == 0 || delimiter == std::string_view::npos) return {};
  const std::string_view share = text.substr(delimiter + 1);
  const bool good =
      text[delimiter] == '\\' && !share.empty() && share.find_first_of("\\/") == std::string_view::npos;
  return good ? std::string(key) : std::string();
}

constexpr std::array<std::string_view, 8> kSkippable{"vb",  "jsharp", "setup",   "web",
                                                     "mfc", "atl",    "managed", "other"};

constexpr std::array<std::string_view, 2> kLineEnds{"crlf", "keep"};

constexpr std::array<std::string_view, 3> kChecks{"fail", "warn", "off"};

constexpr std::array kRows{
    HostSettingRow{"Framework.", "FOLDER",
                   TextByKey{&HostSettings::frameworks, VersionAsStored, "VERSION", "Framework.v2.0"},
                   "the folder that holds MSBuild.exe for a framework version"},
    HostSettingRow{
        "Unc.", "FOLDER",
        TextByKey{&HostSettings::shares, ShareAsStored, "\\\\SERVER\\SHARE", "Unc.\\\\server\\share"},
        "where a network share is mounted (outside Windows)"},
    HostSettingRow{"Registry", "FILE", ExistingFile{&HostSettings::registryFile},
                   "a .reg export that stands in for the registry (outside Windows)"},
    HostSettingRow{
        "WebDavTimeout", "SECONDS",
        WholeNumber{&HostSettings::webDavTimeout, 1, 86400, "a whole number of seconds, a day's at most"},
        "how long a web server may keep silent before a transfer fails"},
    HostSettingRow{
        "WebDavLimit", "SECONDS",
        WholeNumber{&HostSettings::webDavLimit, 1, 86400, "a whole number of seconds, a day's at most"},
        "how long one transfer to or from a web server may take in all"},
    HostSettingRow{
        "CheckBuilt", "WHAT", OneWord{&HostSettings::checkBuilt, kChecks},
        "what becomes of a run that succeeded but left a program missing, stale or of another version: fail, "
        "warn, or off: nobody looks"},
    HostSettingRow{"History", "N",
                   WholeNumber{&HostSettings::history, 0, 10000, "a number of runs from 0 to 10000"},
                   "of how many runs the files are kept that they changed, for qxhost restore; 0 for none"},
    HostSettingRow{"LineEnds", "WHICH", OneWord{&HostSettings::lineEnds, kLineEnds},
                   "which line ends stamped files get: crlf throughout, or keep: each its own"},
    HostSettingRow{
        "Engine.Launcher", "PROGRAM", AnyText{&HostSettings::engineLauncher},
        "what stands before every C and C++ compile, as ccache, distcc or icecc (outside Windows)"},
    HostSettingRow{
        "Engine.Jobs", "N", WholeNumber{&HostSettings::engineJobs, 0, 1000, "a number from 0 to 1000"},
        "how many compilers run at a time, 0 for as many as there are processors (outside Windows)"},
    HostSettingRow{
        "Engine.Skip", "KIND,...", SomeWords{&HostSettings::engineSkip, kSkippable},
        "projects of these kinds that cannot be built are skipped with a warning instead of failed: vb, "
        "jsharp, setup, web, mfc, atl, managed, other (outside Windows)"},
};

// A name that was found in the table.
struct Found {
  const HostSettingRow* row = nullptr;
  std::string key;  // as it is stored; empty where the row has none
  std::string StoredName() const { return std::string(row->name) + key; }
};

std::optional<Found> FindSetting(std::string_view name) {
  for (const HostSettingRow& row : kRows) {
    const TextByKey* keyed = std::get_if<TextByKey>(&row.value);
    if (keyed == nullptr) {
      if (SameText(name, row.name)) return Found{&row, {}};
    } else if (SameText(name.substr(0, row.name.size()), row.name)) {
      std::string key = keyed->keyAsStored(name.substr(row.name.size()));
      if (!key.empty()) return Found{&row, std::move(key)};
    }
  }
  return std::nullopt;
}

// The word as the list has it; nothing when it is none of them.
std::optional<std::string> FindWord(std::span<const std::string_view> words, std::string_view given) {
  const auto found =
      std::find_if(words.begin(), words.end(), [&](std::string_view word) { return SameText(word, given); });
  return found == words.end() ? std::nullopt : std::optional(std::string(*found));
}

std::optional<std::vector<std::string>> FindWords(std::span<const std::string_view> words,
                                                  std::string_view given) {
  std::vector<std::string> all;
  while (true) {
    const std::size_t comma = given.find(',');
    const auto word = FindWord(words, Trim(given.substr(0, comma)));
    if (!word) return std::nullopt;
    all.push_back(*word);
    if (comma == std::string_view::npos) return all;
    given.remove_prefix(comma + 1);
  }
}

std::string Joined(std::span<const std::string> items, std::string_view between,
                   std::string_view beforeLast) {
  std::string text;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i > 0) text += i + 1 == items.size() ? beforeLast : between;
    text += items[i];
  }
  return text;
}

std::string Listed(std::span<const std::string_view> words, std::string_view beforeLast) {
  return Joined(std::vector<std::string>(words.begin(), words.end()), ", ", beforeLast);
}

// How each kind fills its field. What it cannot take it leaves.
struct Fill {
  HostSettings& settings;
  const std::string& key;
  const std::string& value;

  void operator()(const AnyText& text) const { settings.*text.field = value; }
  void operator()(const ExistingFile& file) const { settings.*file.field = value; }
  void operator()(const WholeNumber& number) const {
    const auto given = ToInteger(value);
    if (given && *given >= number.least && *given <= number.most) settings.*number.field = *given;
  }
  void operator()(const OneWord& word) const {
    if (const auto given = FindWord(word.words, value)) settings.*word.field = *given;
  }
  void operator()(const SomeWords& words) const {
    if (const auto given = FindWords(words.words, value)) settings.*words.field = *given;
  }
  void operator()(const TextByKey& text) const { (settings.*text.field)[LowerCase(key)] = value; }
};

// How each kind takes a value that somebody sets: as it is stored, or an exception.
struct Check {
  std::string_view name;
  const std::string& value;

  std::string operator()(const AnyText&) const { return value; }
  std::string operator()(const TextByKey&) const { return value; }
  std::string operator()(const ExistingFile&) const {
    std::string path = ExpandPath("", value);
    if (!FileExists(path)) throw Exception(std::string(name) + ": there is no file " + path);
    return path;
  }
  std::string operator()(const WholeNumber& number) const {
    const auto given = ToInteger(value);
    if (!given || *given < number.least || *given > number.most) throw Refusal(number.described);
    return value;
  }
  std::string operator()(const OneWord& word) const {
    const auto given = FindWord(word.words, value);
    if (!given) throw Refusal(Listed(word.words, " or "));
    return *given;
  }
  std::string operator()(const SomeWords& words) const {
    const auto given = FindWords(words.words, value);
    if (!given) throw Refusal("words with commas between them, of " + Listed(words.words, " and "));
    return Joined(*given, ",", ",");
  }

 private:
  Exception Refusal(std::string_view wanted) const {
    return Exception(std::string(name) + " takes " + std::string(wanted) + ", not \"" + value + "\"");
  }
};

// What stands in a field that nobody set, for help; empty: nothing worth telling.
std::string DefaultOf(const HostValue& value) {
  const HostSettings untouched;
  if (const auto* number = std::get_if<WholeNumber>(&value)) return std::to_string(untouched.*number->field);
  if (const auto* word = std::get_if<OneWord>(&value)) return untouched.*word->field;
  return {};
}

std::string NameInHelp(const HostSettingRow& row) {
  const TextByKey* keyed = std::get_if<TextByKey>(&row.value);
  return std::string(row.name) + std::string(keyed == nullptr ? "" : keyed->shown);
}

std::string ExampleName(const HostSettingRow& row) {
  const TextByKey* keyed = std::get_if<TextByKey>(&row.value);
  return std::string(keyed == nullptr ? row.name : keyed->example);
}

// With what stands for the key, where the example does not show it: "Framework.VERSION (Framework.v2.0)".
std::string NameInComplaint(const HostSettingRow& row) {
  const std::string example = ExampleName(row);
  const std::string form = NameInHelp(row);
  return SameText(form, example) ? example : form + " (" + example + ")";
}

// Packages ask for frameworks and web clients by functions that take no host, so the process keeps by which
// settings those answer. They belong to whoever made the HostSettingsInUse.
constinit const HostSettings* inUse = nullptr;

}  // namespace

std::span<const HostSettingRow> HostSettingRows() { return kRows; }

bool IsFrameworkVersion(std::string_view text) {
  return text.size() > 1 && SameText(text.substr(0, 1), "v") &&
         text.substr(1).find_first_not_of("0123456789.") == std::string_view::npos && text[1] != '.' &&
         text.back() != '.';
}

std::string HostSettingsHelp() {
  std::string text;
  for (const HostSettingRow& row : kRows) {
    const std::string untouched = DefaultOf(row.value);
    text.append(NameInHelp(row)).append("=").append(row.placeholder).append(": ").append(row.help);
    text.append(untouched.empty() ? "" : " (default: " + untouched + ")").append(".\n");
  }
  return text;
}

std::vector<std::string> HostSettingNames() {
  std::vector<std::string> names;
  for (const HostSettingRow& row : kRows) names.push_back(ExampleName(row));
  return names;
}

std::string CheckHostSettingName(std::string_view name) {
  if (const auto found = FindSetting(name)) return found->StoredName();
  std::vector<std::string> names;
  for (const HostSettingRow& row : kRows) names.push_back(NameInComplaint(row));
  throw Exception("There is no host setting \"" + std::string(name) + "\"; the names are " +
                  Joined(names, ", ", " and "));
}

bool IsHostSettingName(std::string_view name) {
  return std::any_of(kRows.begin(), kRows.end(), [&](const HostSettingRow& row) {
    const std::size_t point = row.name.find('.');
    if (point == std::string_view::npos) return SameText(name, row.name);
    return SameText(name.substr(0, point + 1), row.name.substr(0, point + 1));
  });
}

std::string CheckHostSettingValue(const HostSettingRow& row, const std::string& value) {
  return std::visit(Check{row.name, value}, row.value);
}

std::string CheckHostSettingValue(std::string_view storedName, const std::string& value) {
  const auto found = FindSetting(storedName);
  return found ? CheckHostSettingValue(*found->row, value) : value;
}

HostSettings HostSettings::From(std::span<const std::pair<std::string, std::string>> values) {
  HostSettings settings;
  for (const auto& [name, value] : values) {
    const auto found = FindSetting(name);
    if (value.empty() || !found) continue;
    std::visit(Fill{settings, found->key, value}, found->row->value);
  }
  return settings;
}

HostSettingsInUse::HostSettingsInUse(HostSettings settings) : settings_(std::move(settings)) {
  if (settings_.registryFile.empty()) {
    SetRegistryText(EngineRegistry(InstalledEngineFolder()));
  } else {
    SetRegistryFile(settings_.registryFile);
  }
  ApplyEngineSettings({settings_.engineLauncher,
                       settings_.engineJobs > 0 ? std::to_string(settings_.engineJobs) : "",
                       Joined(settings_.engineSkip, ",", ",")});
  SetShares(settings_.shares);
  SetLineEnds(settings_.lineEnds == "keep" ? LineEnds::Keep : LineEnds::CrLf);
  inUse = &settings_;
}

HostSettingsInUse::~HostSettingsInUse() {
  inUse = nullptr;
  SetLineEnds(LineEnds::CrLf);
  SetShares({});
  ApplyEngineSettings({});
  SetRegistryFile("");
}

const HostSettings& CurrentHostSettings() {
  static const HostSettings unset;
  return inUse == nullptr ? unset : *inUse;
}

}  // namespace qx
