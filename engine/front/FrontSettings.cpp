#include <cstdlib>

#include "engine/front/BuildRequest.h"
#include "platform/Texts.h"

namespace qx {
namespace {

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : Trim(value);
}

}  // namespace

FrontSettings SettingsFromEnvironment() {
  FrontSettings settings;
  settings.launcher = Variable("QX_ENGINE_LAUNCHER");
  if (const std::string jobs = Variable("QX_ENGINE_JOBS"); !jobs.empty()) {
    const auto number = ToInteger(jobs);
    if (!number || *number < 0 || *number > 10000) {
      throw UsageError("QX_ENGINE_JOBS is \"" + jobs + "\"; it has to be a number from 0 to 10000");
    }
    settings.jobs = *number;
  }
  for (const std::string& key : SplitCommaText(Variable("QX_ENGINE_SKIP")))
    settings.skip.insert(LowerCase(key));
  settings.skip.erase("");
  return settings;
}

}  // namespace qx
