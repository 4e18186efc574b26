// The base of actions that run one external program and judge it by its exit code, and the command-line
// builder that it hands to them. Defined by the host.
#pragma once

#include <string>

#include "plugin/Qxaction.h"
#include "plugin/Qxprocess.h"

namespace qx {

// How a builder joins a switch and its value.
enum class TArgumentOption : int {
  aoSwitchOnly = 0,  // the switch alone; the value is not used
  aoValueOnly = 1,   // the value alone, quoted when it needs quotes
  aoSeparate = 2,    // switch and value as two arguments
  aoJoined = 3,      // switch and value as one argument, an empty value too
  aoJoinedIfValue =
      4,  // switch and value as one argument, quoted when it needs quotes; nothing for an empty value
};

// One argument of a command line.
class IArgument : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{3C7B2D61-93A5-4F7B-8A7C-1D2E4F6A8B06}");
  using Base = IInterface;
  virtual std::string GetSwitch() = 0;
  virtual std::string GetValue() = 0;
  virtual TArgumentOption GetOption() = 0;

 protected:
  ~IArgument() = default;
};

// Assembles the parameter string of a child process.
class ICommandLineBuilder : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{E2A9C4B8-55D1-4B0C-9D43-7F8E6A5B4C07}");
  using Base = IInterface;
  // Starts anew with the given text as it stands, usually empty.
  virtual void Reset(const std::string& initial) = 0;
  virtual InterfacePtr<IArgument> AddArgument(const std::string& argumentSwitch, const std::string& value,
                                              TArgumentOption option) = 0;
  virtual std::string GetCommandLine() = 0;

 protected:
  ~ICommandLineBuilder() = default;
};

// Execute asks for the executable, the command line and the starting folder, runs the program through the
// process service with its output forwarded to the log, and lets InterpretResult judge the exit code.
class QX_API TQXExecuteAbstractAction : public AnswersUncounted<IQXProcessCallback>, public TQXAction {
 public:
  TQXExecuteAbstractAction();
  ~TQXExecuteAbstractAction() override;

  bool Execute() override;
  void TerminateAction() override;
  bool CanTerminate() const override;
  bool RequiresSync() override;
  void OnStdOutData(IQXProcess& process, std::string_view text) override;
  void OnStdErrData(IQXProcess& process, std::string_view text) override;

 protected:
  virtual std::string GetExecutable() = 0;
  // With its trailing delimiter; empty for the host's own folder.
  virtual std::string GetStartingDir() = 0;
  // Fills the builder; false when a value could not be expanded (already logged), which fails the action.
  virtual bool GetCommandLine(ICommandLineBuilder& builder) = 0;
  // True when the exit code means success.
  virtual bool InterpretResult(int exitCode) = 0;

 private:
  TEvent stopEvent_;
};

}  // namespace qx
