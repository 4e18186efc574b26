// The action's version numbers as a person tells them: dotted, all three at once.
#include <algorithm>

#include "actions/Qxvsdotnetaction.h"
#include "platform/Texts.h"

namespace qx {
namespace {

constexpr const char* kAssemblyVersion = "AssemblyVersion";
constexpr const char* kAssemblyFileVersion = "AssemblyFileVersion";
constexpr const char* kFileVersion = "FileVersion";  // of resource scripts, four properties

// One limit for all of them, so that they can stay the same.
std::int32_t LargestPart(const VSDotNetSettings& settings) {
  return settings.updateAssemblyInfo ? kLargestAssemblyPart : kLargestFilePart;
}

VersionParts AsParts(const VersionNumbers& numbers) {
  return {std::to_string(numbers.major), std::to_string(numbers.minor), std::to_string(numbers.release),
          std::to_string(numbers.build)};
}

}  // namespace

std::vector<ActionVersion> TQXCustomVSDotNetAction::GetVersions() {
  return {{kAssemblyVersion, DottedVersion(assemblyVersion_.whole)},
          {kAssemblyFileVersion, DottedVersion(assemblyFileVersion_.whole)},
          {kFileVersion, DottedVersion(record_.numbers)}};
}

void TQXCustomVSDotNetAction::SetVersions(const std::string& dotted) {
  const auto [major, minor, build, revision] = ReadDottedVersion(dotted, LargestPart(settings_));
  record_.numbers = {major, minor, build, revision};
  const std::string whole = JoinVersion(AsParts(record_.numbers));
  SetAssemblyVersion(whole);
  SetAssemblyFileVersion(whole);
  UpdateFileVersion();
}

void TQXCustomVSDotNetAction::BumpVersions(VersionPart part) {
  const auto bumped = [&](const VersionParts& parts, const char* name) {
    return BumpedVersion(parts, part, LargestPart(settings_), name);
  };
  const VersionParts assembly = bumped(assemblyVersion_.parts, kAssemblyVersion);
  const VersionParts file = bumped(assemblyFileVersion_.parts, kAssemblyFileVersion);
  const VersionParts resource = bumped(AsParts(record_.numbers), kFileVersion);
  const auto number = [](const std::string& text) { return ToInteger(text).value_or(0); };
  SetAssemblyVersion(JoinVersion(assembly));
  SetAssemblyFileVersion(JoinVersion(file));
  record_.numbers = {number(resource.major), number(resource.minor), number(resource.build),
                     number(resource.revision)};
  UpdateFileVersion();
}

std::string TQXCustomVSDotNetAction::WarnOfText(const std::string& property, const std::string& text) {
  if (property != kAssemblyVersion && property != kAssemblyFileVersion) return {};
  if (!IsDottedWithoutBars(text)) return {};
  std::string meant = text;
  std::replace(meant.begin(), meant.end(), '.', '|');
  return property + ": " + Quoted(text) +
         " has no \"|\" between its parts and counts as the major part alone; " + Quoted(meant) + " is meant";
}

}  // namespace qx
