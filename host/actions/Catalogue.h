// What packages have registered: actions with their editors and pages, options objects, script functions and
// enumerations. It stands behind the contract's three registration services, and keeps the calls as they came.
#pragma once

#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/actions/Variables.h"
#include "host/settings/OptionsStore.h"
#include "plugin/Qxservices.h"

namespace qx {

// One registration call, as it was made.
struct RegistrationCall {
  struct Argument {
    std::string name;
    std::vector<std::string> values;  // one for a plain argument
    bool isList = false;
  };
  std::string operation;  // "RegisterAction"
  std::vector<Argument> arguments;
};

struct RegisteredEditor {
  std::string propertyName;
  const TQXPropertyEditorClass* editorClass;
};

struct RegisteredAction {
  const TQXActionClass* actionClass;
  std::string displayName;
  std::string category;
  std::string bitmap;
  std::vector<RegisteredEditor> editors;  // in the order they were registered
  std::vector<const TFrameClass*> pages;  // likewise
};

struct RegisteredOptions {
  const TQXOptionsClass* optionsClass;
  std::string bitmap;
  std::vector<const TFrameClass*> pages;
  std::unique_ptr<TQXOptionsObject> object;  // made when it is first asked for
};

struct RegisteredFunction {
  std::string name;
  TQXScriptHandler handler;
};

struct RegisteredEnumeration {
  std::string name;
  std::vector<std::string> values;
};

// Registrations come on one thread, before or after all else; options objects may be asked for from any
// thread. What it holds belongs to a package's library: Forget before the library goes.
class Catalogue final : public IQXActionServices, public IQXOptionsServices, public IQXScriptingServices {
 public:
  Catalogue();
  ~Catalogue();
  Catalogue(const Catalogue&) = delete;
  Catalogue& operator=(const Catalogue&) = delete;

  // The contract's services. RegisterAction raises Exception when another class has that display name; editors
  // and pages for a class that was not registered raise too. Registering a class again changes nothing.
  void RegisterAction(const TQXActionClass& actionClass, const std::string& displayName,
                      const std::string& category, const std::string& bitmap) override;
  void RegisterPropertyEditor(const TQXActionClass& actionClass, const std::string& propertyName,
                              const TQXPropertyEditorClass& editorClass) override;
  void RegisterPropertyPages(const TQXActionClass& actionClass,
                             std::span<const TFrameClass* const> pages) override;
  void RegisterOptions(const TQXOptionsClass& optionsClass, const std::string& bitmap) override;
  void RegisterOptionsPage(const TQXOptionsClass& optionsClass, const TFrameClass& page) override;
  TQXOptionsObject* FindOptions(const std::string& category, const std::string& name) override;
  void RegisterFunction(const std::string& name, TQXScriptHandler handler) override;
  void RegisterEnumeration(const std::string& name, std::span<const std::string_view> values) override;

  // Every call since the last Forget, in order.
  const std::vector<RegistrationCall>& Calls() const { return calls_; }
  // In the order of registration.
  const std::vector<RegisteredAction>& Actions() const { return actions_; }
  const std::vector<RegisteredOptions>& Options() const { return options_; }
  const std::vector<RegisteredFunction>& Functions() const { return functions_; }
  const std::vector<RegisteredEnumeration>& Enumerations() const { return enumerations_; }

  // The action of that display name, letter case aside; null when there is none.
  const RegisteredAction* FindAction(std::string_view displayName) const;
  // The same; raises Exception that names the nearest one.
  const RegisteredAction& NeedAction(std::string_view displayName) const;
  // The last editor registered for a text property of that name, letter case aside; null when there is none.
  const TQXPropertyEditorClass* FindEditor(const TQXActionClass& actionClass,
                                           std::string_view propertyName) const;

  // Where options objects are loaded from and saved to; it outlives what is registered. Null: they keep their
  // defaults and nothing is saved. Objects that exist already are not loaded anew.
  void UseOptionsStore(OptionsStore* store);
  // The object of the entry, made and loaded if it was not yet.
  TQXOptionsObject& ObjectOf(const RegisteredOptions& options);
  // Hands every modified object to the store, and saves the store when anything changed.
  void SaveOptions();
  // Drops what was set and not saved: the store reads its file anew, and the objects that exist are loaded
  // from it. Raises Exception naming the file.
  void RestoreOptions();

  // Calls a script function as a script would; its result is null when it gave none, or nothing is registered
  // under that name.
  TQXOptionsObject* CallFunction(std::string_view name);

  // The variables of the build project that is open, for code that runs outside a build; null: the
  // environment's alone. They outlive their use.
  void UseDesignVariables(const Variables* variables) { designVariables_ = variables; }
  const Variables* DesignVariables() const { return designVariables_; }

  // Drops everything that was registered, the objects too. Modified options that were not saved are lost.
  void Forget();

 private:
  RegisteredAction& NeedClass(const TQXActionClass& actionClass);
  RegisteredOptions* FindOptionsClass(const TQXOptionsClass& optionsClass);
  TQXOptionsObject& Load(RegisteredOptions& options);

  std::vector<RegistrationCall> calls_;
  std::vector<RegisteredAction> actions_;
  std::vector<RegisteredOptions> options_;
  std::vector<RegisteredFunction> functions_;
  std::vector<RegisteredEnumeration> enumerations_;
  OptionsStore* store_ = nullptr;
  const Variables* designVariables_ = nullptr;
  std::recursive_mutex objects_;  // an object that loads may ask for another, or for itself
};

// While one is alive, the contract's free functions (QXActionServices() and its siblings) lead to its
// catalogue, which outlives it. Of several the last one made counts, and ends first. The thread that loads
// packages.
class CatalogueInUse {
 public:
  explicit CatalogueInUse(Catalogue& catalogue);
  ~CatalogueInUse();
  CatalogueInUse(const CatalogueInUse&) = delete;
  CatalogueInUse& operator=(const CatalogueInUse&) = delete;

 private:
  Catalogue* before_;
};

}  // namespace qx
