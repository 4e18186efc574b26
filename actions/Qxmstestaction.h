// The action "Run MSTest": runs MSTest.exe over one test assembly and judges it by its exit code. The host's
// base starts the program; this class says what to start and how.
#pragma once

#include <string>

#include "plugin/Qxexecuteaction.h"

namespace qx {

// The three texts may hold host variables; all but the assembly may be empty.
class TQXMSTestAction final : public TQXExecuteAbstractAction {
 public:
  static std::string ActionName();  // "Run MSTest"
  static const TQXActionClass& Class();

  const std::string& GetAssemblyFileName() const { return assemblyFileName_; }
  void SetAssemblyFileName(const std::string& value) { assemblyFileName_ = value; }
  const std::string& GetConfigFileName() const { return configFileName_; }
  void SetConfigFileName(const std::string& value) { configFileName_ = value; }
  const std::string& GetOutputFileName() const { return outputFileName_; }
  void SetOutputFileName(const std::string& value) { outputFileName_ = value; }

  std::string GetActionName(const TQXActionClass&) const override { return ActionName(); }
  int GetHelpTopicID() const override { return 3500; }
  std::string GetQuickHelpFilename() const override { return "Plugins\\MSTest.html"; }
  bool Validate(IQXActionValidationError& errors) override;

  // MSTest.exe as the options have it; empty when they have none.
  std::string GetExecutable() override;
  // The assembly's folder; empty when its name cannot be expanded.
  std::string GetStartingDir() override;
  bool GetCommandLine(ICommandLineBuilder& builder) override;
  bool InterpretResult(int exitCode) override { return exitCode == 0; }

 private:
  std::string assemblyFileName_;
  std::string configFileName_;
  std::string outputFileName_;
};

}  // namespace qx
