// The host's own settings, kept in the options store beside the packages'. One table says all about each: its
// name, what it may be, how it is explained, and where a run finds it. A new setting is a row of that table
// and the field that it fills.
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "plugin/Qxtypes.h"

namespace qx {

// What the settings come to. A field that nobody set has its value from here.
struct HostSettings {
  // By version text in lower case ("v2.0"): the folder that holds MSBuild.exe.
  std::map<std::string, std::string> frameworks;
  // By "\\server\share" in lower case: where it is mounted. Used outside Windows.
  std::map<std::string, std::string> shares;
  // A .reg export; empty: the host's own registry, which knows the engine. Used outside Windows.
  std::string registryFile;
  // Seconds that a web server may keep silent before a transfer fails.
  int webDavTimeout = 60;
  // Seconds that one transfer may take in all.
  int webDavLimit = 600;
  // What a run does that succeeded without making every program as it should: fail, warn, or off, where nobody
  // looks.
  std::string checkBuilt = "fail";
  // Of how many runs the files are kept that they changed, so that they can be had back; 0: of none.
  int history = 20;
  // Which line ends stamped files get: crlf throughout, or keep: each its own.
  std::string lineEnds = "crlf";
  // Of the engine (Engine.h), outside Windows: what stands before every C and C++ compile; how many compilers
  // run at a time, 0 for as many as there are processors; which projects are skipped where they cannot be built.
  std::string engineLauncher;
  int engineJobs = 0;
  std::vector<std::string> engineSkip;

  // From the names and values of the store. An empty value, or one that the setting cannot have, is as good
  // as none; unknown names are passed over, for another version of the host may know them.
  static HostSettings From(std::span<const std::pair<std::string, std::string>> values);
};

// What a setting may be, and the field it fills.
struct AnyText {
  std::string HostSettings::*field;
};
// Stored as an absolute path; has to be there when it is set.
struct ExistingFile {
  std::string HostSettings::*field;
};
struct WholeNumber {
  int HostSettings::*field;
  int least;
  int most;
  std::string_view described;  // "a whole number of seconds, a day's at most"
};
// One of some words, in the letter case of the list.
struct OneWord {
  std::string HostSettings::*field;
  std::span<const std::string_view> words;
};
// Several of some words with commas between them, each in the letter case of the list.
struct SomeWords {
  std::vector<std::string> HostSettings::*field;
  std::span<const std::string_view> words;
};
// A text by a key that follows the setting's name.
struct TextByKey {
  std::map<std::string, std::string> HostSettings::*field;  // by the key in lower case
  std::string (*keyAsStored)(std::string_view key);         // empty: that is no key
  std::string_view shown;                                   // the key as help shows it: "VERSION"
  std::string_view example;                                 // a name with a key, for complaints
};
using HostValue = std::variant<AnyText, ExistingFile, WholeNumber, OneWord, SomeWords, TextByKey>;

struct HostSettingRow {
  std::string_view name;         // as it is stored; with a point at its end when a key follows
  std::string_view placeholder;  // of its value: "SECONDS"
  HostValue value;
  std::string_view help;  // what the setting is, in one line
};
std::span<const HostSettingRow> HostSettingRows();

// Each setting in a line of its own: how it is set, what it is, and its number or word when nobody sets it.
std::string HostSettingsHelp();
// A name of each, to find the one that was meant.
std::vector<std::string> HostSettingNames();

// The name in the form in which it is stored ("Framework.v2.0", "Unc.\\server\share", "Registry"), its first
// part in any letter case. Raises Exception for any other name, which tells what names there are.
std::string CheckHostSettingName(std::string_view name);
// Whether the name is meant for the host, right or wrong: it is a setting's or begins like one's up to the
// point ("Framework.", "Unc.").
bool IsHostSettingName(std::string_view name);

// The value in the form in which it is stored. Raises Exception that says what the setting takes.
std::string CheckHostSettingValue(const HostSettingRow& row, const std::string& value);
// The same for a name in its stored form.
std::string CheckHostSettingValue(std::string_view storedName, const std::string& value);

// "v" and digits with points between them: nothing that could lead into another folder.
bool IsFrameworkVersion(std::string_view text);

// While one is alive, the framework table, the registry, the network shares and the web clients of this
// process answer by its settings. One at a time; made before the threads that ask, and gone after them.
class HostSettingsInUse {
 public:
  // Raises Exception when the registry's file cannot be read.
  explicit HostSettingsInUse(HostSettings settings);
  ~HostSettingsInUse();
  HostSettingsInUse(const HostSettingsInUse&) = delete;
  HostSettingsInUse& operator=(const HostSettingsInUse&) = delete;

 private:
  HostSettings settings_;
};

// Those in use, or those of a host that nobody has set up.
const HostSettings& CurrentHostSettings();

}  // namespace qx
