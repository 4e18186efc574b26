// The base of actions that run one program, and the builder of their command lines.
#include "host/actions/ActionHost.h"
#include "host/actions/CommandLineBuilder.h"
#include "host/actions/TestResults.h"
#include "platform/CommandLine.h"

namespace qx {
namespace {

class Argument final : public Implements<IArgument> {
 public:
  Argument(std::string argumentSwitch, std::string value, TArgumentOption option)
      : switch_(std::move(argumentSwitch)), value_(std::move(value)), option_(option) {}
  std::string GetSwitch() override { return switch_; }
  std::string GetValue() override { return value_; }
  TArgumentOption GetOption() override { return option_; }

 private:
  std::string switch_;
  std::string value_;
  TArgumentOption option_;
};

// The argument as it stands in the command line; nothing when it is left out. Joined if there is a value, one
// without leaves no bare switch (docs/deliberate.md).
std::string Written(const std::string& argumentSwitch, const std::string& value, TArgumentOption option) {
  switch (option) {
    case TArgumentOption::aoSwitchOnly:
      return argumentSwitch;
    case TArgumentOption::aoValueOnly:
      return QuoteArgument(value);
    case TArgumentOption::aoSeparate:
      return argumentSwitch + " " + QuoteArgument(value);
    case TArgumentOption::aoJoined:
      return argumentSwitch + (value.empty() ? "" : QuoteArgument(value));
    case TArgumentOption::aoJoinedIfValue:
      return value.empty() ? "" : argumentSwitch + QuoteArgument(value);
  }
  throw Exception("Unknown argument option " + std::to_string(static_cast<int>(option)));
}

class CommandLineBuilder final : public Implements<ICommandLineBuilder> {
 public:
  void Reset(const std::string& initial) override { line_ = initial; }
  InterfacePtr<IArgument> AddArgument(const std::string& argumentSwitch, const std::string& value,
                                      TArgumentOption option) override {
    const std::string written = Written(argumentSwitch, value, option);
    if (!line_.empty() && !written.empty()) line_ += ' ';
    line_ += written;
    return MakeInterface<Argument>(argumentSwitch, value, option);
  }
  std::string GetCommandLine() override { return line_; }

 private:
  std::string line_;
};

}  // namespace

InterfacePtr<ICommandLineBuilder> CreateCommandLineBuilder() { return MakeInterface<CommandLineBuilder>(); }

TQXExecuteAbstractAction::TQXExecuteAbstractAction() = default;
TQXExecuteAbstractAction::~TQXExecuteAbstractAction() = default;

bool TQXExecuteAbstractAction::Execute() {
  const std::string executable = GetExecutable();
  const InterfacePtr<ICommandLineBuilder> builder = CreateCommandLineBuilder();
  if (!GetCommandLine(*builder)) return false;
  const std::string startingFolder = GetStartingDir();
  Host().tests.clear();
  const ResultsFileWatch results(*this, startingFolder);
  InterfacePtr<IQXProcess> process;
  CreateQXProcess(process);
  process->SetExecutable(executable);
  process->SetStartingDirectory(startingFolder);
  process->SetParameters(builder->GetCommandLine());
  process->SetRedirectOutput(true);
  process->SetHideWindow(true);
  process->SetCallback(this);
  process->SetStopEvent(&stopEvent_);
  int exitCode = 0;
  try {
    exitCode = process->Execute();
  } catch (const Exception& failure) {
    SendMessage(failure.Message());
    return false;
  }
  ResultsFileWatch::Written written = results.Report();
  if (!written.summary.empty()) SendMessage(written.summary);
  Host().tests = std::move(written.tests);
  if (exitCode == kTerminatedExitCode) {
    SendMessage("Action Terminated by User.");
    return false;
  }
  if (InterpretResult(exitCode)) return true;
  SendMessage(executable + " returned Error code : " + std::to_string(exitCode));
  return false;
}

void TQXExecuteAbstractAction::TerminateAction() { stopEvent_.SetEvent(); }
bool TQXExecuteAbstractAction::CanTerminate() const { return true; }
// Output may come on the reader threads: the log takes it from any.
bool TQXExecuteAbstractAction::RequiresSync() { return false; }

void TQXExecuteAbstractAction::OnStdOutData(IQXProcess&, std::string_view text) {
  const InterfacePtr<IQXActionLogMessage> message = CreateStatusMessage();
  message->AppendDetail(text);
  SendStatusMessage(message);
}

void TQXExecuteAbstractAction::OnStdErrData(IQXProcess& process, std::string_view text) {
  OnStdOutData(process, text);
}

}  // namespace qx
