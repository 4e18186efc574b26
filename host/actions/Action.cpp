// The bases of every action: the operations that a package calls, and the host's behaviour behind the 65
// virtual ones.
#include <algorithm>

#include "host/actions/ActionHost.h"
#include "host/actions/PropertyText.h"
#include "host/settings/Secrets.h"
#include "platform/Texts.h"
#include "plugin/Qxaction.h"

namespace qx {
namespace {

PropertyTable PropertiesOf(const TCustomQXAction::HostSide& host) {
  return host.actionClass != nullptr ? host.actionClass->properties : PropertyTable();
}

void KeepOutOfLog(const TCustomQXAction::HostSide& host, std::string_view secret) {
  if (host.surroundings.log != nullptr) host.surroundings.log->AddSecret(secret);
}

}  // namespace

TCustomQXAction::TCustomQXAction() : host_(std::make_unique<HostSide>()) {}
TCustomQXAction::~TCustomQXAction() = default;

void TCustomQXAction::SendMessage(const std::string& text) {
  const ActionSurroundings& around = host_->surroundings;
  if (around.log != nullptr) around.log->AddMessage(around.number, text);
}

void TCustomQXAction::SendStatusMessage(const InterfacePtr<IQXActionLogMessage>& message) {
  const ActionSurroundings& around = host_->surroundings;
  if (around.log != nullptr && message) around.log->AddStatus(around.number, *message);
}

InterfacePtr<IQXActionLogMessage> TCustomQXAction::CreateStatusMessage() { return CreateLogMessage(); }

std::string TCustomQXAction::ExpandExpression(const std::string& text, bool nested) {
  return VariablesFor(host_->surroundings).Expand(text, nested);
}

bool TCustomQXAction::TryExpandExpression(const std::string& caption, const std::string& text,
                                          std::string& result, bool nested) {
  try {
    result = ExpandExpression(text, nested);
    return true;
  } catch (const Exception& failure) {
    const InterfacePtr<IQXActionLogMessage> message = CreateStatusMessage();
    message->SetHeading(caption);
    message->AppendDetail(failure.Message());
    SendStatusMessage(message);
    return false;
  }
}

InterfacePtr<IQXActionContext> TCustomQXAction::GetActionContext() { return host_->context; }

void TCustomQXAction::RegisterDynamicProperty(const std::string& name) {
  std::vector<std::string>& names = host_->dynamicProperties;
  const auto same = [&](const std::string& known) { return SameText(known, name); };
  if (std::none_of(names.begin(), names.end(), same)) names.push_back(name);
}

void TCustomQXAction::UnRegisterDynamicProperty(const std::string& name) {
  std::erase_if(host_->dynamicProperties, [&](const std::string& known) { return SameText(known, name); });
}

const TQXActionClass* TCustomQXAction::GetActionClass() const { return host_->actionClass; }

TQXAction::TQXAction() = default;
TQXAction::~TQXAction() = default;

// The object in the build project.

void TQXAction::ResetXMLID() { Host().objectId.clear(); }
std::string TQXAction::GetObjectID() const { return Host().objectId; }
void TQXAction::SetObjectID(const std::string& id) { Host().objectId = id; }
void TQXAction::ReadState(IQXStateReader& reader) { ReadProperties(*this, PropertiesOf(Host()), reader); }
void TQXAction::WriteState(IQXStateWriter& writer) { WriteProperties(*this, PropertiesOf(Host()), writer); }
void TQXAction::Initialise() { ResetBuildStatus(); }
void TQXAction::Loaded() {}
void TQXAction::Create() {}
void TQXAction::SetActionTypeID(int id) { Host().typeId = id; }
void TQXAction::BeforeDeletion() {}
TQXAction* TQXAction::GetObjectImplmentation() { return this; }

// Every stored property gets the value that a new object of the class has.
void TQXAction::Clear() {
  ResetBuildStatus();
  if (Host().actionClass == nullptr) return;
  const std::unique_ptr<TQXAction> fresh = MakeAction(*Host().actionClass, Host().surroundings);
  for (const PublishedProperty& property : PropertiesOf(Host())) {
    if (property.storage == PropertyStorage::Stored) property.set(*this, property.get(*fresh));
  }
}

// An action without work of its own has done it.
bool TQXAction::Execute() { return true; }
bool TQXAction::Validate(IQXActionValidationError&) { return true; }

// Children. This host runs flat lists of actions: it keeps them for packages that build trees, and runs none.

void TQXAction::GetChildren(std::vector<TQXAction*>& children) {
  children.insert(children.end(), Host().children.begin(), Host().children.end());
}
void TQXAction::AddChildObject(TQXAction& child) { Host().children.push_back(&child); }
TQXAction* TQXAction::GetChildAction(int index) {
  if (index < 0 || index >= GetChildActionCount()) {
    throw Exception("List index out of bounds (" + std::to_string(index) + ")");
  }
  return Host().children[static_cast<std::size_t>(index)];
}
int TQXAction::GetChildActionCount() const { return static_cast<int>(Host().children.size()); }
TQXAction* TQXAction::GetNextActionSource() { return nullptr; }
TQXAction* TQXAction::GetNextAction() { return nullptr; }

// Titles. What nobody set is the action's name.

std::string TQXAction::GetActionLogTitle() const {
  return Host().logTitle.empty() ? InternalGetActionName() : Host().logTitle;
}
void TQXAction::SetActionLogTitle(const std::string& title) { Host().logTitle = title; }
std::string TQXAction::GetDescription() const {
  return Host().description.empty() ? InternalGetActionName() : Host().description;
}
void TQXAction::SetDescription(const std::string& description) { Host().description = description; }
std::string TQXAction::GetDescriptionFormatString() const { return {}; }
std::string TQXAction::GetDescriptionKeyValue() const { return Host().descriptionKey; }
void TQXAction::SetDescriptionKeyValue(const std::string& value) { Host().descriptionKey = value; }
std::string TQXAction::InternalGetActionName() const {
  return Host().actionClass != nullptr ? GetActionName(*Host().actionClass) : std::string();
}
std::string TQXAction::GetActionName(const TQXActionClass& actionClass) const {
  return actionClass.getActionName();
}
std::string TQXAction::GetStatusText() const { return Host().statusText; }
void TQXAction::ResetBuildStatus() { Host().statusText.clear(); }
int TQXAction::GetImageIndex() const { return -1; }
std::string TQXAction::GetQuickHelpFilename() const { return {}; }
int TQXAction::GetHelpTopicID() const { return 0; }
std::string TQXAction::GetCopyRight() const { return {}; }

// What kind of action it is: a plain one, whose failure ends the run.

bool TQXAction::GetCanHaveScripts() const { return false; }
bool TQXAction::GetIsSwitchActionList() const { return false; }
bool TQXAction::GetIsStopAction() const { return false; }
bool TQXAction::GetIsExitActionListAction() const { return false; }
bool TQXAction::GetCanIgnoreFailure() const { return false; }
bool TQXAction::GetIsTryAction() const { return false; }
bool TQXAction::GetIsCatchAction() const { return false; }
bool TQXAction::GetIsFinallyAction() const { return false; }
bool TQXAction::GetIsEndBlockAction() const { return false; }
bool TQXAction::GetIsSwitchAction() const { return false; }
bool TQXAction::GetIsCaseAction() const { return false; }
bool TQXAction::GetIsElseAction() const { return false; }
bool TQXAction::GetIsErrorFatal() const { return true; }
bool TQXAction::ShowInCodeComplete() const { return true; }
bool TQXAction::IsComment() const { return false; }

// How the property grid shows it: packages append to what the host says, which is nothing.

void TQXAction::GetNonSearchProperties(TStringList&) const {}
void TQXAction::GetHiddenProperties(TStringList&) const {}
void TQXAction::GetPropertyHelp(TStringList&) const {}
void TQXAction::GetPropertyAlias(TStringList&) const {}
void TQXAction::GetReadOnlyProperties(TStringList&) const {}
std::string TQXAction::GetDefaultPropertyName() const { return {}; }
void TQXAction::Updated() {}

// Running.

void TQXAction::InitialiseScriptParams() {}
bool TQXAction::GetIsPaused() const { return false; }
void TQXAction::SkipPause() {}
bool TQXAction::StopSignalled() const {
  const std::atomic<bool>* stopping = Host().surroundings.stopping;
  return stopping != nullptr && stopping->load(std::memory_order_relaxed);
}
void TQXAction::TerminateAction() {}
bool TQXAction::CanTerminate() const { return false; }

// Secrets. Whoever has the clear text in hand may let it slip into the log, so the log learns it first.

std::string TQXAction::EncryptString(const std::string& text, const std::string& key) {
  KeepOutOfLog(Host(), text);
  return EncryptSecret(text, key);
}

std::string TQXAction::DecryptString(const std::string& text, const std::string& key) {
  std::string clear = DecryptSecret(text, key);
  KeepOutOfLog(Host(), clear);
  return clear;
}

}  // namespace qx
