// Actions: the base classes that every action of a package derives from, the log they write to and the
// collector of validation errors. The host's runtime defines the classes and implements the interfaces.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/Qxproperties.h"
#include "plugin/Qxstrings.h"
#include "plugin/Qxtypes.h"

namespace qx {

class TQXAction;
class IQXApplicationServices;

// A structured log entry: a heading and any number of detail lines, sent to the log as one unit.
// Made by CreateStatusMessage; used on the thread that made it until it is sent.
class IQXActionLogMessage : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{5B1F9A44-0C5D-4A57-9E0B-7C6A5E3F1D03}");
  using Base = IInterface;
  // Appends a line of detail text.
  virtual void AppendDetail(std::string_view text) = 0;
  // Sets the heading; the last one set holds.
  virtual void SetHeading(std::string_view text) = 0;

 protected:
  ~IQXActionLogMessage() = default;
};

// Collector of the problems that Validate finds; implemented by the host.
class IQXActionValidationError : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{A1C27C0E-3E0B-4F6B-8B65-3B8D1C9F2E04}");
  using Base = IInterface;
  // subject: short name of the faulty setting; message: the full sentence shown to the user.
  virtual void AddError(const std::string& subject, const std::string& message) = 0;

 protected:
  ~IQXActionValidationError() = default;
};

// The running build's context; implemented by the host.
class IQXActionContext : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{D7E0B1B5-1F5D-4E1C-A5A1-6E0F7C3B4A05}");
  using Base = IInterface;
  // Through which code that has no action expands texts. Never null.
  virtual InterfacePtr<IQXApplicationServices> GetApplicationServices() = 0;

 protected:
  ~IQXActionContext() = default;
};

// What an action class is to the host: its names, its properties and how to make one. A package holds one
// constant record a class and registers it; the record must outlive the package's registration.
struct TQXActionClass {
  std::string_view className;                 // "TQXVSDotNetAction"
  std::string (*getActionName)();             // the class-level name, "Build VS.Net Solution"
  PropertyTable properties;                   // in the order of declaration
  std::unique_ptr<TQXAction> (*construct)();  // makes one; the host then attaches it and calls Create
};

// Where ReadState reads from and WriteState writes to: the host's build project. Values are texts in the
// host's persistent form (True/False, decimal numbers, value names).
class IQXStateReader {
 public:
  virtual bool ReadText(std::string_view name, std::string& value) = 0;
  virtual bool ReadList(std::string_view name, TStringList& value) = 0;

 protected:
  ~IQXStateReader() = default;
};
class IQXStateWriter {
 public:
  virtual void WriteText(std::string_view name, const std::string& value) = 0;
  virtual void WriteList(std::string_view name, const TStringList& value) = 0;

 protected:
  ~IQXStateWriter() = default;
};

// The implementation behind TQXAction: the non-virtual operations that a package calls. Defined by the host.
class QX_API TCustomQXAction : public TPersistent {
 public:
  TCustomQXAction();
  ~TCustomQXAction() override;
  TCustomQXAction(const TCustomQXAction&) = delete;
  TCustomQXAction& operator=(const TCustomQXAction&) = delete;

  // Appends a plain line to the action's log. Any thread.
  void SendMessage(const std::string& text);
  // Sends a built message to the log. Any thread. The message may not be changed afterwards.
  void SendStatusMessage(const InterfacePtr<IQXActionLogMessage>& message);
  // A new, empty message that belongs to this action. Any thread.
  InterfacePtr<IQXActionLogMessage> CreateStatusMessage();
  // The text with the host's variables expanded; `nested` expands the replaced text again. Raises Exception
  // when the text cannot be expanded ("Undefined variable : NAME").
  std::string ExpandExpression(const std::string& text, bool nested);
  // The same, but a failure is logged under the caption and told by the result.
  bool TryExpandExpression(const std::string& caption, const std::string& text, std::string& result,
                           bool nested);
  // The running build's context. Never null once the host has attached the action.
  InterfacePtr<IQXActionContext> GetActionContext();
  // Adds a name to, or removes it from, the host's list of properties that change while the action runs.
  // Adding a name twice keeps one; removing an unknown name does nothing.
  void RegisterDynamicProperty(const std::string& name);
  void UnRegisterDynamicProperty(const std::string& name);

  // The class record the host made this action from; null before it was attached.
  const TQXActionClass* GetActionClass() const;

  // The host's side of the action. Opaque to packages.
  struct HostSide;
  HostSide& Host() { return *host_; }
  const HostSide& Host() const { return *host_; }

 private:
  std::unique_ptr<HostSide> host_;
};

// Base of every action. The 65 virtual operations stand in the order of their slots, after the destructor:
// add none, remove none, change no order. Overriding fewer keeps the host's behaviour.
class QX_API TQXAction : public TCustomQXAction {
 public:
  TQXAction();
  ~TQXAction() override;

  virtual void ResetXMLID();                                      // 1: forgets the object's identifier
  virtual std::string GetObjectID() const;                        // 2: identifier in the build project
  virtual void SetObjectID(const std::string& id);                // 3
  virtual void ReadState(IQXStateReader& reader);                 // 4: loads the published properties
  virtual void WriteState(IQXStateWriter& writer);                // 5: saves the stored ones
  virtual void Initialise();                                      // 6: before a build, after loading
  virtual void GetChildren(std::vector<TQXAction*>& children);    // 7
  virtual void Loaded();                                          // 8: after ReadState
  virtual void AddChildObject(TQXAction& child);                  // 9
  virtual void Create();                                          // 10: virtual constructor; sets defaults
  virtual void SetActionTypeID(int id);                           // 11
  virtual void BeforeDeletion();                                  // 12
  virtual bool Execute();                                         // 13: on the build thread; true = success
  virtual std::string GetActionLogTitle() const;                  // 14
  virtual void SetActionLogTitle(const std::string& title);       // 15
  virtual std::string GetDescription() const;                     // 16
  virtual void SetDescription(const std::string& description);    // 17
  virtual TQXAction* GetObjectImplmentation();                    // 18: spelled so; the object itself
  virtual bool GetCanHaveScripts() const;                         // 19
  virtual bool GetIsSwitchActionList() const;                     // 20
  virtual bool GetIsStopAction() const;                           // 21
  virtual bool GetIsExitActionListAction() const;                 // 22
  virtual bool GetCanIgnoreFailure() const;                       // 23
  virtual bool GetIsTryAction() const;                            // 24
  virtual bool GetIsCatchAction() const;                          // 25
  virtual bool GetIsFinallyAction() const;                        // 26
  virtual bool GetIsEndBlockAction() const;                       // 27
  virtual bool GetIsSwitchAction() const;                         // 28
  virtual bool GetIsCaseAction() const;                           // 29
  virtual bool GetIsElseAction() const;                           // 30
  virtual bool GetIsErrorFatal() const;                           // 31
  virtual std::string GetStatusText() const;                      // 32
  virtual void ResetBuildStatus();                                // 33
  virtual void Clear();                                           // 34: back to the defaults
  virtual int GetImageIndex() const;                              // 35
  virtual TQXAction* GetNextActionSource();                       // 36
  virtual TQXAction* GetNextAction();                             // 37
  virtual std::string InternalGetActionName() const;              // 38
  virtual bool ShowInCodeComplete() const;                        // 39
  virtual std::string GetDescriptionFormatString() const;         // 40
  virtual std::string GetDescriptionKeyValue() const;             // 41
  virtual void SetDescriptionKeyValue(const std::string& value);  // 42
  virtual void GetNonSearchProperties(TStringList& names) const;  // 43
  virtual bool Validate(IQXActionValidationError& errors);        // 44: before a build; true = can run
  virtual void GetHiddenProperties(TStringList& names) const;     // 45: names the grid does not show
  virtual void GetPropertyHelp(TStringList& lines) const;         // 46
  virtual void GetPropertyAlias(TStringList& lines) const;        // 47: "[Group]" and "Name=Caption" lines
  virtual void GetReadOnlyProperties(TStringList& names) const;   // 48
  virtual std::string GetDefaultPropertyName() const;             // 49
  virtual void InitialiseScriptParams();                          // 50
  virtual bool GetIsPaused() const;                               // 51
  virtual void SkipPause();                                       // 52
  virtual std::string EncryptString(const std::string& text, const std::string& key);  // 53: reversible
  virtual std::string DecryptString(const std::string& text, const std::string& key);  // 54: raises Exception
  virtual bool StopSignalled() const;                // 55: whether the build is being stopped
  virtual void TerminateAction();                    // 56: any thread; asks Execute to end
  virtual bool CanTerminate() const;                 // 57
  virtual std::string GetQuickHelpFilename() const;  // 58: relative to the host's help folder
  virtual int GetHelpTopicID() const;                // 59
  virtual void Updated();                            // 60: a property was changed by an editor
  virtual std::string GetCopyRight() const;          // 61
  virtual bool IsComment() const;                    // 62
  virtual std::string GetActionName(const TQXActionClass& actionClass) const;  // 63: class-level
  virtual TQXAction* GetChildAction(int index);                                // 64
  virtual int GetChildActionCount() const;                                     // 65
};

}  // namespace qx
