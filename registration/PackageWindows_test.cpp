// What hosts of this system look for in the package library itself: the pictures by which its actions are registered.
#include <windows.h>

#include <gtest/gtest.h>

#include <memory>

namespace qx {
namespace {

TEST(Package, HoldsThePicturesOfItsActions) {
  const auto free = [](HMODULE module) { FreeLibrary(module); };
  const std::unique_ptr<std::remove_pointer_t<HMODULE>, decltype(free)> library(
      LoadLibraryExA(QX_BINARY_DIR "/vsdotnet.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE), free);
  ASSERT_NE(library, nullptr);
  for (const char* name : {"DEVENV", "MSTEST"}) {
    const HRSRC found = FindResourceA(library.get(), name, MAKEINTRESOURCEA(2));  // a bitmap
    ASSERT_NE(found, nullptr) << name;
    const auto* head = static_cast<const BITMAPINFOHEADER*>(LockResource(LoadResource(library.get(), found)));
    ASSERT_NE(head, nullptr) << name;
    EXPECT_EQ(head->biWidth, 16) << name;
    EXPECT_EQ(head->biHeight, 16) << name;
  }
}

}  // namespace
}  // namespace qx
