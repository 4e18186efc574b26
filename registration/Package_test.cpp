// The package library itself, loaded by the runtime as a host does: used, unloaded and loaded again. Run with
// the leak checker it says what an unloaded package left behind.
#include <gtest/gtest.h>

#include <algorithm>

#include "host/actions/PackageLoader.h"
#include "host/pages/PageDriver.h"
#include "host/system/SharedLibrary.h"
#include "host/testing/TestHost.h"
#include "platform/files/Files.h"

namespace qx {
namespace {

const char* const kPackageFile = QX_BINARY_DIR "/vsdotnet" QX_LIBRARY_ENDING;

// Every action is made and its pages are opened, driven and written; so are the options'.
void UseEverything(TestHost& host) {
  DrivenUser user;
  Catalogue& catalogue = host.catalogue;
  for (const RegisteredAction& registered : catalogue.Actions()) {
    const std::unique_ptr<TQXAction> action = host.Make(*registered.actionClass);
    const std::unique_ptr<PageDialog> dialog = PageDialog::ForAction(registered, *action);
    PageDriver driver(*dialog, user, [] {});
    EXPECT_NE(driver.Answer("state"), "[]");
    EXPECT_EQ(driver.Answer("dialogs"), "[]") << registered.displayName;
    EXPECT_EQ(driver.Answer("write"), "{\"ok\":true}") << registered.displayName;
  }
  const std::unique_ptr<PageDialog> options = PageDialog::ForOptions(catalogue);
  PageDriver driver(*options, user, [] {});
  EXPECT_NE(driver.Answer("state"), "[]");
  EXPECT_EQ(driver.Answer("write"), "{\"ok\":true}");
  for (const RegisteredFunction& function : catalogue.Functions())
    EXPECT_NE(catalogue.CallFunction(function.name), nullptr);
}

// The counts of all units are this number.
void ExpectStarts(const std::vector<TQXUnit>& units, int count) {
  EXPECT_EQ(units.size(), 14u);
  EXPECT_TRUE(std::ranges::all_of(units, [&](const TQXUnit& unit) { return unit.startCount == count; }));
}

TEST(Package, IsLoadedUsedUnloadedAndLoadedAgain) {
  TestHost host;
  for (int round = 0; round < 2; ++round) {
    PackageLoader loader(host.catalogue);
    const LoadedPackage& package = loader.Load(kPackageFile, Registration::Design);
    ASSERT_EQ(package.Error(), "");
    ExpectStarts(package.Units(), 1);
    EXPECT_EQ(host.catalogue.Calls().size(), 20u);
    UseEverything(host);
  }
  EXPECT_TRUE(host.catalogue.Actions().empty());
  EXPECT_TRUE(host.catalogue.Functions().empty());
}

// By the names under which the actions are registered.
TEST(Package, HasThePicturesOfItsActionsBesideIt) {
  TestHost host;
  PackageLoader loader(host.catalogue);
  ASSERT_EQ(loader.Load(kPackageFile, Registration::Design).Error(), "");
  for (const RegisteredAction& action : host.catalogue.Actions()) {
    const std::string picture = QX_BINARY_DIR "/Resources/" + action.bitmap + ".svg";
    EXPECT_TRUE(FileExists(picture)) << picture;
  }
}

TEST(Package, ReturnsItsStartCountsToZero) {
  const SharedLibrary held{kPackageFile};  // the library stays, whatever the loader does
  const auto units = [&] {
    const TQXUnitTable table = held.Find<QXPackageUnitsEntry>(kPackageUnitsName)();
    return std::vector<TQXUnit>(table.units, table.units + table.count);
  };
  ExpectStarts(units(), 0);
  TestHost host;
  {
    PackageLoader loader(host.catalogue);
    ASSERT_EQ(loader.Load(kPackageFile, Registration::Runtime).Error(), "");
    ExpectStarts(units(), 1);
    EXPECT_EQ(host.catalogue.Calls().size(), 8u);
  }
  ExpectStarts(units(), 0);
}

}  // namespace
}  // namespace qx
