// The options store: one XML file with a section for each package's options object, by its option key, and
// one for the host's own settings. Several processes may save at once: each writes only the values that it
// changed, into the file as it then stands. What the host does not know in it stays.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "plugin/Qxoptions.h"

namespace qx {

class OptionsStore {
 public:
  // The section of the host's own settings (HostSettings.h).
  static constexpr std::string_view kHostSection = "";

  // The store of this user: $QXHOST_OPTIONS, else options.xml in the configuration folder (HostProgram.h).
  static std::string DefaultFile();

  // An empty store that belongs to a file, which need not exist; nothing is read before Load.
  explicit OptionsStore(std::string file) : file_(std::move(file)) {}
  // An empty one without a file, for tests: Save only forgets what is pending.
  OptionsStore() = default;

  // Reads the file; one that does not exist is an empty store. Raises Exception naming the file, and the line.
  void Load();
  const std::string& File() const { return file_; }

  // The value, or nothing. Names of sections and values are exact. Safe from any thread, as everything below.
  std::optional<std::string> Find(std::string_view section, std::string_view name) const;
  // All values of a section, in the order of the file.
  std::vector<std::pair<std::string, std::string>> All(std::string_view section) const;

  // Kept in memory until Save; an equal value is no change. Nothing: the value is taken out.
  void Set(std::string_view section, std::string_view name, std::optional<std::string> value);
  bool IsChanged() const;
  // Reads the file again under its lock, puts the changes in, replaces it atomically. Waits as long as
  // `patience` for another process that saves, and raises FileInUse when that one still does; raises another
  // Exception naming the file for all else. The changes are then still pending.
  void Save(std::chrono::milliseconds patience = std::chrono::seconds(10));
  // Forgets the changes and reads the file again; as Load.
  void Restore();

  // The contract's views of one section. They share nothing but the store, which outlives them.
  InterfacePtr<IQXOptionsReader> Reader(std::string section) const;
  InterfacePtr<IQXOptionsWriter> Writer(std::string section);

 private:
  struct Section {
    std::string key;
    std::vector<std::pair<std::string, std::string>> values;
  };
  struct Change {
    std::string section;
    std::string name;
    std::optional<std::string> value;
  };
  Section* FindSection(std::string_view key);
  void Put(std::string_view section, std::string_view name, const std::optional<std::string>& value);
  void Take(const std::string& text);

  std::string file_;
  mutable std::mutex mutex_;
  std::vector<Section> sections_;
  std::vector<Change> pending_;  // in the order they were made
};

}  // namespace qx
