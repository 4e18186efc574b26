// Which settings the document makes on MSXML. What the system's parser does with them differs from version to
// version, so a stand-in for its class notes them: the real object with a few of its calls led through here.
#include "platform/xml/XmlDocument.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <msxml2.h>
#include <oleauto.h>

#include <array>
#include <cstring>
#include <map>
#include <string>

namespace qx {
namespace {

// Of IXMLDOMDocument2: 7 of IDispatch, 36 of the node, 33 and 7 of its own.
constexpr std::size_t kSlots = 83;
using Slot = void*;

struct Notes {
  std::map<std::wstring, bool> settings;
  VARTYPE source = VT_EMPTY;
};
Notes notes;
std::array<Slot, kSlots> original, redirected;

// Where a virtual call of the interface lies in its table; compilers for this system keep that in the pointer.
template <class Member>
std::size_t SlotOf(Member member) {
  std::uintptr_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return (offset - 1) / sizeof(Slot);
}

template <class Call, class Member, class... Arguments>
HRESULT Forward(Member member, IXMLDOMDocument2* self, Arguments... arguments) {
  return reinterpret_cast<Call>(original[SlotOf(member)])(self, arguments...);
}

using PutTruth = HRESULT(STDMETHODCALLTYPE*)(IXMLDOMDocument2*, VARIANT_BOOL);

HRESULT STDMETHODCALLTYPE NoteAsync(IXMLDOMDocument2* self, VARIANT_BOOL value) {
  notes.settings[L"async"] = value != VARIANT_FALSE;
  return Forward<PutTruth>(&IXMLDOMDocument2::put_async, self, value);
}
HRESULT STDMETHODCALLTYPE NoteExternals(IXMLDOMDocument2* self, VARIANT_BOOL value) {
  notes.settings[L"resolveExternals"] = value != VARIANT_FALSE;
  return Forward<PutTruth>(&IXMLDOMDocument2::put_resolveExternals, self, value);
}
HRESULT STDMETHODCALLTYPE NoteValidation(IXMLDOMDocument2* self, VARIANT_BOOL value) {
  notes.settings[L"validateOnParse"] = value != VARIANT_FALSE;
  return Forward<PutTruth>(&IXMLDOMDocument2::put_validateOnParse, self, value);
}
HRESULT STDMETHODCALLTYPE NoteProperty(IXMLDOMDocument2* self, BSTR name, VARIANT value) {
  notes.settings[name] = value.vt == VT_BOOL && value.boolVal != VARIANT_FALSE;
  return Forward<HRESULT(STDMETHODCALLTYPE*)(IXMLDOMDocument2*, BSTR, VARIANT)>(
      &IXMLDOMDocument2::setProperty, self, name, value);
}
HRESULT STDMETHODCALLTYPE NoteLoad(IXMLDOMDocument2* self, VARIANT source, VARIANT_BOOL* loaded) {
  notes.source = source.vt;
  return Forward<HRESULT(STDMETHODCALLTYPE*)(IXMLDOMDocument2*, VARIANT, VARIANT_BOOL*)>(
      &IXMLDOMDocument2::load, self, source, loaded);
}

void Redirect(IXMLDOMDocument2* document) {
  Slot* const table = *reinterpret_cast<Slot**>(document);
  std::copy(table, table + kSlots, original.begin());
  redirected = original;
  redirected[SlotOf(&IXMLDOMDocument2::put_async)] = reinterpret_cast<Slot>(&NoteAsync);
  redirected[SlotOf(&IXMLDOMDocument2::put_resolveExternals)] = reinterpret_cast<Slot>(&NoteExternals);
  redirected[SlotOf(&IXMLDOMDocument2::put_validateOnParse)] = reinterpret_cast<Slot>(&NoteValidation);
  redirected[SlotOf(&IXMLDOMDocument2::setProperty)] = reinterpret_cast<Slot>(&NoteProperty);
  redirected[SlotOf(&IXMLDOMDocument2::load)] = reinterpret_cast<Slot>(&NoteLoad);
  *reinterpret_cast<Slot**>(document) = redirected.data();
}

// Makes documents through the class's own library, beneath the class that is registered here.
class StandIn final : public IClassFactory {
 public:
  explicit StandIn(IClassFactory* real) : real_(real) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory);
    *out = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
    const HRESULT result = real_->CreateInstance(outer, iid, out);
    if (SUCCEEDED(result)) Redirect(static_cast<IXMLDOMDocument2*>(*out));
    return result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  IClassFactory* real_;
};

TEST(XmlDocument, ProhibitsDocumentTypesAndResolvesNothing) {
  ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)));
  CLSID id;
  ASSERT_EQ(CLSIDFromProgID(L"Msxml2.DOMDocument.6.0", &id), S_OK);
  const HMODULE library = LoadLibraryW(L"msxml6.dll");
  ASSERT_NE(library, nullptr);
  using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
  const auto get =
      reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(library, "DllGetClassObject")));
  IClassFactory* real = nullptr;
  ASSERT_EQ(get(id, IID_IClassFactory, reinterpret_cast<void**>(&real)), S_OK);
  StandIn standIn(real);
  DWORD registration = 0;
  ASSERT_EQ(CoRegisterClassObject(id, &standIn, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration),
            S_OK);

  notes = {};
  {
    XmlDocument document;
    std::string bytes = "<r a='1'/>";
    document.Parse(bytes);
    EXPECT_EQ(document.Root().Attribute("a"), "1");
  }
  CoRevokeClassObject(registration);
  real->Release();
  CoUninitialize();

  const std::map<std::wstring, bool> expected = {
      {L"ProhibitDTD", true}, {L"async", false}, {L"resolveExternals", false}, {L"validateOnParse", false}};
  EXPECT_EQ(notes.settings, expected);
  EXPECT_EQ(notes.source, VT_UNKNOWN) << "a name would be read with %41 for A";
}

}  // namespace
}  // namespace qx
