#include <algorithm>

#include "built/BuiltPrograms.h"
#include "tools/vsinspect/Json.h"
#include "tools/vsinspect/Reports.h"

namespace qx {
namespace {

using Programs = std::vector<BuiltProgram>;

bool IsGood(const BuiltProgram& program) {
  return program.state == BuiltState::Ok || program.state == BuiltState::Skipped;
}

Json Versions(const ProgramVersions& versions) {
  return {{"assemblyVersion", JsonText(versions.assembly)}, {"fileVersion", JsonText(versions.file)}};
}

std::string AsJson(const Programs& programs) {
  Json projects = Json::array();
  for (const BuiltProgram& program : programs) {
    projects.push_back({{"name", JsonText(program.name)},
                        {"path", JsonText(program.path)},
                        {"output", JsonText(program.output)},
                        {"status", NameOfState(program.state)},
                        {"reason", JsonText(program.reason)},
                        {"expected", Versions(program.expected)},
                        {"found", Versions(program.found)}});
  }
  return JsonLine({{"projects", std::move(projects)}});
}

std::string Text(const Programs& programs) {
  std::string out;
  for (const BuiltProgram& program : programs) {
    const std::string state(NameOfState(program.state));
    out.append(state).append(9 - state.size(), ' ').append(program.name);
    if (!program.output.empty()) out.append(": ").append(program.output);
    out += "\n";
    const auto line = [&out](const char* label, const std::string& text) {
      if (!text.empty()) out.append(9, ' ').append(label).append(text).append("\n");
    };
    line("", program.reason);
    line("assembly version ", program.found.assembly);
    line("file version ", program.found.file);
  }
  const auto good = std::count_if(programs.begin(), programs.end(), IsGood);
  return out + std::to_string(good) + " of " + std::to_string(programs.size()) +
         " projects are as they should be\n";
}

}  // namespace

BuiltAnswer BuiltReport(const std::string& solution, const std::string& configuration, Form form) {
  const Programs programs = LookAtBuiltPrograms(solution, configuration);
  return {form == Form::AsJson ? AsJson(programs) : Text(programs),
          std::all_of(programs.begin(), programs.end(), IsGood)};
}

}  // namespace qx
