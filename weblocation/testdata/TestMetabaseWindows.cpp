#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <cstdlib>
#include <cwchar>
#include <string>

#include "weblocation/testdata/TestMetabase.h"

namespace {

constexpr CLSID kServer = {0x5e0f3a51, 0x7c7e, 0x4a56, {0x9a, 0x11, 0x3c, 0x2f, 0x61, 0x0b, 0x77, 0x21}};
constexpr wchar_t kServerText[] = L"{5E0F3A51-7C7E-4A56-9A11-3C2F610B7721}";
HINSTANCE library = nullptr;

// One reference-counted COM object behind one interface.
template <class Interface>
class Counted : public Interface {
 public:
  virtual ~Counted() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    *out = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, __uuidof(Interface))) return E_NOINTERFACE;
    *out = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&count_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = InterlockedDecrement(&count_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

 private:
  LONG count_ = 1;
};

// A node of the metabase: the two properties that are asked for.
class Node final : public Counted<IDispatch> {
 public:
  Node(std::wstring kind, std::wstring path) : kind_(std::move(kind)), path_(std::move(path)) {}
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    if (_wcsicmp(names[0], L"class") == 0) return *ids = 1, S_OK;
    if (_wcsicmp(names[0], L"Path") == 0) return *ids = 2, S_OK;
    return *ids = DISPID_UNKNOWN, DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if ((flags & DISPATCH_PROPERTYGET) == 0 || result == nullptr) return DISP_E_MEMBERNOTFOUND;
    result->vt = VT_BSTR;
    result->bstrVal = SysAllocString((id == 1 ? kind_ : path_).c_str());
    return S_OK;
  }

 private:
  std::wstring kind_;
  std::wstring path_;
};

std::wstring SitePath() {
  wchar_t path[MAX_PATH];
  const DWORD size = GetEnvironmentVariableW(L"QX_TEST_METABASE_SITE", path, MAX_PATH);
  return size > 0 && size < MAX_PATH ? path : L"D:\\Web\\Site";
}

// The node behind a path, null when there is none.
IDispatch* FindNode(const std::wstring& moniker) {
  if (moniker.ends_with(L"/w3svc/2/ROOT/Site")) return new Node(L"IIsWebVirtualDir", L"E:\\Second");
  const std::size_t root = moniker.find(L"/w3svc/1/ROOT");
  if (!moniker.starts_with(L"IIS://") || root == std::wstring::npos) return nullptr;
  const std::wstring path = moniker.substr(root + wcslen(L"/w3svc/1/ROOT"));
  if (path == L"/Site") return new Node(L"IIsWebVirtualDir", SitePath());
  if (path == L"/Site/Sub") return new Node(L"IIsWebDirectory", L"");
  if (path.empty() || path == L"/Wrong") return new Node(L"IIsWebServer", L"");
  return nullptr;
}

class Parser final : public Counted<IParseDisplayName> {
 public:
  HRESULT STDMETHODCALLTYPE ParseDisplayName(IBindCtx*, LPOLESTR name, ULONG* eaten,
                                             IMoniker** moniker) override {
    IDispatch* const node = FindNode(name);
    if (node == nullptr) return MK_E_NOOBJECT;
    *eaten = static_cast<ULONG>(wcslen(name));
    const HRESULT result = CreatePointerMoniker(node, moniker);
    node->Release();
    return result;
  }
};

class Factory final : public Counted<IClassFactory> {
 public:
  // A moniker's class object may parse by itself.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (!IsEqualIID(iid, IID_IParseDisplayName)) return Counted::QueryInterface(iid, out);
    *out = static_cast<IParseDisplayName*>(new Parser);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** out) override {
    auto* const parser = new Parser;
    const HRESULT result = parser->QueryInterface(iid, out);
    parser->Release();
    return result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

bool WriteKey(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
  const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
  return RegSetKeyValueW(HKEY_LOCAL_MACHINE, (L"Software\\Classes\\" + key).c_str(), name, REG_SZ,
                         value.c_str(), size) == ERROR_SUCCESS;
}

bool WriteMoniker() {
  return WriteKey(L"IIS", nullptr, L"Test metabase") && WriteKey(L"IIS\\CLSID", nullptr, kServerText);
}

}  // namespace

namespace qx::test_metabase {

LocalServer::LocalServer() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  if (!WriteMoniker()) return;
  auto* const factory = new Factory;
  CoRegisterClassObject(kServer, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
  factory->Release();
}

LocalServer::~LocalServer() {
  if (cookie_ != 0) CoRevokeClassObject(cookie_);
  CoUninitialize();
}

}  // namespace qx::test_metabase

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD, void*) {
  library = instance;
  return TRUE;
}

__declspec(dllexport) HRESULT STDMETHODCALLTYPE DllGetClassObject(REFCLSID id, REFIID iid, void** out) {
  if (!IsEqualCLSID(id, kServer)) return CLASS_E_CLASSNOTAVAILABLE;
  auto* const factory = new Factory;
  const HRESULT result = factory->QueryInterface(iid, out);
  factory->Release();
  return result;
}

__declspec(dllexport) HRESULT STDMETHODCALLTYPE DllCanUnloadNow() { return S_FALSE; }

__declspec(dllexport) HRESULT STDMETHODCALLTYPE DllRegisterServer() {
  wchar_t file[MAX_PATH];
  if (GetModuleFileNameW(library, file, MAX_PATH) == 0) return E_FAIL;
  const std::wstring key = std::wstring(L"CLSID\\") + kServerText;
  const bool done = WriteMoniker() && WriteKey(key, nullptr, L"Test metabase") &&
                    WriteKey(key + L"\\InprocServer32", nullptr, file) &&
                    WriteKey(key + L"\\InprocServer32", L"ThreadingModel", L"Both");
  return done ? S_OK : E_FAIL;
}
}
