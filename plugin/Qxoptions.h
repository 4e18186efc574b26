// Options: a package's global settings, kept in the host's options store and edited in its options dialog.
// The host owns every options object; the package finds it through QXOptionsServices.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "plugin/Qxproperties.h"
#include "plugin/Qxtypes.h"

namespace qx {

class TQXOptionsObject;

// What an options class is to the host. The record must outlive the package's registration.
struct TQXOptionsClass {
  std::string_view className;     // "TVSDotNetOptions"
  std::string (*getName)();       // shown in the options dialog's tree
  std::string (*getCategory)();   // the branch of the tree
  std::string (*getOptionKey)();  // names the object's section in the options store
  PropertyTable properties;
  std::unique_ptr<TQXOptionsObject> (*construct)();
};

// Reads the stored values of one options object, already standing in its section of the store.
class IQXOptionsReader : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{6F2D8E3A-4B7C-4C1D-9E5F-0A1B2C3D4E08}");
  using Base = IInterface;
  virtual std::string ReadString(const std::string& key, const std::string& defaultValue) = 0;
  // A value that is no integer reads as the default.
  virtual std::int32_t ReadInteger(const std::string& key, std::int32_t defaultValue) = 0;

 protected:
  ~IQXOptionsReader() = default;
};

class IQXOptionsWriter : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{7A3E9F4B-5C8D-4D2E-8F6A-1B2C3D4E5F09}");
  using Base = IInterface;
  virtual void WriteString(const std::string& key, const std::string& value) = 0;
  virtual void WriteInteger(const std::string& key, std::int32_t value) = 0;

 protected:
  ~IQXOptionsWriter() = default;
};

// Base of options objects. An IInterface that the host owns: references to it are not counted.
class QX_API TQXOptionsObject : public AnswersUncounted<IInterface>, public TPersistent {
 public:
  explicit TQXOptionsObject(const TQXOptionsClass& optionsClass);
  ~TQXOptionsObject() override;

  // Called by the host with a reader in the object's section; overriders call this first. Clears the modified flag.
  virtual void LoadOptions(IQXOptionsReader& reader);
  // Called by the host when the modified flag is set; overriders call this first. Clears the modified flag.
  virtual void SaveOptions(IQXOptionsWriter& writer);
  virtual bool IsModified() const;
  virtual std::string GetOptionType() const;  // the class name
  virtual std::string GetOptionsName() const;
  virtual std::string GetOptionsCategory() const;
  const TQXOptionsClass& GetOptionsClass() const { return *class_; }

 protected:
  // The inherited modified flag, by which the host knows that it has to save.
  void SetModified() { modified_ = true; }

 private:
  const TQXOptionsClass* class_;
  bool modified_ = false;
};

}  // namespace qx
