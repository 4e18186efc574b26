// The lower rungs of the ladder. The upper ones need a library, and the real program:
// host/cli/Catalogue_test.cpp.
#include "host/actions/PackageLoader.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

class PackageLoaderTest : public testing::Test {
 protected:
  Catalogue catalogue_;
  std::filesystem::path folder_ = std::filesystem::temp_directory_path();
};

TEST_F(PackageLoaderTest, StopsAtTheFirstRungForAFileThatIsNotThere) {
  PackageLoader loader(catalogue_);
  const LoadedPackage& package = loader.Load((folder_ / "qx-nowhere.so").string(), Registration::Design);
  EXPECT_EQ(package.State(), PackageState::Named);
  EXPECT_EQ(package.Error(), package.File() + ": there is no such file");
  EXPECT_TRUE(package.Units().empty());
}

TEST_F(PackageLoaderTest, KnowsAFolderFromAFile) {
  PackageLoader loader(catalogue_);
  const LoadedPackage& package = loader.Load(folder_.string(), Registration::Design);
  EXPECT_EQ(package.State(), PackageState::Named);
  EXPECT_EQ(package.Error(), package.File() + ": it is a folder; name the package's library");
}

TEST_F(PackageLoaderTest, FindsButDoesNotOpenWhatIsNoLibrary) {
  const std::string file = (folder_ / "qx-text-package.so").string();
  ReplaceFile(file, "no library");
  PackageLoader loader(catalogue_);
  const LoadedPackage& package = loader.Load(file, Registration::Runtime);
  EXPECT_EQ(package.State(), PackageState::Found);
  EXPECT_TRUE(package.Error().starts_with(package.File() + ": it cannot be loaded as a library: "));
  EXPECT_EQ(&loader.Load(file, Registration::Runtime), &package);  // once is enough
  EXPECT_EQ(loader.Packages().size(), 1u);
  RemoveFile(file);
}

TEST_F(PackageLoaderTest, NamesItsRungs) {
  EXPECT_EQ(PackageStateName(PackageState::Named), "named");
  EXPECT_EQ(PackageStateName(PackageState::Registered), "registered");
}

}  // namespace
}  // namespace qx
