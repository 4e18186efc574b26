#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <utility>

#include "platform/WindowsText.h"
#include "platform/registry/ComObject.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

// The thread's use of COM, in whichever mode the thread is already in.
class Apartment {
 public:
  Apartment() : entered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~Apartment() {
    if (entered_) CoUninitialize();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

 private:
  bool entered_;
};

struct Variant : VARIANT {
  Variant() { VariantInit(this); }
  ~Variant() { VariantClear(this); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
};

class AutomationObject final : public ComObject {
 public:
  explicit AutomationObject(const std::string& moniker) : moniker_(moniker) {
    void* found = nullptr;
    const std::wstring name = system::ToWide(moniker);
    if (SUCCEEDED(CoGetObject(name.c_str(), nullptr, IID_IDispatch, &found))) {
      object_ = static_cast<IDispatch*>(found);
    }
  }
  ~AutomationObject() override {
    if (object_ != nullptr) object_->Release();
  }
  bool IsBound() const { return object_ != nullptr; }

  std::string GetText(const std::string& property) override {
    std::wstring name = system::ToWide(property);
    LPOLESTR names[] = {name.data()};
    DISPID id = 0;
    HRESULT result = object_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    Variant value;
    if (SUCCEEDED(result)) {
      DISPPARAMS none{};
      result = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value,
                               nullptr, nullptr);
    }
    if (SUCCEEDED(result)) result = VariantChangeType(&value, &value, 0, VT_BSTR);
    if (FAILED(result)) {
      throw Exception("Cannot read the property \"" + property + "\" of " + moniker_ + ": " +
                      system::ErrorText(static_cast<unsigned long>(result)));
    }
    if (value.bstrVal == nullptr) return {};
    return system::FromWide({value.bstrVal, SysStringLen(value.bstrVal)});
  }

 private:
  Apartment apartment_;  // left last
  std::string moniker_;
  IDispatch* object_ = nullptr;
};

}  // namespace

std::unique_ptr<ComObject> BindComObject(const std::string& moniker) {
  auto object = std::make_unique<AutomationObject>(moniker);
  if (!object->IsBound()) return nullptr;
  return object;
}

}  // namespace qx
