// The host's side of an action: what it is attached to (class record, log, variables, context), the state that
// the host keeps for it, and the functions by which the host, a tool or a test makes an action and runs it.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/actions/TestResults.h"
#include "host/actions/Variables.h"
#include "host/log/ActionLog.h"
#include "plugin/Qxaction.h"
#include "plugin/Qxservices.h"

namespace qx {

// What surrounds an action. Everything outlives the action; null: the operation that needs it says so.
struct ActionSurroundings {
  ActionLog* log = nullptr;              // null: records are dropped
  const Variables* variables = nullptr;  // null: only the environment's
  int number = 1;                        // 1-based place in the build project, carried by the log's records
  // Asked by StopSignalled: true while the build is being stopped. May be null.
  const std::atomic<bool>* stopping = nullptr;
};

const Variables& VariablesFor(const ActionSurroundings& surroundings);

struct TCustomQXAction::HostSide {
  const TQXActionClass* actionClass = nullptr;
  ActionSurroundings surroundings;
  InterfacePtr<IQXActionContext> context;
  std::vector<std::string> dynamicProperties;  // in the order they were registered
  std::string objectId;
  std::string logTitle;     // empty: the action's name
  std::string description;  // empty: the action's name
  std::string descriptionKey;
  std::string statusText;
  int typeId = 0;
  std::vector<TQXAction*> children;  // owned by who added them
  std::vector<TestCase> tests;       // that the last run told of in its results file
};

// Makes an action of the class, attaches it and calls Create. Raises Exception when the class makes none.
std::unique_ptr<TQXAction> MakeAction(const TQXActionClass& actionClass,
                                      const ActionSurroundings& surroundings);

// Attaches an action that exists already, anew if it was attached before; Create is not called.
void AttachAction(TQXAction& action, const TQXActionClass& actionClass,
                  const ActionSurroundings& surroundings);

// Moves an attached action into other surroundings (another log, other variables, another number).
void MoveAction(TQXAction& action, const ActionSurroundings& surroundings);

// Tells the log the clear text of every property that is kept secret, so that no record shows one. A secret
// that cannot be decrypted is passed over: then nobody has its clear text.
void GuardSecrets(TQXAction& action, ActionLog& log);

// Collects what Validate finds, in order; with a log, every error is recorded there too.
class ValidationErrors : public AnswersUncounted<IQXActionValidationError> {
 public:
  struct Error {
    std::string subject;
    std::string message;
    friend bool operator==(const Error&, const Error&) = default;
  };
  explicit ValidationErrors(ActionLog* log = nullptr, int action = 0) : log_(log), action_(action) {}
  virtual ~ValidationErrors() = default;
  void AddError(const std::string& subject, const std::string& message) override;
  const std::vector<Error>& Errors() const { return errors_; }

 private:
  std::vector<Error> errors_;
  ActionLog* log_;
  int action_;
};

// Expands texts with the given variables, for code that has no action. The variables outlive it.
InterfacePtr<IQXApplicationServices> MakeApplicationServices(const Variables& variables);

}  // namespace qx
