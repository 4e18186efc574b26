#include "projects/BuildOrder.h"

#include <algorithm>

namespace qx {
namespace {

enum class State { Untouched, OnTheWay, Done };

struct Step {
  std::size_t project;
  std::size_t nextNeed = 0;
};

}  // namespace

BuildOrder OrderByNeeds(const std::vector<std::vector<std::size_t>>& needs) {
  BuildOrder result;
  std::vector<State> states(needs.size(), State::Untouched);
  std::vector<Step> way;  // depth first; a list of our own, for a chain may be longer than the stack
  const auto enter = [&](std::size_t project) {
    states[project] = State::OnTheWay;
    way.push_back({project});
  };
  for (std::size_t first = 0; first < needs.size(); ++first) {
    if (states[first] == State::Untouched) enter(first);
    while (!way.empty()) {
      Step& step = way.back();
      if (step.nextNeed == needs[step.project].size()) {
        states[step.project] = State::Done;
        result.order.push_back(step.project);
        way.pop_back();
        continue;
      }
      const std::size_t need = needs[step.project][step.nextNeed++];
      if (need >= needs.size() || need == step.project || states[need] == State::Done) continue;
      if (states[need] == State::Untouched) {
        enter(need);
        continue;
      }
      std::vector<std::size_t> circle;
      const auto begin = std::ranges::find(way, need, &Step::project);
      std::transform(begin, way.end(), std::back_inserter(circle), [](const Step& at) { return at.project; });
      result.circles.push_back(std::move(circle));
    }
  }
  return result;
}

}  // namespace qx
