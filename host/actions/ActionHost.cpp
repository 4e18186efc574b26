// Attaching actions to their surroundings, and what the host hands to them.
#include "host/actions/ActionHost.h"

#include "host/system/LockedText.h"

namespace qx {
namespace {

class ApplicationServices final : public Implements<IQXApplicationServices> {
 public:
  explicit ApplicationServices(const Variables& variables) : variables_(variables) {}
  std::string ExpandExpression(const std::string& text, bool nested) override {
    return variables_.Expand(text, nested);
  }

 private:
  const Variables& variables_;
};

// Expands as the action does, wherever the action is moved. Lives no longer than its use during the action's run.
class ActionContext final : public Implements<IQXActionContext> {
 public:
  explicit ActionContext(InterfacePtr<IQXApplicationServices> services) : services_(std::move(services)) {}
  InterfacePtr<IQXApplicationServices> GetApplicationServices() override { return services_; }

 private:
  InterfacePtr<IQXApplicationServices> services_;
};

}  // namespace

const Variables& VariablesFor(const ActionSurroundings& surroundings) {
  static const Variables environment;
  return surroundings.variables != nullptr ? *surroundings.variables : environment;
}

InterfacePtr<IQXApplicationServices> MakeApplicationServices(const Variables& variables) {
  return MakeInterface<ApplicationServices>(variables);
}

void MoveAction(TQXAction& action, const ActionSurroundings& surroundings) {
  TCustomQXAction::HostSide& host = action.Host();
  host.surroundings = surroundings;
  host.context = MakeInterface<ActionContext>(MakeApplicationServices(VariablesFor(surroundings)));
}

void AttachAction(TQXAction& action, const TQXActionClass& actionClass,
                  const ActionSurroundings& surroundings) {
  action.Host().actionClass = &actionClass;
  MoveAction(action, surroundings);
}

std::unique_ptr<TQXAction> MakeAction(const TQXActionClass& actionClass,
                                      const ActionSurroundings& surroundings) {
  std::unique_ptr<TQXAction> action = actionClass.construct();
  if (action == nullptr)
    throw Exception("The class " + std::string(actionClass.className) + " made no action");
  AttachAction(*action, actionClass, surroundings);
  action->Create();
  return action;
}

void GuardSecrets(TQXAction& action, ActionLog& log) {
  const TQXActionClass* actionClass = action.GetActionClass();
  if (actionClass == nullptr) return;
  for (const PublishedProperty& property : actionClass->properties) {
    if (property.storage != PropertyStorage::Secret) continue;
    try {
      PropertyValue value = property.get(action);
      std::string* const text = std::get_if<std::string>(&value);
      if (text == nullptr) continue;
      log.AddSecret(*text);
      Wipe(*text);
    } catch (const Exception&) {
      // Nobody can decrypt it, so nobody can log it either.
    }
  }
}

void ValidationErrors::AddError(const std::string& subject, const std::string& message) {
  errors_.push_back({subject, message});
  if (log_ != nullptr) log_->AddValidation(action_, subject, message);
}

}  // namespace qx
