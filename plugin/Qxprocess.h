// The host's process service: prepares a child process, runs it to completion and hands its output to a
// callback line by line. Nothing is run through a shell and no console window appears.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "plugin/Qxtypes.h"

namespace qx {

// What Execute returns when the stop event ended the child.
inline constexpr int kTerminatedExitCode = 999;

// An auto-reset event without a name, created not signalled. A wait that succeeds consumes the signal.
// Every operation may be called from any thread.
class QX_API TEvent {
 public:
  TEvent();
  ~TEvent();
  TEvent(const TEvent&) = delete;
  TEvent& operator=(const TEvent&) = delete;

  void SetEvent();
  // Waits up to the given time and consumes the signal; false when the time ran out.
  bool WaitFor(unsigned milliseconds);
  // What the system's own waits take: a HANDLE on Windows, a pollable descriptor elsewhere. Stays the event's.
  std::intptr_t NativeHandle() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

class IQXProcess;

// Implemented by the package; called by the host while IQXProcess::Execute blocks.
class IQXProcessCallback : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{0C1E8F1B-6C0B-4B8B-9B3A-52B0D6E0A6F1}");
  using Base = IInterface;

  // True when the calls below must come on the thread that called Execute. Asked once a run.
  virtual bool RequiresSync() = 0;
  // One line of output without its line end, bytes as the child wrote them. With RequiresSync false on a
  // reader thread of the host's, one for each stream. The text is valid during the call only.
  virtual void OnStdOutData(IQXProcess& process, std::string_view text) = 0;
  virtual void OnStdErrData(IQXProcess& process, std::string_view text) = 0;

 protected:
  ~IQXProcessCallback() = default;
};

// A child process; implemented by the host. Setters only store.
class IQXProcess : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{9D3E1D0C-7A53-4B1E-8C6E-0B2E5B1B9A02}");
  using Base = IInterface;

  virtual void SetExecutable(const std::string& path) = 0;
  virtual void SetStartingDirectory(const std::string& folder) = 0;
  // The parameters as one string, quoted already. Windows hands it to the child as it stands; elsewhere it
  // is split into arguments by the rules that Windows programs use.
  virtual void SetParameters(const std::string& parameters) = 0;
  // True: standard output and error go to the callback. False: they go to the host's own.
  virtual void SetRedirectOutput(bool redirect) = 0;
  // True: the child gets no window of its own.
  virtual void SetHideWindow(bool hide) = 0;
  // Not counted by the host; must outlive Execute. Null: output is drained and dropped.
  virtual void SetCallback(IQXProcessCallback* callback) = 0;
  // Must outlive Execute. When it is signalled the child and all its descendants are ended.
  virtual void SetStopEvent(TEvent* event) = 0;
  // Runs the child and returns its exit code, kTerminatedExitCode when the stop event ended it.
  // Raises Exception naming the program and the reason when it cannot be started. Blocks.
  virtual int Execute() = 0;

 protected:
  ~IQXProcess() = default;
};

// An idle process object.
QX_API void CreateQXProcess(InterfacePtr<IQXProcess>& process);

}  // namespace qx
