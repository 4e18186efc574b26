#include "host/settings/OptionsStore.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "platform/files/Files.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

// A folder of the test's own that goes with it.
class OptionsStoreFile : public testing::Test {
 protected:
  void SetUp() override {
    const std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
    folder_ = fs::temp_directory_path() / ("qx-options-" + name);
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    file_ = (folder_ / "options.xml").string();
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::unique_ptr<OptionsStore> Loaded() const {
    auto store = std::make_unique<OptionsStore>(file_);
    store->Load();
    return store;
  }
  std::string FaultOfLoading() const {
    OptionsStore store(file_);
    try {
      store.Load();
    } catch (const Exception& fault) {
      return fault.Message();
    }
    return "accepted";
  }

  fs::path folder_;
  std::string file_;
};

TEST_F(OptionsStoreFile, IsEmptyWhileTheFileIsMissing) {
  OptionsStore store(file_);
  store.Load();
  EXPECT_EQ(store.Find("A", "x"), std::nullopt);
  EXPECT_FALSE(store.IsChanged());
  store.Save();
  EXPECT_FALSE(fs::exists(file_));
}

TEST_F(OptionsStoreFile, KeepsSectionsAndTheHostsOwnSettings) {
  OptionsStore store((folder_ / "new" / "options.xml").string());
  store.Load();
  store.Set("VisualStudio", "Path", "C:\\a & b\r\n");
  store.Set(OptionsStore::kHostSection, "Unc.\\\\server\\share", "/mnt");
  store.Set("VisualStudio", "Gone", "1");
  store.Set("VisualStudio", "Gone", std::nullopt);
  store.Save();
  EXPECT_FALSE(store.IsChanged());
  EXPECT_EQ(ReadFile(store.File()),
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Options version=\"1\">\n"
            "  <Section key=\"VisualStudio\">\n    <Option name=\"Path\">C:\\a &amp; b&#13;\n</Option>\n  "
            "</Section>\n"
            "  <Host>\n    <Option name=\"Unc.\\\\server\\share\">/mnt</Option>\n  </Host>\n</Options>\n");
  OptionsStore again(store.File());
  again.Load();
  EXPECT_EQ(again.Find("VisualStudio", "Path"), "C:\\a & b\r\n");
  EXPECT_EQ(again.Find("VisualStudio", "path"), std::nullopt);
  EXPECT_EQ(again.Find(OptionsStore::kHostSection, "Unc.\\\\server\\share"), "/mnt");
}

TEST_F(OptionsStoreFile, GivesTheContractsReaderAndWriter) {
  OptionsStore store(file_);
  const auto writer = store.Writer("S");
  writer->WriteString("Text", "t");
  writer->WriteInteger("Number", -5);
  writer->WriteString("NoNumber", "12x");
  const auto reader = store.Reader("S");
  EXPECT_EQ(reader->ReadString("Text", "d"), "t");
  EXPECT_EQ(reader->ReadString("Other", "d"), "d");
  EXPECT_EQ(reader->ReadInteger("Number", 1), -5);
  EXPECT_EQ(reader->ReadInteger("NoNumber", 7), 7);
  EXPECT_EQ(reader->ReadInteger("Other", 3), 3);
  EXPECT_EQ(store.Reader("T")->ReadString("Text", "d"), "d");
}

TEST_F(OptionsStoreFile, KeepsWhatItDoesNotKnow) {
  const std::string text =
      "<Options version=\"1\"><!-- mine --><Window x=\"1\"/>\n<Section key=\"S\" note=\"n\"><Old/><Option "
      "name=\"a\">1</Option></Section></Options>\n";
  ReplaceFile(file_, text);
  const auto store = Loaded();
  store->Set("S", "a", "2");
  store->Save();
  std::string wanted = text;
  wanted.replace(wanted.find(">1<"), 3, ">2<");
  EXPECT_EQ(ReadFile(file_), wanted);
}

TEST_F(OptionsStoreFile, WritesOnlyWhatItChangedOverAnothersSaving) {
  ReplaceFile(file_,
              "<Options version=\"1\"><Section key=\"S\"><Option name=\"a\">1</Option><Option "
              "name=\"b\">1</Option></Section></Options>");
  const auto mine = Loaded();
  const auto other = Loaded();
  const auto writer = mine->Writer("S");  // an options object writes all its values
  writer->WriteString("a", "1");
  writer->WriteString("b", "mine");
  other->Set("S", "a", "other");
  other->Save();
  mine->Save();
  const auto now = Loaded();
  EXPECT_EQ(now->Find("S", "a"), "other");
  EXPECT_EQ(now->Find("S", "b"), "mine");
  EXPECT_EQ(mine->Find("S", "a"), "other");
}

TEST_F(OptionsStoreFile, ForgetsWhatWasNotSavedWhenItIsAskedTo) {
  OptionsStore store(file_);
  store.Set("A", "Kept", "1");
  store.Save();
  store.Set("A", "Kept", "2");
  store.Set("B", "Never", "3");
  store.Restore();
  EXPECT_FALSE(store.IsChanged());
  EXPECT_EQ(store.Find("A", "Kept"), "1");
  EXPECT_EQ(store.Find("B", "Never"), std::nullopt);

  fs::remove(file_);
  store.Set("A", "Kept", "2");
  store.Restore();
  EXPECT_EQ(store.Find("A", "Kept"), std::nullopt);
  EXPECT_FALSE(fs::exists(file_));
}

TEST_F(OptionsStoreFile, LosesNothingWhenManySaveAtOnce) {
  std::vector<std::thread> savers;
  for (int i = 0; i < 8; ++i) {
    savers.emplace_back([&, i] {
      for (int round = 0; round < 5; ++round) {
        OptionsStore store(file_);
        store.Load();
        store.Set("S", "key" + std::to_string(i) + "." + std::to_string(round), "v");
        store.Save();
      }
    });
  }
  for (std::thread& saver : savers) saver.join();
  EXPECT_EQ(Loaded()->All("S").size(), 40u);
}

TEST_F(OptionsStoreFile, KeepsTheChangesWhileAnotherHoldsTheFile) {
  OptionsStore store(file_);
  store.Load();
  store.Set("A", "x", "1");
  {
    const FileLock other(file_);
    EXPECT_THROW(store.Save(std::chrono::milliseconds(20)), FileInUse);
    EXPECT_TRUE(store.IsChanged());
    EXPECT_FALSE(fs::exists(file_));
  }
  store.Save();
  EXPECT_EQ(Loaded()->Find("A", "x"), "1");
}

TEST_F(OptionsStoreFile, RefusesABrokenFileAndLeavesIt) {
  ReplaceFile(file_, "<Options version=\"1\">\n<Section/></Options>");
  EXPECT_EQ(FaultOfLoading(), file_ + "(2): <Section> without a key");
  OptionsStore store(file_);
  store.Set("S", "a", "1");
  EXPECT_THROW(store.Save(), Exception);
  EXPECT_TRUE(store.IsChanged());
  EXPECT_EQ(ReadFile(file_), "<Options version=\"1\">\n<Section/></Options>");
  ReplaceFile(file_, "<Options version=\"9\"/>");
  EXPECT_EQ(FaultOfLoading(),
            file_ + "(1): the version of <Options> is \"9\"; this program knows version \"1\"");
}

}  // namespace
}  // namespace qx
