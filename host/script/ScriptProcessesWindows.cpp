// The host puts itself into a job for the time of a script: whatever that starts is in it too, and ends when the
// host's handle, the only one, is closed by its end.
#include <windows.h>

#include "host/script/ScriptProcesses.h"
#include "platform/WindowsText.h"

namespace qx {

struct ScriptProcesses::State {
  system::Handle job{CreateJobObjectW(nullptr, nullptr)};

  void KillOnClose(bool kills) const {
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = kills ? JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE : 0;
    SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
  }
};

ScriptProcesses::ScriptProcesses(lua_State*) : state_(std::make_unique<State>()) {
  // Refused where the host stands in a job that forbids others (Windows 7).
  if (AssignProcessToJobObject(state_->job.Get(), GetCurrentProcess())) state_->KillOnClose(true);
}

// Or the host would end itself.
ScriptProcesses::~ScriptProcesses() { state_->KillOnClose(false); }

}  // namespace qx
