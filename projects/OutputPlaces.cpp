#include "projects/OutputPlaces.h"

#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"
#include "projects/net/NetOutput.h"
#include "projects/vc/VcSettings.h"

namespace qx {
namespace {

using Answer = OutputPlace::Answer;

void Say(OutputPlace& place, Answer answer, std::string reason) {
  place.answer = answer;
  place.reason = std::move(reason);
}

// The kinds whose files nobody here reads.
const char* WhyUnread(ProjectKind kind) {
  switch (kind) {
    case ProjectKind::Setup:
      return "what a setup project makes is not worked out here";
    case ProjectKind::Web:
      return "its files lie on a web server";
    case ProjectKind::Other:
      return "projects of this kind are not known here";
    default:
      return nullptr;
  }
}

void AnswerForNet(const OwnConfiguration& own, const BuildOfSolution& build, OutputPlace& place) {
  const NetSelection selection{own.configuration, own.platform, build.properties, build.solutionFile};
  NetOutput output = WhereOutputLies(ReadNetProject(place.file, selection));
  if (output.path.empty()) return Say(place, Answer::Unknown, std::move(output.reason));
  place.answer = Answer::Program;
  place.output = std::move(output.path);
}

void AnswerForVc(const OwnConfiguration& own, const BuildOfSolution& build, OutputPlace& place) {
  const VcSettings settings =
      OpenVcProject(PlaceOnDisk(place.file, build.solutionFile, own.configuration, own.platform));
  std::string output = settings.OutputFile();
  if (!settings.UnknownMacros().empty()) {
    return Say(place, Answer::Unknown,
               "its path depends on $(" + *settings.UnknownMacros().begin() + "), which is not set");
  }
  if (output.empty()) return Say(place, Answer::Nothing, "the project makes no program or library");
  const bool isProgram = settings.Type() == VcType::Application || settings.Type() == VcType::DynamicLibrary;
  place.answer = isProgram ? Answer::Program : Answer::File;
  place.output = std::move(output);
}

void FindPlace(const OwnConfiguration& own, const BuildOfSolution& build, PathFinder& finder,
               OutputPlace& place) {
  const std::string file = ExpandPath(FolderPart(build.solutionFile), place.path);
  std::string found = file;
  const bool isThere = place.kind != ProjectKind::Web && finder.FindFile(found);
  if (isThere) place.file = found;
  if (!own.isBuilt) {
    return Say(place, Answer::Nothing,
               "the solution does not build it in the configuration " + build.configuration);
  }
  if (const char* reason = WhyUnread(place.kind)) return Say(place, Answer::Unknown, reason);
  if (!isThere) return Say(place, Answer::Unknown, "its project file is not there: " + file);
  try {
    place.kind == ProjectKind::VisualCpp ? AnswerForVc(own, build, place) : AnswerForNet(own, build, place);
  } catch (const Exception& error) {
    Say(place, Answer::Unknown, error.Message());
  }
}

}  // namespace

std::vector<OutputPlace> FindOutputPlaces(const SolutionMap& map, const BuildOfSolution& build) {
  std::vector<OutputPlace> places;
  PathFinder finder;
  for (const MappedProject& project : map.projects) {
    OutputPlace place;
    place.kind = KindOfProject(project.path, project.typeGuid);
    if (place.kind == ProjectKind::Folder) continue;
    place.name = project.name;
    place.path = project.path;
    place.guid = project.guid;
    FindPlace(ConfigurationOf(project, build.configuration), build, finder, place);
    places.push_back(std::move(place));
  }
  return places;
}

}  // namespace qx
