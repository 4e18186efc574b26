#include "host/settings/OptionsStore.h"

#include <algorithm>

#include "host/system/HostProgram.h"
#include "host/xml/XmlFile.h"
#include "platform/Environment.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

constexpr const char* kRoot = "Options";
constexpr const char* kHost = "Host";
constexpr const char* kSection = "Section";
constexpr const char* kKey = "key";
constexpr const char* kOption = "Option";
constexpr const char* kName = "name";

constexpr std::string_view kEmptyStore =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<Options version=\"1\"/>\n";

class StoreReader final : public Implements<IQXOptionsReader> {
 public:
  StoreReader(const OptionsStore& store, std::string section) : store_(store), section_(std::move(section)) {}
  std::string ReadString(const std::string& key, const std::string& defaultValue) override {
    return store_.Find(section_, key).value_or(defaultValue);
  }
  std::int32_t ReadInteger(const std::string& key, std::int32_t defaultValue) override {
    return ToInteger(store_.Find(section_, key).value_or("")).value_or(defaultValue);
  }

 private:
  const OptionsStore& store_;
  std::string section_;
};

class StoreWriter final : public Implements<IQXOptionsWriter> {
 public:
  StoreWriter(OptionsStore& store, std::string section) : store_(store), section_(std::move(section)) {}
  void WriteString(const std::string& key, const std::string& value) override {
    store_.Set(section_, key, value);
  }
  void WriteInteger(const std::string& key, std::int32_t value) override {
    store_.Set(section_, key, std::to_string(value));
  }

 private:
  OptionsStore& store_;
  std::string section_;
};

pugi::xml_node FindElement(const XmlFile& xml, std::string_view section) {
  if (section == OptionsStore::kHostSection) return xml.Root().child(kHost);
  return xml.FindChild(xml.Root(), kSection, kKey, section);
}

void PutInto(XmlFile& xml, std::string_view section, std::string_view name,
             const std::optional<std::string>& value) {
  pugi::xml_node place = FindElement(xml, section);
  if (!place) {
    if (!value) return;
    const bool host = section == OptionsStore::kHostSection;
    place = xml.Append(xml.Root(), host ? kHost : kSection);
    if (!host) xml.SetAttribute(place, kKey, section);
  }
  pugi::xml_node option = xml.FindChild(place, kOption, kName, name);
  if (!value) {
    if (option) xml.Remove(option);
    return;
  }
  if (option && xml.TextOf(option) == *value) return;
  if (!option) {
    option = xml.Append(place, kOption);
    xml.SetAttribute(option, kName, name);
  }
  xml.SetText(option, *value);
}

}  // namespace

std::string OptionsStore::DefaultFile() {
  const std::string named = ReadEnvironment("QXHOST_OPTIONS").value_or("");
  return named.empty() ? ConfigFolder() + "options.xml" : named;
}

void OptionsStore::Load() {
  if (file_.empty() || !FileExists(file_)) return;
  const std::string text = ReadFile(file_);
  const std::lock_guard guard(mutex_);
  Take(text);
}

void OptionsStore::Restore() {
  const std::lock_guard guard(mutex_);
  if (pending_.empty()) return;
  if (!file_.empty()) Take(FileExists(file_) ? ReadFile(file_) : std::string(kEmptyStore));
  pending_.clear();
}

// Puts the values of the file in the place of those in memory.
void OptionsStore::Take(const std::string& text) {
  const XmlFile xml = XmlFile::Parse(text, file_, kRoot);
  std::vector<Section> sections;
  for (const pugi::xml_node node : xml.Root().children()) {
    const bool host = std::string_view(node.name()) == kHost;
    if (!host && std::string_view(node.name()) != kSection) continue;
    Section section{host ? std::string(kHostSection) : xml.AttributeOf(node, kKey).value_or(""), {}};
    if (!host && section.key.empty()) xml.Complain(node, "<Section> without a key");
    for (const pugi::xml_node option : node.children(kOption)) {
      std::string name = xml.AttributeOf(option, kName).value_or("");
      if (name.empty()) xml.Complain(option, "<Option> without a name");
      section.values.emplace_back(std::move(name), xml.TextOf(option));
    }
    sections.push_back(std::move(section));
  }
  sections_ = std::move(sections);
}

OptionsStore::Section* OptionsStore::FindSection(std::string_view key) {
  const auto found =
      std::find_if(sections_.begin(), sections_.end(), [&](const Section& s) { return s.key == key; });
  return found == sections_.end() ? nullptr : &*found;
}

std::vector<std::pair<std::string, std::string>> OptionsStore::All(std::string_view section) const {
  const std::lock_guard guard(mutex_);
  const Section* found = const_cast<OptionsStore*>(this)->FindSection(section);
  return found == nullptr ? std::vector<std::pair<std::string, std::string>>() : found->values;
}

std::optional<std::string> OptionsStore::Find(std::string_view section, std::string_view name) const {
  const std::lock_guard guard(mutex_);
  const Section* found = const_cast<OptionsStore*>(this)->FindSection(section);
  if (found == nullptr) return std::nullopt;
  for (const auto& [known, value] : found->values) {
    if (known == name) return value;
  }
  return std::nullopt;
}

void OptionsStore::Put(std::string_view section, std::string_view name,
                       const std::optional<std::string>& value) {
  Section* place = FindSection(section);
  if (place == nullptr) place = &sections_.emplace_back(Section{std::string(section), {}});
  const auto found = std::find_if(place->values.begin(), place->values.end(),
                                  [&](const auto& entry) { return entry.first == name; });
  if (!value) {
    if (found != place->values.end()) place->values.erase(found);
  } else if (found != place->values.end()) {
    found->second = *value;
  } else {
    place->values.emplace_back(name, *value);
  }
}

void OptionsStore::Set(std::string_view section, std::string_view name, std::optional<std::string> value) {
  if (Find(section, name) == value) return;
  const std::lock_guard guard(mutex_);
  Put(section, name, value);
  pending_.push_back({std::string(section), std::string(name), std::move(value)});
}

bool OptionsStore::IsChanged() const {
  const std::lock_guard guard(mutex_);
  return !pending_.empty();
}

void OptionsStore::Save(std::chrono::milliseconds patience) {
  const std::lock_guard guard(mutex_);
  if (pending_.empty()) return;
  if (!file_.empty()) {
    if (const std::string folder = FolderPart(file_); !folder.empty()) CreateFolders(folder);
    const FileLock lock(file_, patience);
    XmlFile xml =
        XmlFile::Parse(FileExists(file_) ? ReadFile(file_) : std::string(kEmptyStore), file_, kRoot);
    for (const Change& change : pending_) PutInto(xml, change.section, change.name, change.value);
    const std::string text = xml.Text();
    Take(text);  // refuses what it could not read again
    ReplaceFile(file_, text);
  }
  pending_.clear();
}

InterfacePtr<IQXOptionsReader> OptionsStore::Reader(std::string section) const {
  return MakeInterface<StoreReader>(*this, std::move(section));
}

InterfacePtr<IQXOptionsWriter> OptionsStore::Writer(std::string section) {
  return MakeInterface<StoreWriter>(*this, std::move(section));
}

}  // namespace qx
