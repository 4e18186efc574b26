#include "engine/front/BuildReport.h"

namespace qx {
namespace {

std::string_view NameOfGoal(Goal goal) {
  switch (goal) {
    case Goal::Rebuild:
      return "Rebuild All";
    case Goal::Clean:
      return "Clean";
    default:
      return "Build";
  }
}

std::string Heading(std::string_view what, std::string_view project, std::string_view configuration,
                    std::string_view platform) {
  std::string text = "------ ";
  ((((text += what) += ": Project: ") += project) += ", Configuration: ") += configuration;
  if (!platform.empty()) (text += ' ') += platform;
  return text += " ------";
}

}  // namespace

void BuildReport::Started(std::string_view project, std::string_view configuration,
                          std::string_view platform) {
  console_.Line(Heading(std::string(NameOfGoal(goal_)) + " started", project, configuration, platform));
}

void BuildReport::Skipped(std::string_view project, std::string_view configuration, std::string_view platform,
                          std::string_view reason) {
  console_.Line(Heading("Skipped " + std::string(NameOfGoal(goal_)), project, configuration, platform));
  console_.Line(reason);
}

void BuildReport::Ended(std::string_view project, int errors, int warnings) {
  console_.Line("");
  console_.Line(std::string(project) + " - " + std::to_string(errors) + " error(s), " +
                std::to_string(warnings) + " warning(s)");
  console_.Line("");
}

void BuildReport::Closed(const BuildTotals& totals) {
  const bool isOlder = format_ == SolutionFormat::Vs2002 || format_ == SolutionFormat::Vs2003;
  if (isOlder) {
    console_.Line("---------------------- Done ----------------------");
    console_.Line("");
  }
  Total(NameOfGoal(goal_), totals);
}

void BuildReport::Deployed(const BuildTotals& totals) { Total("Deploy", totals); }

void BuildReport::Total(std::string_view name, const BuildTotals& totals) {
  const bool isOlder = format_ == SolutionFormat::Vs2002 || format_ == SolutionFormat::Vs2003;
  std::string text = isOlder ? "    " : "========== ";
  (text += name) += ": " + std::to_string(totals.succeeded) + " succeeded, " + std::to_string(totals.failed) +
                    " failed, " + std::to_string(totals.skipped) + " skipped";
  console_.Line(isOlder ? text : text + " ==========");
}

}  // namespace qx
