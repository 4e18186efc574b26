// The package library itself, loaded by the runtime as a host does: used, unloaded and loaded again. Run with
// the leak checker it says what an unloaded package left behind.
#include <gtest/gtest.h>

#include <algorithm>

#include "host/runtime/ActionHost.h"
#include "host/runtime/PackageLoader.h"
#include "host/runtime/PageDriver.h"
#include "host/runtime/SharedLibrary.h"

namespace qx {
namespace {

const char* const kPackageFile = QX_BINARY_DIR "/vsdotnet" QX_LIBRARY_ENDING;

// Every action is made and its pages are opened, driven and written; so are the options'.
void UseEverything(Catalogue& catalogue) {
  DrivenUser user;
  TestHost host;
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
  for (int round = 0; round < 2; ++round) {
    PackageLoader loader(TheCatalogue());
    const LoadedPackage& package = loader.Load(kPackageFile, Registration::Design);
    ASSERT_EQ(package.Error(), "");
    ExpectStarts(package.Units(), 1);
    EXPECT_EQ(TheCatalogue().Calls().size(), 20u);
    UseEverything(TheCatalogue());
  }
  EXPECT_TRUE(TheCatalogue().Actions().empty());
  EXPECT_TRUE(TheCatalogue().Functions().empty());
}

TEST(Package, ReturnsItsStartCountsToZero) {
  const SharedLibrary held{kPackageFile};  // the library stays, whatever the loader does
  const auto units = [&] {
    const TQXUnitTable table = held.Find<QXPackageUnitsEntry>(kPackageUnitsName)();
    return std::vector<TQXUnit>(table.units, table.units + table.count);
  };
  ExpectStarts(units(), 0);
  {
    PackageLoader loader(TheCatalogue());
    ASSERT_EQ(loader.Load(kPackageFile, Registration::Runtime).Error(), "");
    ExpectStarts(units(), 1);
    EXPECT_EQ(TheCatalogue().Calls().size(), 8u);
  }
  ExpectStarts(units(), 0);
}

}  // namespace
}  // namespace qx
