#include "built/BuiltPrograms.h"

#include <algorithm>
#include <array>
#include <map>

#include "built/WrittenSources.h"
#include "platform/Nearest.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"
#include "plugin/Qxtypes.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

using Answer = OutputPlace::Answer;

constexpr std::array<std::string_view, 6> kStates = {"ok",      "missing", "stale",
                                                     "differs", "skipped", "unknown"};

// What is compared: a version as the sources have it, and the program's.
struct Comparison {
  const char* what;
  WrittenVersion written;
  std::optional<BinaryVersion> found;
};

std::string Dotted(const std::optional<BinaryVersion>& numbers) {
  return numbers ? DottedVersion(*numbers) : "";
}

void Say(BuiltProgram& program, BuiltState state, std::string reason) {
  program.state = state;
  program.reason = std::move(reason);
}

// Of Visual C++ the assembly's attributes count only where the program is managed, and a module bears no assembly's.
std::array<Comparison, 2> Comparisons(const ProgramFile& file, const WrittenSources& sources,
                                      ProjectKind kind) {
  const bool hasAttributes = file.assembly || (kind != ProjectKind::VisualCpp && !file.isManaged);
  Comparison assembly{"assembly version", {}, {}}, fileVersion{"file version", sources.fileOfScript, {}};
  if (hasAttributes) assembly.written = sources.assembly;
  if (hasAttributes && fileVersion.written.file.empty()) fileVersion.written = sources.fileOfAssembly;
  if (file.assembly) assembly.found = file.assembly->version;
  if (file.version && file.version->fixed) fileVersion.found = file.version->fixed->file;
  return {assembly, fileVersion};
}

// Whether the program is older than a file that one of its versions stands in.
bool IsStale(BuiltProgram& program, const std::array<Comparison, 2>& comparisons) {
  const auto built = TimeWritten(program.output);
  for (const Comparison& comparison : comparisons) {
    const std::string& file = comparison.written.file;
    const auto written = file.empty() ? std::nullopt : TimeWritten(file);
    if (!built || !written || *built >= *written) continue;
    Say(program, BuiltState::Stale,
        "it is older than " + file + ": it was not built anew, build the project again");
    return true;
  }
  return false;
}

void CompareVersions(BuiltProgram& program, const std::array<Comparison, 2>& comparisons) {
  std::string differences;
  for (const Comparison& comparison : comparisons) {
    const std::string& written = comparison.written.text;
    if (written.empty() || (comparison.found && VersionAgrees(written, *comparison.found))) continue;
    const std::string found = comparison.found ? DottedVersion(*comparison.found) : "none";
    differences += differences.empty() ? "its " : ", its ";
    differences += std::string(comparison.what) + " is " + found + ", but " + comparison.written.file +
                   " says " + written;
  }
  if (differences.empty()) return Say(program, BuiltState::Ok, "");
  Say(program, BuiltState::Differs, differences + ": build the project again");
}

void LookAtProgram(const OutputPlace& place, const WrittenSources& sources, BuiltProgram& program) {
  ProgramFile file;
  try {
    file = ReadProgram(program.output);
  } catch (const Exception& error) {
    return Say(program, BuiltState::Differs, error.Message() + ": build the project again");
  }
  const auto comparisons = Comparisons(file, sources, place.kind);
  program.expected = {comparisons[0].written.text, comparisons[1].written.text};
  program.found = {Dotted(comparisons[0].found), Dotted(comparisons[1].found)};
  if (!IsStale(program, comparisons)) CompareVersions(program, comparisons);
}

void LookAt(const OutputPlace& place, const std::string& script, BuiltProgram& program) {
  if (place.answer == Answer::Nothing) return Say(program, BuiltState::Skipped, place.reason);
  if (place.answer == Answer::Unknown) return Say(program, BuiltState::Unknown, place.reason);
  const std::string found = FindExisting(place.output);
  program.output = found.empty() ? place.output : found;
  WrittenSources sources;
  if (place.answer == Answer::Program) {
    sources = ReadWrittenSources(place, script);
    const WrittenVersion& file =
        sources.fileOfScript.file.empty() ? sources.fileOfAssembly : sources.fileOfScript;
    program.expected = {sources.assembly.text, file.text};
  }
  if (found.empty()) {
    return Say(program, BuiltState::Missing, "it is not there: the build did not make it, build the project");
  }
  if (place.answer == Answer::File) return Say(program, BuiltState::Ok, "");
  LookAtProgram(place, sources, program);
}

// The resource script with the version block of each C++ project, by the project's path as the solution has it.
std::map<std::string, std::string> VersionScripts(const std::string& solutionFile) {
  std::map<std::string, std::string> scripts;
  const auto projects = OpenSolution(solutionFile)->GetProjects();
  for (int i = 0; i < projects->GetCount(); ++i) {
    const auto project = projects->GetItem(i);
    scripts.try_emplace(project->GetPath(), project->GetVersionInfoFile());
  }
  return scripts;
}

std::string ConfigurationMeant(const SolutionMap& map, const std::string& solutionFile,
                               const std::string& asked) {
  const std::string found = FindConfiguration(map, asked);
  if (!found.empty()) return found;
  const std::string lacks = solutionFile + " has no configuration \"" + asked + "\": it has ";
  if (map.configurations.empty()) throw Exception(lacks + "none at all");
  const std::string nearest = NearestName(asked, map.configurations);
  throw UnknownConfiguration(lacks + Join(map.configurations, ", ") +
                             (nearest.empty() ? "" : " (nearest: " + nearest + ")"));
}

}  // namespace

std::string_view NameOfState(BuiltState state) { return kStates[static_cast<std::size_t>(state)]; }

bool IsFault(BuiltState state) {
  return state == BuiltState::Missing || state == BuiltState::Stale || state == BuiltState::Differs;
}

bool VersionAgrees(std::string_view written, const BinaryVersion& numbers) {
  std::size_t part = 0;
  for (; part < numbers.size(); ++part) {
    const std::size_t dot = written.find('.');
    const std::string_view text = TrimView(written.substr(0, dot));
    if (text == "*") return true;
    if (ToInteger(text) != std::int32_t{numbers[part]}) return false;
    if (dot == std::string_view::npos) break;
    written = written.substr(dot + 1);
  }
  if (part == numbers.size()) return false;  // a fifth part
  return std::all_of(numbers.begin() + static_cast<std::ptrdiff_t>(part) + 1, numbers.end(),
                     [](std::uint16_t number) { return number == 0; });
}

std::vector<BuiltProgram> LookAtBuiltPrograms(const std::string& solutionFile, const std::string& asked,
                                              const std::map<std::string, std::string>& properties,
                                              const IsProjectBuilt& isBuilt) {
  const std::string bytes = ReadFile(solutionFile);
  std::string decoded;
  const SolutionMap map = ReadSolutionMap(DecodeText(bytes, decoded));
  const std::string configuration = ConfigurationMeant(map, solutionFile, asked);
  const std::map<std::string, std::string> scripts = VersionScripts(solutionFile);
  std::vector<BuiltProgram> programs;
  for (const OutputPlace& place :
       FindOutputPlaces(map, {ExpandPath("", solutionFile), configuration, properties})) {
    BuiltProgram& program = programs.emplace_back();
    program.name = place.name;
    program.path = place.path;
    program.guid = place.guid;
    if (isBuilt && !isBuilt(place.guid)) {
      Say(program, BuiltState::Skipped, "it is not among the projects that are built");
      continue;
    }
    const auto script = scripts.find(place.path);
    LookAt(place, script == scripts.end() ? "" : script->second, program);
  }
  return programs;
}

}  // namespace qx
