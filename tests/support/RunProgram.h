// Runs a program to its end and keeps what it said, for tests of real programs on either system.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/CommandLine.h"
#include "plugin/Qxprocess.h"

namespace qx::test {

struct ProgramResult {
  int code = 0;
  std::string out;  // its lines, each with LF
  std::string err;
};

namespace detail {

// Each stream comes on a thread of its own and goes into a text of its own.
class Collector final : public Implements<IQXProcessCallback> {
 public:
  explicit Collector(ProgramResult& result) : result_(result) {}
  bool RequiresSync() override { return false; }
  void OnStdOutData(IQXProcess&, std::string_view text) override { result_.out.append(text).append("\n"); }
  void OnStdErrData(IQXProcess&, std::string_view text) override { result_.err.append(text).append("\n"); }

 private:
  ProgramResult& result_;
};

}  // namespace detail

// Raises Exception when the program cannot be started.
inline ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                                const std::string& folder) {
  ProgramResult result;
  const auto collector = MakeInterface<detail::Collector>(result);
  std::string parameters;
  for (const std::string& argument : arguments)
    parameters += (parameters.empty() ? "" : " ") + QuoteArgument(argument);
  TEvent never;
  InterfacePtr<IQXProcess> process;
  CreateQXProcess(process);
  process->SetExecutable(program);
  process->SetStartingDirectory(folder);
  process->SetParameters(parameters);
  process->SetRedirectOutput(true);
  process->SetHideWindow(true);
  process->SetCallback(collector.get());
  process->SetStopEvent(&never);
  result.code = process->Execute();
  return result;
}

}  // namespace qx::test
