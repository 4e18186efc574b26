// Keeping what packages register.
#include "host/actions/Catalogue.h"

#include <algorithm>
#include <utility>

#include "host/actions/ActionHost.h"
#include "platform/Nearest.h"
#include "platform/Texts.h"

namespace qx {
namespace {

RegistrationCall::Argument Plain(std::string name, std::string_view value) {
  return {std::move(name), {std::string(value)}, false};
}

// Packages reach the host through functions that take no host, so the process keeps which catalogue they lead
// to. It belongs to whoever made the CatalogueInUse.
constinit Catalogue* inUse = nullptr;

Catalogue& Serving() {
  if (inUse == nullptr) throw Exception("No host is there to register with");
  return *inUse;
}

// Expands with whatever build project is open at the moment of use.
class DesignServices final : public Implements<IQXApplicationServices> {
 public:
  std::string ExpandExpression(const std::string& text, bool nested) override {
    ActionSurroundings around;
    around.variables = inUse == nullptr ? nullptr : inUse->DesignVariables();
    return VariablesFor(around).Expand(text, nested);
  }
};

class ScriptCall final : public IQXScriptCall {
 public:
  void SetResult(TQXOptionsObject* object) override { result = object; }
  TQXOptionsObject* result = nullptr;
};

template <class Entries>
auto FindNamed(Entries& entries, std::string_view name) {
  return std::find_if(entries.begin(), entries.end(),
                      [&](const auto& entry) { return SameText(entry.name, name); });
}

}  // namespace

Catalogue::Catalogue() = default;
Catalogue::~Catalogue() { Forget(); }

void Catalogue::RegisterAction(const TQXActionClass& actionClass, const std::string& displayName,
                               const std::string& category, const std::string& bitmap) {
  calls_.push_back({"RegisterAction",
                    {Plain("class", actionClass.className), Plain("name", displayName),
                     Plain("category", category), Plain("bitmap", bitmap)}});
  const auto known = std::find_if(actions_.begin(), actions_.end(), [&](const RegisteredAction& action) {
    return action.actionClass == &actionClass;
  });
  if (known != actions_.end()) return;
  if (const RegisteredAction* other = FindAction(displayName)) {
    throw Exception("The action \"" + displayName + "\" is registered already, by the class " +
                    std::string(other->actionClass->className));
  }
  actions_.push_back({&actionClass, displayName, category, bitmap, {}, {}});
}

RegisteredAction& Catalogue::NeedClass(const TQXActionClass& actionClass) {
  const auto found = std::find_if(actions_.begin(), actions_.end(), [&](const RegisteredAction& action) {
    return action.actionClass == &actionClass;
  });
  if (found == actions_.end()) {
    throw Exception("The class " + std::string(actionClass.className) + " is not registered");
  }
  return *found;
}

void Catalogue::RegisterPropertyEditor(const TQXActionClass& actionClass, const std::string& propertyName,
                                       const TQXPropertyEditorClass& editorClass) {
  calls_.push_back({"RegisterPropertyEditor",
                    {Plain("class", actionClass.className), Plain("property", propertyName),
                     Plain("editor", editorClass.className)}});
  NeedClass(actionClass).editors.push_back({propertyName, &editorClass});
}

void Catalogue::RegisterPropertyPages(const TQXActionClass& actionClass,
                                      std::span<const TFrameClass* const> pages) {
  RegistrationCall::Argument names{"pages", {}, true};
  for (const TFrameClass* page : pages) names.values.emplace_back(page->className);
  calls_.push_back({"RegisterPropertyPages", {Plain("class", actionClass.className), std::move(names)}});
  std::vector<const TFrameClass*>& known = NeedClass(actionClass).pages;
  known.insert(known.end(), pages.begin(), pages.end());
}

RegisteredOptions* Catalogue::FindOptionsClass(const TQXOptionsClass& optionsClass) {
  const auto found = std::find_if(options_.begin(), options_.end(), [&](const RegisteredOptions& entry) {
    return entry.optionsClass == &optionsClass;
  });
  return found == options_.end() ? nullptr : &*found;
}

// Packages register a class once an action; it has one object all the same (docs/deliberate.md).
void Catalogue::RegisterOptions(const TQXOptionsClass& optionsClass, const std::string& bitmap) {
  calls_.push_back({"RegisterOptions", {Plain("class", optionsClass.className), Plain("bitmap", bitmap)}});
  if (FindOptionsClass(optionsClass) == nullptr) options_.push_back({&optionsClass, bitmap, {}, nullptr});
}

void Catalogue::RegisterOptionsPage(const TQXOptionsClass& optionsClass, const TFrameClass& page) {
  calls_.push_back(
      {"RegisterOptionsPage", {Plain("class", optionsClass.className), Plain("page", page.className)}});
  RegisteredOptions* entry = FindOptionsClass(optionsClass);
  if (entry == nullptr)
    throw Exception("The class " + std::string(optionsClass.className) + " is not registered");
  entry->pages.push_back(&page);
}

TQXOptionsObject* Catalogue::FindOptions(const std::string& category, const std::string& name) {
  for (RegisteredOptions& entry : options_) {
    if (entry.optionsClass->getCategory() == category && entry.optionsClass->getName() == name)
      return &Load(entry);
  }
  return nullptr;
}

TQXOptionsObject& Catalogue::Load(RegisteredOptions& options) {
  const std::lock_guard lock(objects_);
  if (options.object == nullptr) {
    options.object = options.optionsClass->construct();
    if (options.object == nullptr) {
      throw Exception("The class " + std::string(options.optionsClass->className) +
                      " made no options object");
    }
    if (store_ != nullptr) options.object->LoadOptions(*store_->Reader(options.optionsClass->getOptionKey()));
  }
  return *options.object;
}

TQXOptionsObject& Catalogue::ObjectOf(const RegisteredOptions& options) {
  return Load(options_.at(static_cast<std::size_t>(&options - options_.data())));
}

void Catalogue::UseOptionsStore(OptionsStore* store) { store_ = store; }

void Catalogue::SaveOptions() {
  if (store_ == nullptr) return;
  const std::lock_guard lock(objects_);
  for (const RegisteredOptions& entry : options_) {
    if (entry.object == nullptr || !entry.object->IsModified()) continue;
    entry.object->SaveOptions(*store_->Writer(entry.optionsClass->getOptionKey()));
  }
  if (store_->IsChanged()) store_->Save();
}

void Catalogue::RestoreOptions() {
  if (store_ == nullptr) return;
  const std::lock_guard lock(objects_);
  store_->Restore();
  for (const RegisteredOptions& entry : options_) {
    if (entry.object != nullptr)
      entry.object->LoadOptions(*store_->Reader(entry.optionsClass->getOptionKey()));
  }
}

void Catalogue::RegisterFunction(const std::string& name, TQXScriptHandler handler) {
  calls_.push_back({"RegisterFunction", {Plain("name", name)}});
  const auto known = FindNamed(functions_, name);
  if (known == functions_.end()) {
    functions_.push_back({name, handler});
  } else {
    *known = {name, handler};
  }
}

void Catalogue::RegisterEnumeration(const std::string& name, std::span<const std::string_view> values) {
  std::vector<std::string> texts(values.begin(), values.end());
  calls_.push_back({"RegisterEnumeration", {Plain("name", name), {"values", texts, true}}});
  const auto known = FindNamed(enumerations_, name);
  if (known == enumerations_.end()) {
    enumerations_.push_back({name, std::move(texts)});
  } else {
    *known = {name, std::move(texts)};
  }
}

const RegisteredAction* Catalogue::FindAction(std::string_view displayName) const {
  const auto found = std::find_if(actions_.begin(), actions_.end(), [&](const RegisteredAction& action) {
    return SameText(action.displayName, displayName);
  });
  return found == actions_.end() ? nullptr : &*found;
}

const RegisteredAction& Catalogue::NeedAction(std::string_view displayName) const {
  if (const RegisteredAction* action = FindAction(displayName)) return *action;
  std::vector<std::string> names;
  for (const RegisteredAction& action : actions_) names.push_back(action.displayName);
  throw Exception("There is no action " + Quoted(displayName) + NameAdvice(displayName, names));
}

const TQXPropertyEditorClass* Catalogue::FindEditor(const TQXActionClass& actionClass,
                                                    std::string_view propertyName) const {
  const auto isText = [&](const PublishedProperty& property) {
    return property.kind == PropertyKind::Text && SameText(property.name, propertyName);
  };
  const PropertyTable table = actionClass.properties;
  if (std::none_of(table.begin(), table.end(), isText)) return nullptr;
  for (const RegisteredAction& action : actions_) {
    if (action.actionClass != &actionClass) continue;
    const auto found =
        std::find_if(action.editors.rbegin(), action.editors.rend(),
                     [&](const RegisteredEditor& e) { return SameText(e.propertyName, propertyName); });
    return found == action.editors.rend() ? nullptr : found->editorClass;
  }
  return nullptr;
}

TQXOptionsObject* Catalogue::CallFunction(std::string_view name) {
  const auto found = FindNamed(functions_, name);
  if (found == functions_.end()) return nullptr;
  ScriptCall call;
  found->handler(call);
  return call.result;
}

void Catalogue::Forget() {
  const std::lock_guard lock(objects_);
  options_.clear();
  actions_.clear();
  functions_.clear();
  enumerations_.clear();
  calls_.clear();
}

CatalogueInUse::CatalogueInUse(Catalogue& catalogue) : before_(std::exchange(inUse, &catalogue)) {}
CatalogueInUse::~CatalogueInUse() { inUse = before_; }

IQXActionServices& QXActionServices() { return Serving(); }
IQXOptionsServices& QXOptionsServices() { return Serving(); }
IQXScriptingServices& QXScriptingServices() { return Serving(); }

InterfacePtr<IQXApplicationServices> QXDesignApplicationServices() { return MakeInterface<DesignServices>(); }

}  // namespace qx
