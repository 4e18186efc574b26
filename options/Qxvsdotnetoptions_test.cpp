#include "options/Qxvsdotnetoptions.h"

#include <gtest/gtest.h>

#include <variant>

#include "host/actions/Catalogue.h"
#include "options/DetectionFixture.h"

namespace qx {
namespace {

using enum TVSDotNetVersion;

// The options store in memory: what is written is kept in order, what is read comes from the same list.
class Store final : public AnswersUncounted<IQXOptionsReader>, public IQXOptionsWriter {
 public:
  using Value = std::variant<std::string, std::int32_t>;
  std::vector<std::pair<std::string, Value>> values;
  std::vector<std::string> asked;

  std::string ReadString(const std::string& key, const std::string& otherwise) override {
    asked.push_back(key);
    for (const auto& [name, value] : values)
      if (name == key) return std::get<std::string>(value);
    return otherwise;
  }
  std::int32_t ReadInteger(const std::string& key, std::int32_t otherwise) override {
    asked.push_back(key);
    for (const auto& [name, value] : values)
      if (name == key) return std::get<std::int32_t>(value);
    return otherwise;
  }
  void WriteString(const std::string& key, const std::string& value) override {
    values.emplace_back(key, value);
  }
  void WriteInteger(const std::string& key, std::int32_t value) override { values.emplace_back(key, value); }

  bool QueryInterface(const TGUID& iid, void** out) override {
    return AnswersUncounted<IQXOptionsReader>::QueryInterface(iid, out);
  }
  std::int32_t _AddRef() override { return -1; }
  std::int32_t _Release() override { return -1; }
};

TEST(Options, AnswerForTheirClass) {
  TVSDotNetOptions options;
  EXPECT_EQ(TVSDotNetOptions::GetName(), "Visual Studio.Net");
  EXPECT_EQ(TVSDotNetOptions::GetCategory(), "Compilers");
  EXPECT_EQ(TVSDotNetOptions::GetOptionKey(), "VisualStudioDotNet");
  EXPECT_EQ(options.GetOptionsName(), "Visual Studio.Net");
  EXPECT_EQ(options.GetOptionsCategory(), "Compilers");
  EXPECT_EQ(options.GetOptionType(), "TVSDotNetOptions");
  EXPECT_EQ(options.GetOptionsClass().getOptionKey(), "VisualStudioDotNet");
  EXPECT_EQ(options.GetImplementation(), &options);
}

TEST(Options, PublishTheirPropertiesInOrder) {
  std::vector<std::string> rows;
  for (const PublishedProperty& row : TVSDotNetOptions::Class().properties) {
    EXPECT_EQ(row.storage, PropertyStorage::Stored) << row.name;
    const bool isVersion = row.name == "DefaultVSVersion";
    EXPECT_EQ(row.kind, isVersion ? PropertyKind::Enumeration : PropertyKind::Text) << row.name;
    rows.emplace_back(row.name);
  }
  EXPECT_EQ(rows, (std::vector<std::string>{"DevEnvLocation", "DevEnv2003Location", "DevEnv2005Location",
                                            "DefaultVSVersion", "MSTestLocation"}));
}

TEST(Options, AnswerTheirInterfaceUncounted) {
  TVSDotNetOptions options;
  TQXOptionsObject* base = &options;
  const InterfacePtr<IQXVSDotNetOptions> answered = Query<IQXVSDotNetOptions>(base);
  EXPECT_EQ(answered.get(), &options);
  EXPECT_EQ(answered->_AddRef(), -1);
  EXPECT_EQ(Query<IQXVSDotNetOptions>(answered.get()).get(), &options);
  EXPECT_TRUE(Query<IInterface>(base));
  EXPECT_FALSE(Query<IQXOptionsReader>(base));
}

TEST(Options, AreModifiedBySettingAnotherValueOnly) {
  for (const PublishedProperty& row : TVSDotNetOptions::Class().properties) {
    TVSDotNetOptions options;
    row.set(options, row.get(options));
    EXPECT_FALSE(options.IsModified()) << row.name;
    row.set(options, row.kind == PropertyKind::Text ? PropertyValue("C:\\VS") : EnumerationValue{2});
    EXPECT_TRUE(options.IsModified()) << row.name;
  }
}

TEST(Options, AreModifiedByLetterCaseAlone) {
  Store store;
  store.values = {{"MSDevPath", "C:\\VS7"}, {"MSDevPath2003", "C:\\VS71"}, {"MSDevPath2005", "C:\\VS8"}};
  TVSDotNetOptions options;
  options.LoadOptions(store);
  options.SetDevEnvLocation("C:\\VS7");
  EXPECT_FALSE(options.IsModified());
  options.SetDevEnvLocation("c:\\VS7");
  EXPECT_TRUE(options.IsModified());
  EXPECT_EQ(options.GetDevEnvLocation(), "c:\\VS7");
}

TEST(Options, LoadWhatIsStored) {
  Store store;
  store.values = {{"MSDevPath", "C:\\VS7"},
                  {"MSDevPath2003", "C:\\VS71\\"},
                  {"MSDevPath2005", " C:\\VS8 "},
                  {"DefVSVersion", 2},
                  {"MSTestLocation", "C:\\VS8\\MSTest.exe"}};
  TVSDotNetOptions options;
  options.SetMSTestLocation("x");
  options.LoadOptions(store);
  EXPECT_FALSE(options.IsModified());
  EXPECT_EQ(options.GetDevEnvLocation(), "C:\\VS7");
  EXPECT_EQ(options.GetDevEnv2003Location(), "C:\\VS71\\");
  EXPECT_EQ(options.GetDevEnv2005Location(), " C:\\VS8 ");
  EXPECT_EQ(options.GetDefaultVSVersion(), vs2005);
  EXPECT_EQ(options.GetMSTestLocation(), "C:\\VS8\\MSTest.exe");
  EXPECT_EQ(store.asked, (std::vector<std::string>{"MSDevPath", "MSDevPath2003", "MSDevPath2005",
                                                   "DefVSVersion", "MSTestLocation"}));
}

TEST(Options, LoadTheDefaultVersion2003) {
  Store store;
  store.values = {{"MSDevPath", "a"}, {"MSDevPath2003", "b"}, {"MSDevPath2005", "c"}};
  TVSDotNetOptions options;
  options.SetDefaultVSVersion(vs2005);
  options.LoadOptions(store);
  EXPECT_EQ(options.GetDefaultVSVersion(), vs2003);
}

TEST(Options, TakeTheLowByteOfTheStoredVersion) {
  const std::pair<std::int32_t, int> rows[] = {{0, 0},   {258, 2},  {3, 3},   {-1, 255},
                                               {256, 0}, {-256, 0}, {-254, 2}};
  for (const auto& [stored, expected] : rows) {
    Store store;
    store.values = {
        {"MSDevPath", "a"}, {"MSDevPath2003", "b"}, {"MSDevPath2005", "c"}, {"DefVSVersion", stored}};
    TVSDotNetOptions options;
    options.LoadOptions(store);
    EXPECT_EQ(static_cast<int>(options.GetDefaultVSVersion()), expected) << stored;
  }
}

TEST(Options, SaveTheirKeysInOrder) {
  TVSDotNetOptions options;
  options.SetDevEnvLocation("C:\\VS7");
  options.SetDevEnv2003Location("");
  options.SetDevEnv2005Location("C:\\VS8");
  options.SetDefaultVSVersion(vs2005);
  options.SetMSTestLocation("M");
  Store store;
  options.SaveOptions(store);
  const std::vector<std::pair<std::string, Store::Value>> expected = {{"MSDevPath", "C:\\VS7"},
                                                                      {"MSDevPath2003", ""},
                                                                      {"MSDevPath2005", "C:\\VS8"},
                                                                      {"DefVSVersion", 2},
                                                                      {"MSTestLocation", "M"}};
  EXPECT_EQ(store.values, expected);
  EXPECT_FALSE(options.IsModified());
}

// Detection

class Detection : public DetectionFixture {
 protected:
  Store store;
  TVSDotNetOptions options;
};

TEST_F(Detection, FillsTheFoldersThatAreInstalled) {
  Install({{"7.1", "C:\\VS71\\Common7\\IDE\\"}});
  options.LoadOptions(store);
  EXPECT_EQ(options.GetDevEnvLocation(), "");
  EXPECT_EQ(options.GetDevEnv2003Location(), "C:\\VS71\\Common7\\IDE\\");
  EXPECT_EQ(options.GetDevEnv2005Location(), "");
  EXPECT_EQ(options.GetDefaultVSVersion(), vs2003);
  EXPECT_EQ(options.GetMSTestLocation(), "");
  EXPECT_TRUE(options.IsModified());
}

TEST_F(Detection, HasAKeyForEachVersion) {
  Install({{"7.0", "C:\\VS7\\"}, {"7.1", "C:\\VS71\\"}, {"8.0", "C:\\VS8\\"}});
  options.LoadOptions(store);
  EXPECT_EQ(options.GetDevEnvLocation(), "C:\\VS7\\");
  EXPECT_EQ(options.GetDevEnv2003Location(), "C:\\VS71\\");
  EXPECT_EQ(options.GetDevEnv2005Location(), "C:\\VS8\\");
}

TEST_F(Detection, LeavesStoredFoldersAlone) {
  Install({{"7.0", "C:\\VS7\\"}, {"7.1", "C:\\VS71\\"}, {"8.0", "C:\\VS8\\"}});
  store.values = {{"MSDevPath", "a"}, {"MSDevPath2003", "b"}, {"MSDevPath2005", "c"}};
  options.LoadOptions(store);
  EXPECT_EQ(options.GetDevEnvLocation(), "a");
  EXPECT_EQ(options.GetDevEnv2003Location(), "b");
  EXPECT_EQ(options.GetDevEnv2005Location(), "c");
  EXPECT_FALSE(options.IsModified());
}

TEST_F(Detection, FindsNothingSilently) {
  Install({});
  options.LoadOptions(store);
  EXPECT_EQ(options.GetDevEnvLocation(), "");
  EXPECT_EQ(options.GetDevEnv2003Location(), "");
  EXPECT_EQ(options.GetDevEnv2005Location(), "");
  EXPECT_FALSE(options.IsModified());
}

TEST_F(Detection, ComesAgainForAFolderThatWasSavedEmpty) {
  Install({{"8.0", "C:\\VS8\\"}});
  store.values = {{"MSDevPath2005", ""}};
  options.LoadOptions(store);
  EXPECT_EQ(options.GetDevEnv2005Location(), "C:\\VS8\\");
  EXPECT_TRUE(options.IsModified());
}

// Registration

class Registration : public testing::Test {
 protected:
  Catalogue catalogue_;
  CatalogueInUse use_{catalogue_};
};

TEST_F(Registration, FindsNothingBeforeIt) { EXPECT_FALSE(VSDotNetOptions()); }

TEST_F(Registration, BearsBeingDoneTwice) {
  RegisterOptions();
  const InterfacePtr<IQXVSDotNetOptions> first = VSDotNetOptions();
  ASSERT_TRUE(first);
  first->SetMSTestLocation("kept");
  RegisterOptions();
  EXPECT_EQ(VSDotNetOptions(), first);
  EXPECT_EQ(VSDotNetOptions()->GetMSTestLocation(), "kept");
  ASSERT_EQ(catalogue_.Options().size(), 1u);
  EXPECT_EQ(catalogue_.Options()[0].bitmap, "DEVENV");
  ASSERT_EQ(catalogue_.Functions().size(), 1u);
  EXPECT_EQ(catalogue_.Functions()[0].name, "VSDotNetOptions");
  ASSERT_EQ(catalogue_.Enumerations().size(), 1u);
  EXPECT_EQ(catalogue_.Enumerations()[0].name, "TVSDotNetVersion");
  EXPECT_EQ(catalogue_.Enumerations()[0].values, (std::vector<std::string>{"vs2002", "vs2003", "vs2005"}));
}

TEST_F(Registration, GoesInTheSameOrderEachTime) {
  RegisterOptions();
  RegisterOptions();
  std::vector<std::string> operations;
  for (const RegistrationCall& call : catalogue_.Calls()) operations.push_back(call.operation);
  EXPECT_EQ(operations,
            (std::vector<std::string>{"RegisterOptions", "RegisterFunction", "RegisterEnumeration",
                                      "RegisterOptions", "RegisterFunction", "RegisterEnumeration"}));
}

TEST_F(Registration, GivesScriptsNothingWithoutAnObject) {
  RegisterOptions();
  const TQXScriptHandler handler = catalogue_.Functions()[0].handler;
  catalogue_.Forget();
  struct Call : IQXScriptCall {
    void SetResult(TQXOptionsObject* object) override { isNothing = object == nullptr; }
    bool isNothing = false;
  } call;
  handler(call);
  EXPECT_TRUE(call.isNothing);
}

TEST_F(Registration, GivesScriptsTheOneObject) {
  RegisterOptions();
  EXPECT_EQ(dynamic_cast<TVSDotNetOptions*>(catalogue_.CallFunction("VSDotNetOptions")),
            dynamic_cast<TVSDotNetOptions*>(VSDotNetOptions().get()));
  EXPECT_TRUE(catalogue_.CallFunction("VSDotNetOptions"));
}

}  // namespace
}  // namespace qx
