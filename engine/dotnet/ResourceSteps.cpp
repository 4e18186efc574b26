#include "engine/dotnet/ResourceSteps.h"

#include <algorithm>

#include "engine/ChildCommand.h"
#include "engine/dotnet/Freshness.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

// The designer wrote nothing into the .resx of a form without resources; resgen wants a document.
constexpr const char* kEmptyResx =
    "<root><resheader name=\"resmimetype\"><value>text/microsoft-resx</value></resheader>"
    "<resheader name=\"version\"><value>1.3</value></resheader>"
    "<resheader name=\"reader\"><value>System.Resources.ResXResourceReader, "
    "System.Windows.Forms</value></resheader>"
    "<resheader name=\"writer\"><value>System.Resources.ResXResourceWriter, "
    "System.Windows.Forms</value></resheader>"
    "</root>";

constexpr const char* kFileReference = "System.Resources.ResXFileRef";

// Where the names of files stand in a .resx: `<value>..\images\a.bmp;System.Drawing.Bitmap, ...` behind the
// type's name. Begin and end of each.
struct Range {
  std::size_t begin, end;
};
std::vector<Range> FileNames(const std::string& text) {
  constexpr std::string_view kValue = "<value>";
  std::vector<Range> names;
  for (std::size_t at = 0; (at = text.find(kFileReference, at)) != std::string::npos;) {
    const std::size_t value = text.find(kValue, at);
    if (value == std::string::npos) break;
    at = value + kValue.size();
    const std::size_t end = text.find_first_of(";<", at);
    if (end == std::string::npos || text[end] != ';') continue;
    names.push_back({at, end});
  }
  return names;
}

std::string PathOf(const std::string& resource, const std::string& text, Range name) {
  return FindAsFarAsThere(ExpandPath(FolderPart(resource),
                                     Trim(std::string_view(text).substr(name.begin, name.end - name.begin))));
}

// What resgen is given: the file itself, or a copy with what it would stumble over put right.
std::string PrepareSource(const PlannedResource& resource, const std::string& scratch) {
  std::string text = ReadFile(resource.source);
  const std::vector<Range> names = FileNames(text);
  const bool isEmpty = TrimView(text).empty();
  if (!isEmpty && names.empty()) return resource.source;
  if (isEmpty) text = kEmptyResx;
  for (auto name = names.rbegin(); name != names.rend(); ++name) {
    text.replace(name->begin, name->end - name->begin, PathOf(resource.source, text, *name));
  }
  std::string copy = scratch + FilePart(resource.embedded) + ".resx";
  ReplaceFile(copy, text);
  return copy;
}

// resgen's own lines name no file in a form that anybody reads: they are joined to one diagnostic.
std::string CompileOne(const PlannedResource& resource, const std::string& source, const std::string& target,
                       Console& console) {
  std::string said;
  const ChildResult result =
      RunChild({{"resgen", "-usesourcepath", source, target}, FolderPart(resource.source), {}},
               [&said](std::string_view line) { (said += said.empty() ? "" : " ") += line; });
  if (result.code == 0) return {};
  if (!result.reason.empty()) return "resgen: " + result.reason;
  console.Error(resource.source, 0, "RG0000", said);
  return "the resource " + resource.source + " cannot be compiled";
}

}  // namespace

std::vector<std::string> InputsOfResource(const PlannedResource& resource) {
  std::vector<std::string> inputs = {resource.source};
  std::string text;
  if (!TryReadFile(resource.source, text)) return inputs;
  for (const Range& name : FileNames(text)) inputs.push_back(PathOf(resource.source, text, name));
  return inputs;
}

std::string CompileResources(const CompilePlan& plan, const std::string& scratch, Console& console) {
  struct Step {
    const PlannedResource* resource;
    std::string source, target;
  };
  std::vector<Step> steps;
  bool fitsOneCall = true;
  for (const PlannedResource& resource : plan.resources) {
    if (!resource.IsCompiled() || IsFresh(resource.embedded, InputsOfResource(resource))) continue;
    steps.push_back({&resource, PrepareSource(resource, scratch), scratch + FilePart(resource.embedded)});
    fitsOneCall = fitsOneCall && (steps.back().source + steps.back().target).find(',') == std::string::npos;
  }
  if (steps.empty()) return {};
  // All at once, for most of the time is the tool's start. What it says of a failure then names no file, so a
  // failed call is made again one by one.
  ChildCommand together{{"resgen", "-usesourcepath", "/compile"}, plan.folder, {}};
  for (const Step& step : steps) together.arguments.push_back(step.source + "," + step.target);
  if (!fitsOneCall || RunChild(together, [](std::string_view) {}).code != 0) {
    for (const Step& step : steps) {
      std::string reason = CompileOne(*step.resource, step.source, step.target, console);
      if (!reason.empty()) return reason;
    }
  }
  for (const Step& step : steps) MoveIntoPlace(step.target, step.resource->embedded);
  return {};
}

}  // namespace qx
