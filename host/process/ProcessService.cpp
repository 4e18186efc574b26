// The contract's face of child processes: IQXProcess only stores what it is told, Execute runs a ChildProcess.
#include "host/process/ChildProcess.h"
#include "host/process/ProcessRehearsal.h"

namespace qx {
namespace {

class Process final : public Implements<IQXProcess> {
 public:
  void SetExecutable(const std::string& path) override { child_.executable = path; }
  void SetStartingDirectory(const std::string& folder) override { child_.directory = folder; }
  void SetParameters(const std::string& parameters) override { child_.parameters = parameters; }
  void SetRedirectOutput(bool redirect) override { child_.redirectOutput = redirect; }
  void SetHideWindow(bool hide) override { child_.hideWindow = hide; }
  void SetCallback(IQXProcessCallback* callback) override { callback_ = callback; }
  void SetStopEvent(TEvent* event) override { child_.stop = event; }
  int Execute() override;

 private:
  ChildProcess child_;
  IQXProcessCallback* callback_ = nullptr;
};

int Process::Execute() {
  if (TakeDownForRehearsal({child_.executable, child_.directory, child_.parameters})) return 0;
  ChildProcess child = child_;
  if (callback_ != nullptr) {
    child.delivery = callback_->RequiresSync() ? Delivery::CallingThread : Delivery::ReaderThreads;
    child.onOutput = [this](std::string_view line) { callback_->OnStdOutData(*this, line); };
    child.onError = [this](std::string_view line) { callback_->OnStdErrData(*this, line); };
  }
  return child.Run();
}

}  // namespace

void CreateQXProcess(InterfacePtr<IQXProcess>& process) { process = MakeInterface<Process>(); }

}  // namespace qx
