// The host's registration and application services: where a package says what it contributes, and through
// which code without an action expands texts. All registrations come on the thread that loads the package.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "plugin/Qxaction.h"
#include "plugin/Qxframe.h"
#include "plugin/Qxoptions.h"

namespace qx {

// Registers action classes, property editors and property pages.
class IQXActionServices {
 public:
  // displayName: how the catalogue and build projects call it; bitmap: a bitmap resource of the package.
  virtual void RegisterAction(const TQXActionClass& actionClass, const std::string& displayName,
                              const std::string& category, const std::string& bitmap) = 0;
  // For properties of type string of that name, letter case aside; the property need not exist.
  virtual void RegisterPropertyEditor(const TQXActionClass& actionClass, const std::string& propertyName,
                                      const TQXPropertyEditorClass& editorClass) = 0;
  virtual void RegisterPropertyPages(const TQXActionClass& actionClass,
                                     std::span<const TFrameClass* const> pages) = 0;

 protected:
  ~IQXActionServices() = default;
};

// Registers options classes and finds the one object of each.
class IQXOptionsServices {
 public:
  // A class that is registered already is left as it is: one object a class.
  virtual void RegisterOptions(const TQXOptionsClass& optionsClass, const std::string& bitmap) = 0;
  virtual void RegisterOptionsPage(const TQXOptionsClass& optionsClass, const TFrameClass& page) = 0;
  // The registered object, created and loaded when it is first needed; null when there is none. The host's.
  virtual TQXOptionsObject* FindOptions(const std::string& category, const std::string& name) = 0;

 protected:
  ~IQXOptionsServices() = default;
};

// One call of a registered script function.
class IQXScriptCall {
 public:
  // Hands an options object to the script as the call's result; null gives the script's "nothing".
  virtual void SetResult(TQXOptionsObject* object) = 0;

 protected:
  ~IQXScriptCall() = default;
};

using TQXScriptHandler = void (*)(IQXScriptCall& call);

// Registers script functions and enumeration types; a name registered twice is kept once, the last one.
class IQXScriptingServices {
 public:
  virtual void RegisterFunction(const std::string& name, TQXScriptHandler handler) = 0;
  virtual void RegisterEnumeration(const std::string& name, std::span<const std::string_view> values) = 0;

 protected:
  ~IQXScriptingServices() = default;
};

// Expands texts with the host's variables for code that has no action (pages, a parser made for a page).
class IQXApplicationServices : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{8B4FA05C-6D9E-4E3F-9A7B-2C3D4E5F600A}");
  using Base = IInterface;
  // As TCustomQXAction::ExpandExpression.
  virtual std::string ExpandExpression(const std::string& text, bool nested) = 0;

 protected:
  ~IQXApplicationServices() = default;
};

// The services; valid from before a package's registration until after its unloading.
QX_API IQXActionServices& QXActionServices();
QX_API IQXOptionsServices& QXOptionsServices();
QX_API IQXScriptingServices& QXScriptingServices();
// For design time: expands with the variables of the build project that is open.
QX_API InterfacePtr<IQXApplicationServices> QXDesignApplicationServices();

}  // namespace qx
