// Names and values of the host's settings.
#include "host/runtime/HostSettings.h"

#include "platform/Paths.h"
#include "platform/Registry.h"
#include "platform/Texts.h"

namespace qx {
namespace {

constexpr std::string_view kFramework = "Framework.";
constexpr std::string_view kShare = "Unc.";
constexpr std::string_view kRegistry = "Registry";
constexpr std::string_view kWebDavTimeout = "WebDavTimeout";
constexpr std::int32_t kLongestTimeout = 86400;

bool BeginsWith(std::string_view name, std::string_view prefix) {
  return SameText(name.substr(0, prefix.size()), prefix);
}

// "\\server\share", without anything behind it.
bool IsShare(std::string_view text) {
  if (!text.starts_with("\\\\")) return false;
  text.remove_prefix(2);
  const std::size_t delimiter = text.find_first_of("\\/");
  if (delimiter == 0 || delimiter == std::string_view::npos) return false;
  const std::string_view share = text.substr(delimiter + 1);
  return text[delimiter] == '\\' && !share.empty() && share.find_first_of("\\/") == std::string_view::npos;
}

// The name as it is stored; empty: there is no such setting.
std::string StoredName(std::string_view name) {
  if (SameText(name, kRegistry)) return std::string(kRegistry);
  if (SameText(name, kWebDavTimeout)) return std::string(kWebDavTimeout);
  if (BeginsWith(name, kFramework) && IsFrameworkVersion(name.substr(kFramework.size()))) {
    return std::string(kFramework) + LowerCase(name.substr(kFramework.size()));
  }
  if (BeginsWith(name, kShare) && IsShare(name.substr(kShare.size()))) {
    return std::string(kShare) + std::string(name.substr(kShare.size()));
  }
  return {};
}

// What is no number of seconds is as good as none.
int ReadTimeout(const std::string& value) {
  const auto seconds = ToInteger(value);
  return seconds && *seconds > 0 && *seconds <= kLongestTimeout ? *seconds : HostSettings().webDavTimeout;
}

HostSettings& Current() {
  static HostSettings settings;
  return settings;
}

}  // namespace

bool IsFrameworkVersion(std::string_view text) {
  return text.size() > 1 && SameText(text.substr(0, 1), "v") &&
         text.substr(1).find_first_not_of("0123456789.") == std::string_view::npos && text[1] != '.' &&
         text.back() != '.';
}

std::string CheckHostSettingName(std::string_view name) {
  std::string stored = StoredName(name);
  if (!stored.empty()) return stored;
  throw Exception("There is no host setting \"" + std::string(name) +
                  "\"; the names are Framework.VERSION (Framework.v2.0), Unc.\\\\server\\share, Registry and "
                  "WebDavTimeout");
}

bool IsHostSettingName(std::string_view name) {
  return SameText(name, kRegistry) || SameText(name, kWebDavTimeout) || BeginsWith(name, kFramework) ||
         BeginsWith(name, kShare);
}

HostSettings HostSettings::From(std::span<const std::pair<std::string, std::string>> values) {
  HostSettings settings;
  for (const auto& [given, value] : values) {
    const std::string name = StoredName(given);
    if (value.empty() || name.empty()) continue;
    if (name == kRegistry) {
      settings.registryFile = value;
    } else if (name == kWebDavTimeout) {
      settings.webDavTimeout = ReadTimeout(value);
    } else if (name.starts_with(kFramework)) {
      settings.frameworks[name.substr(kFramework.size())] = value;
    } else {
      settings.shares[LowerCase(name.substr(kShare.size()))] = value;
    }
  }
  return settings;
}

void ApplyHostSettings(HostSettings settings) {
  SetRegistryFile(settings.registryFile);
  SetShares(settings.shares);
  Current() = std::move(settings);
}

const HostSettings& CurrentHostSettings() { return Current(); }

}  // namespace qx
