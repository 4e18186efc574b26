// The action made ready to run from a solution: which product builds it, in which configuration, with the numbers
// that its sources have now, and stamped only where stamping loses nothing.
#include <algorithm>
#include <array>
#include <optional>

#include "actions/Qxvsdotnetaction.h"
#include "actions/SolutionVersion.h"
#include "platform/Lines.h"
#include "platform/Nearest.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"
#include "plugin/Qxutils.h"
#include "projects/SolutionMap.h"
#include "solution/Vsnetsln.h"
#include "versioning/AssemblyAttributes.h"
#include "versioning/VersionBlock.h"

namespace qx {
namespace {

// What is built by default, the first that the solution has.
constexpr std::string_view kUsualConfigurations[] = {"Release|Mixed Platforms", "Release|Any CPU",
                                                     "Release|Win32", "Release"};

using Numbers = std::array<std::int32_t, 4>;

// "1.2.*" counts as 1.2.0.0; none for what is no version.
std::optional<Numbers> NumbersOf(std::string_view written) {
  Numbers numbers{};
  for (std::int32_t& number : numbers) {
    const std::size_t dot = written.find('.');
    const std::string_view part = TrimView(written.substr(0, dot));
    const std::optional<std::int32_t> value = part == "*" ? 0 : ToInteger(part);
    if (!value || *value < 0) return std::nullopt;
    number = *value;
    if (dot == std::string_view::npos) return numbers;
    written.remove_prefix(dot + 1);
  }
  return std::nullopt;
}

VersionNumbers AsVersion(const Numbers& n) { return {n[0], n[1], n[2], n[3]}; }

// With bars, as the action keeps it.
std::string AsWhole(const Numbers& numbers) {
  std::string whole = DottedVersion(AsVersion(numbers));
  std::replace(whole.begin(), whole.end(), '.', '|');
  return whole;
}

// A text of a file as a property holds it, in which a percent sign begins a variable.
std::string WithoutVariables(std::string_view text) {
  std::string out;
  for (const char c : text) out += c == '%' ? std::string("%%") : std::string(1, c);
  return out;
}

// What the sources of a solution say of versions.
struct SourceVersions {
  int infos = 0;                          // AssemblyInfo files
  std::vector<std::string> projects;      // whose AssemblyInfo file says an assembly version
  std::optional<Numbers> assembly, file;  // the highest
  int filesWithLineFeeds = 0;
  struct Script {
    std::string guid, path;
    VersionReading reading;
  };
  std::vector<Script> scripts;
};

bool EndsALineInLineFeed(std::string_view text) {
  for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1)) {
    if (at == 0 || text[at - 1] != '\r') return true;
  }
  return false;
}

void ReadInfo(const std::string& projectFile, const std::string& guid, SourceVersions& found) {
  std::string bytes, decoded;
  if (!TryReadFile(projectFile, bytes)) return;
  const std::string reference = AssemblyInfoReference(DecodeText(bytes, decoded));
  if (reference.empty() || !TryReadFile(ExpandRelativePath(FolderPart(projectFile), reference), bytes))
    return;
  ++found.infos;
  decoded.clear();
  const std::string_view text = DecodeText(bytes, decoded);
  if (EndsALineInLineFeed(text)) ++found.filesWithLineFeeds;
  const WrittenVersions versions = ReadWrittenVersions(text);
  const auto assembly = NumbersOf(versions.assembly), file = NumbersOf(versions.file);
  if (assembly) found.projects.push_back(guid);
  found.assembly = std::max(found.assembly, assembly);
  found.file = std::max(found.file, file);
}

// What stands behind a word that begins a line; empty: no line begins with it.
std::string_view BehindWord(std::string_view block, std::string_view word) {
  std::string_view found;
  ForEachLine(block, [&](std::string_view line) {
    line = TrimView(line);
    if (found.empty() && line.starts_with(word) && line.size() > word.size() && line[word.size()] <= ' ')
      found = TrimView(line.substr(word.size()));
  });
  return found;
}

// "0x2L" as its number; none for a name.
std::optional<std::uint32_t> HexNumber(std::string_view text) {
  if (!LowerCase(text).starts_with("0x")) return std::nullopt;
  std::uint32_t number = 0;
  for (std::size_t i = 2; i < text.size() && HexDigit(text[i]) >= 0; ++i)
    number = number * 16 + static_cast<std::uint32_t>(HexDigit(text[i]));
  return number;
}

// The reader of blocks passes over types and flags of one digit, which nobody may take from a script all the same.
void ReadShortForms(std::string_view block, VersionReading& reading) {
  constexpr std::uint32_t kPreRelease = 2, kSpecial = 0x20, kLibrary = 2;
  const std::string_view type = BehindWord(block, "FILETYPE");
  if (!type.empty()) reading.isDll = type.starts_with("VFT_DLL") || HexNumber(type) == kLibrary;
  if (const auto flags = HexNumber(BehindWord(block, "FILEFLAGS"))) {
    reading.flags = VersionFlags{(*flags & 1) != 0, (*flags & kPreRelease) != 0, (*flags & kSpecial) != 0,
                                 (*flags & 8) != 0};
  }
}

void ReadScript(const std::string& script, const std::string& guid, SourceVersions& found,
                std::vector<std::string>& warnings) {
  std::string bytes, decoded;
  if (script.empty() || !TryReadFile(script, bytes)) return;
  try {
    const std::string_view text = DecodeText(bytes, decoded);
    VersionReading reading = ReadVersionBlock(text, script);
    const VersionBlockPlace place = FindVersionBlock(text, script);
    ReadShortForms(text.substr(place.begin, place.end - place.begin), reading);
    if (!reading.hasBlock) return;
    if (EndsALineInLineFeed(text)) ++found.filesWithLineFeeds;
    found.scripts.push_back({guid, script, std::move(reading)});
  } catch (const std::exception& error) {
    warnings.push_back(script + " is left out of the stamping: " + error.what());
  }
}

SourceVersions ReadSources(IVSDotNetSolution& solution, std::vector<std::string>& warnings) {
  SourceVersions found;
  const std::string folder = FolderPart(solution.GetFileName());
  const auto projects = solution.GetProjects();
  for (int i = 0; i < projects->GetCount(); ++i) {
    const auto project = projects->GetItem(i);
    if (LowerCase(project->GetPath()).find("http://") == std::string::npos)
      ReadInfo(ExpandRelativePath(folder, project->GetPath()), project->GetGUID(), found);
    ReadScript(project->GetVersionInfoFile(), project->GetGUID(), found, warnings);
  }
  return found;
}

// Whether stamping gives the second script what it says already, but for the numbers.
bool SaysTheSame(const VersionReading& a, const VersionReading& b) {
  const auto strings = [](const VersionReading& reading) {
    std::vector<std::string> kept;
    for (const std::string& line : reading.keys) {
      const std::string key = line.substr(0, line.find('='));
      if (!SameText(key, "FileVersion") && !SameText(key, "ProductVersion")) kept.push_back(line);
    }
    std::sort(kept.begin(), kept.end());
    return kept;
  };
  return a.flags == b.flags && a.isDll == b.isDll && a.locale == b.locale && a.codePage == b.codePage &&
         strings(a) == strings(b);
}

std::string ChooseConfiguration(const SolutionMap& map, const FromFileRequest& request,
                                FromFileAnswer& answer) {
  if (!request.configuration.empty()) {
    const std::string found = FindConfiguration(map, request.configuration);
    if (!found.empty()) return found;
    throw Exception(request.file + " has no configuration " + Quoted(request.configuration) +
                    NameAdvice(request.configuration, map.configurations));
  }
  for (const std::string_view usual : kUsualConfigurations) {
    for (const std::string& name : map.configurations) {
      if (SameText(name, usual)) return name;
    }
  }
  if (!map.configurations.empty()) return map.configurations.front();
  answer.warnings.push_back(request.file + " has no configurations; the compiler gets an empty one");
  return {};
}

TVSDotNetVersion ChooseProduct(const SolutionMap& map, const std::string& number, const std::string& file) {
  if (const auto version = VersionOfFormat(map.format)) return *version;
  throw Exception(file + " is of format " + (number.empty() ? "without a number" : number) +
                  "; only 7.00, 8.00 and 9.00 are built, those of Visual Studio 2002, 2003 and 2005");
}

// Seen from the build project where the solution lies below it.
std::string PathFromProject(const FromFileRequest& request) {
  return request.file.starts_with(request.projectFolder) ? request.file.substr(request.projectFolder.size())
                                                         : request.file;
}

void Choose(TStringList& list, TVSDotNetBuildType& which, std::vector<std::string> ids, bool areAll) {
  which = areAll ? TVSDotNetBuildType::btAllProjects : TVSDotNetBuildType::btSelectedProjects;
  if (!areAll) list = TStringList(std::move(ids));
}

void StampAssemblies(TQXCustomVSDotNetAction& action, const SourceVersions& found, FromFileAnswer& answer) {
  if (found.projects.empty()) return;
  VSDotNetSettings& settings = action.Settings();
  const auto update = [&](AssemblyAttribute attribute) {
    settings.updateAttribute[static_cast<std::size_t>(attribute)] = true;
  };
  settings.updateAssemblyInfo = true;
  update(AssemblyAttribute::Version);
  action.SetAutoIncAssemblyBuildNo(true);
  if (found.file) {
    update(AssemblyAttribute::FileVersion);
    settings.linkAssemblyFileVersionInfo = found.file == found.assembly;
    if (!settings.linkAssemblyFileVersionInfo) action.SetAutoIncAssemblyFileBuildNo(true);
  }
  // A version that is appended may be there a second time, in a file that several projects share.
  const bool areAll = static_cast<int>(found.projects.size()) == found.infos;
  Choose(settings.assemblySelectedProjects, settings.applyAssemblyInfoTo, found.projects, areAll);
  answer.decisions.push_back("Stamps " + std::to_string(found.projects.size()) + " AssemblyInfo " +
                             (found.projects.size() == 1 ? "file" : "files") +
                             " and raises the build number with each run");
  if (!areAll) {
    answer.warnings.push_back(std::to_string(found.infos - static_cast<int>(found.projects.size())) +
                              " AssemblyInfo files say no version and are left out of the stamping");
  }
}

void StampScripts(TQXCustomVSDotNetAction& action, const SourceVersions& found, FromFileAnswer& answer) {
  if (found.scripts.empty()) return;
  VSDotNetSettings& settings = action.Settings();
  const VersionReading& first = found.scripts.front().reading;
  settings.updateWin32Resource = true;
  action.SetAutoIncBuild(true);
  action.SetLocale(first.locale.value_or(0));
  action.SetCodePage(first.codePage.value_or(0));
  action.SetIsDLL(first.isDll.value_or(false));
  if (first.flags) {
    action.SetIsDebug(first.flags->isDebug);
    action.SetIsPreRelease(first.flags->isPreRelease);
    action.SetIsSpecial(first.flags->isSpecial);
  }
  std::vector<std::string> keys;
  for (const std::string& line : first.keys) keys.push_back(WithoutVariables(line));
  action.SetVersionInfoKeys(JoinLines(keys));

  std::vector<std::string> ids;
  for (const SourceVersions::Script& script : found.scripts) {
    if (SaysTheSame(first, script.reading)) {
      ids.push_back(script.guid);
    } else {
      answer.warnings.push_back(script.path +
                                " has strings of its own, which stamping would take away: it is left "
                                "out; an action of its own can stamp it");
    }
  }
  const bool areAll = ids.size() == found.scripts.size();
  answer.decisions.push_back("Stamps " + std::to_string(ids.size()) + " version " +
                             (ids.size() == 1 ? "script" : "scripts") + " with the strings of " +
                             found.scripts.front().path + " and raises the build number with each run");
  Choose(settings.resourceSelectedProjects, settings.applyResourceInfoTo, std::move(ids), areAll);
}

}  // namespace

bool TQXCustomVSDotNetAction::TakesFile(const std::string& file) { return HasExtension(file, ".sln"); }

FromFileAnswer TQXCustomVSDotNetAction::SetUpFromFile(const FromFileRequest& request) {
  FromFileAnswer answer;
  const std::string bytes = ReadFile(request.file);
  std::string decoded;
  const std::string_view text = DecodeText(bytes, decoded);
  const SolutionMap map = ReadSolutionMap(text);
  const std::string number = FormatNumberOf(text);
  settings_.vstudioVersion = ChooseProduct(map, number, request.file);
  const std::string configuration = ChooseConfiguration(map, request, answer);
  settings_.solutionConfiguration = WithoutVariables(configuration);
  SetSolution(WithoutVariables(PathFromProject(request)));
  const std::string_view product =
      ValueNames<TVSDotNetVersion>[static_cast<std::size_t>(settings_.vstudioVersion)];
  answer.decisions = {"Solution: " + PathFromProject(request) + ", of format " + number,
                      "VStudioVersion: " + std::string(product),
                      "SolutionConFiguration: " + (configuration.empty() ? "none" : configuration)};

  const InterfacePtr<IVSDotNetSolution> solution = OpenSolution(request.file);
  const SourceVersions found = ReadSources(*solution, answer.warnings);
  answer.filesWithLineFeeds = found.filesWithLineFeeds;
  if (found.assembly) {
    SetAssemblyVersion(AsWhole(*found.assembly));
    // Where no source says a file version, compilers take the assembly's.
    SetAssemblyFileVersion(AsWhole(found.file ? *found.file : *found.assembly));
    answer.decisions.push_back("AssemblyVersion: " + DottedVersion(assemblyVersion_.whole) +
                               ", file version " + DottedVersion(assemblyFileVersion_.whole) +
                               ": the highest in " + std::to_string(found.infos) + " AssemblyInfo " +
                               (found.infos == 1 ? "file" : "files"));
  }
  if (!found.scripts.empty() && found.scripts.front().reading.numbers) {
    record_.numbers = AsVersion(*found.scripts.front().reading.numbers);
    answer.decisions.push_back("FileVersion: " + DottedVersion(record_.numbers) + ", of " +
                               found.scripts.front().path);
  }
  if (!request.stamps) return answer;
  StampAssemblies(*this, found, answer);
  StampScripts(*this, found, answer);
  if (!settings_.updateAssemblyInfo && !settings_.updateWin32Resource)
    answer.warnings.push_back("Nothing is stamped: no source of the solution says a version");
  return answer;
}

}  // namespace qx
