#include "actions/Qxmstestaction.h"

#include "options/Qxvsdotnetoptions.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

using A = TQXMSTestAction;
constexpr PublishedProperty kProperties[] = {
    Property<&A::GetAssemblyFileName, &A::SetAssemblyFileName>("AssemblyFileName"),
    Property<&A::GetConfigFileName, &A::SetConfigFileName>("ConfigFileName"),
    Property<&A::GetOutputFileName, &A::SetOutputFileName>("OutputFileName"),
};

// The subject is spelled as it has always been shown (docs/deliberate.md).
constexpr const char* kLocation = "MSTest Locatation";

constexpr bool kNested = true;

}  // namespace

std::string TQXMSTestAction::ActionName() { return "Run MSTest"; }

const TQXActionClass& TQXMSTestAction::Class() {
  static constexpr TQXActionClass record{
      "TQXMSTestAction", &ActionName, kProperties,
      []() -> std::unique_ptr<TQXAction> { return std::make_unique<TQXMSTestAction>(); }};
  return record;
}

bool TQXMSTestAction::Validate(IQXActionValidationError& errors) {
  const std::string location = GetExecutable();
  const bool located = !location.empty() && FileExists(location);
  if (location.empty()) errors.AddError(kLocation, "MSTest.exe location not set in Tools->Options");
  if (!located) errors.AddError(kLocation, "MSTest.exe not found, check location in Tools->Options");
  if (assemblyFileName_.empty()) errors.AddError("Assembly Filename", "Assembly Filename is blank");
  return located && !assemblyFileName_.empty();
}

std::string TQXMSTestAction::GetExecutable() {
  const InterfacePtr<IQXVSDotNetOptions> options = VSDotNetOptions();
  return options ? options->GetMSTestLocation() : std::string();
}

// Says nothing about a failed expansion: GetCommandLine does.
std::string TQXMSTestAction::GetStartingDir() {
  try {
    return FolderPart(ExpandExpression(assemblyFileName_, kNested));
  } catch (const std::exception&) {
    return {};
  }
}

bool TQXMSTestAction::GetCommandLine(ICommandLineBuilder& builder) {
  struct Row {
    const char* argumentSwitch;
    const char* caption;
    const std::string& text;
    bool nested;
  };
  // Only the assembly's variables are expanded within variables: saved projects depend on it
  // (docs/deliberate.md).
  const Row rows[] = {{"/testcontainer:", "Assembly File", assemblyFileName_, kNested},
                      {"/resultsfile:", "Output File", outputFileName_, !kNested},
                      {"/runconfig:", "Configuration File", configFileName_, !kNested}};
  builder.Reset("");
  for (const Row& row : rows) {
    std::string value;
    if (!TryExpandExpression(row.caption, row.text, value, row.nested)) return false;
    builder.AddArgument(row.argumentSwitch, value, TArgumentOption::aoJoinedIfValue);
  }
  return true;
}

}  // namespace qx
