#include <windows.h>

#include <gtest/gtest.h>

#include <string_view>

#include "platform/registry/Registry.h"

namespace qx {
namespace {

constexpr const wchar_t* kKey = L"Software\\QxPlatformTest";
constexpr const char* kName = "Software\\QxPlatformTest";

// A real key in one view of the registry for the time of a test.
class Key {
 public:
  explicit Key(REGSAM view) : view_(view) {
    EXPECT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, nullptr, 0, KEY_ALL_ACCESS | view, nullptr, &key_,
                              nullptr),
              ERROR_SUCCESS);
  }
  ~Key() {
    RegCloseKey(key_);
    RegDeleteKeyExW(HKEY_LOCAL_MACHINE, kKey, view_, 0);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  void Set(const wchar_t* name, DWORD kind, std::wstring_view text) {
    RegSetValueExW(key_, name, 0, kind, reinterpret_cast<const BYTE*>(text.data()),
                   static_cast<DWORD>(text.size() * sizeof(wchar_t)));
  }

 private:
  HKEY key_ = nullptr;
  REGSAM view_;
};

TEST(Registry, ReadsTheViewOfThirtyTwoBitPrograms) {
  Key narrow(KEY_WOW64_32KEY), wide(KEY_WOW64_64KEY);
  narrow.Set(L"InstallDir", REG_SZ, std::wstring_view(L"C:\\VS\\32", 9));
  wide.Set(L"InstallDir", REG_SZ, std::wstring_view(L"C:\\VS\\64", 9));
  wide.Set(L"Only64", REG_SZ, std::wstring_view(L"x", 2));
  EXPECT_EQ(ReadMachineText(kName, "INSTALLDIR"), "C:\\VS\\32");
  EXPECT_EQ(ReadMachineText("\\Software\\QxPlatformTest", "InstallDir"), "C:\\VS\\32");
  EXPECT_EQ(ReadMachineText(kName, "Only64"), std::nullopt);
}

TEST(Registry, ReadsTextsOfEveryLengthWithOrWithoutTheirZero) {
  Key key(KEY_WOW64_32KEY);
  key.Set(L"long", REG_SZ, std::wstring(5000, L'x'));
  key.Set(L"open", REG_SZ, L"\u00E4\u20AC");
  key.Set(L"empty", REG_SZ, {});
  key.Set(L"variables", REG_EXPAND_SZ, L"%TEMP%\\x");
  EXPECT_EQ(ReadMachineText(kName, "long"), std::string(5000, 'x'));
  EXPECT_EQ(ReadMachineText(kName, "open"), "\xC3\xA4\xE2\x82\xAC");
  EXPECT_EQ(ReadMachineText(kName, "empty"), "");
  EXPECT_EQ(ReadMachineText(kName, "variables"), "%TEMP%\\x");
}

TEST(Registry, FindsNoOtherKindsOfValues) {
  Key key(KEY_WOW64_32KEY);
  key.Set(L"number", REG_DWORD, L"ab");
  EXPECT_EQ(ReadMachineText(kName, "number"), std::nullopt);
  EXPECT_EQ(ReadMachineText(kName, "missing"), std::nullopt);
  EXPECT_EQ(ReadMachineText("Software\\QxNoSuchKey", "a"), std::nullopt);
}

}  // namespace
}  // namespace qx
