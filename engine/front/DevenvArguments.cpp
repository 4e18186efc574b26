#include <array>

#include "engine/front/BuildRequest.h"
#include "engine/front/HandOver.h"
#include "platform/Texts.h"

namespace qx {
namespace {

constexpr const char* kUsage =
    "usage: devenv.com [/useenv] /build|/rebuild|/clean|/deploy CONFIGURATION [/project NAME-OR-PATH] "
    "[/projectconfig CONFIGURATION] SOLUTION-OR-PROJECT [/out FILE]";

struct GoalSwitch {
  std::string_view name;
  Goal goal;
  bool isDeployed;
};
constexpr std::array kGoals = {
    GoalSwitch{"/build", Goal::Build, false}, GoalSwitch{"/rebuild", Goal::Rebuild, false},
    GoalSwitch{"/clean", Goal::Clean, false}, GoalSwitch{"/deploy", Goal::Build, true}};

struct TextSwitch {
  std::string_view name;
  std::string BuildRequest::*target;
};
constexpr std::array kTexts = {TextSwitch{"/project", &BuildRequest::project},
                               TextSwitch{"/projectconfig", &BuildRequest::projectConfiguration},
                               TextSwitch{"/out", &BuildRequest::logFile}};

[[noreturn]] void Refuse(const std::string& reason) { throw UsageError(reason + "\n" + kUsage); }

class ArgumentReader {
 public:
  explicit ArgumentReader(const std::vector<std::string>& arguments) : arguments_(arguments) {}

  BuildRequest Read() {
    while (at_ < arguments_.size()) Take(arguments_[at_++]);
    if (!hasGoal_) Refuse("No /build, /rebuild, /clean or /deploy was given.");
    if (request_.file.empty()) Refuse("No solution or project was given.");
    return request_;
  }

 private:
  void Take(const std::string& argument) {
    if (!IsSwitch(argument)) {
      if (!request_.file.empty()) Refuse("Two files were given: " + request_.file + " and " + argument + ".");
      request_.file = argument;
      return;
    }
    const std::string name = LowerCase(argument);
    for (const GoalSwitch& goal : kGoals) {
      if (name != goal.name) continue;
      request_.goal = goal.goal;
      request_.isDeployed = goal.isDeployed;
      request_.configuration = Value(argument);
      hasGoal_ = true;
      return;
    }
    for (const TextSwitch& text : kTexts) {
      if (name != text.name) continue;
      request_.*text.target = Value(argument);
      return;
    }
    if (name != "/useenv") Refuse("The switch " + argument + " is not known here.");
    request_.usesEnvironment = true;
  }

  std::string Value(const std::string& name) {
    if (at_ == arguments_.size()) Refuse("The switch " + name + " needs a value behind it.");
    return arguments_[at_++];
  }

  const std::vector<std::string>& arguments_;
  std::size_t at_ = 0;
  BuildRequest request_;
  bool hasGoal_ = false;
};

}  // namespace

BuildRequest ReadDevenvArguments(const std::vector<std::string>& arguments) {
  return ArgumentReader(arguments).Read();
}

}  // namespace qx
