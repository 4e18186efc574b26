#include <gtest/gtest.h>

#include <array>

#include "host/actions/Catalogue.h"

namespace qx {
namespace {

class Build : public TQXAction {
 public:
  std::string GetSolution() const { return {}; }
  void SetSolution(const std::string&) {}
  bool GetQuick() const { return false; }
  void SetQuick(bool) {}
};
constexpr std::array kBuildProperties{Property<&Build::GetSolution, &Build::SetSolution>("SolutionFile"),
                                      Property<&Build::GetQuick, &Build::SetQuick>("Quick")};
constexpr TQXActionClass kBuild{"TBuild", [] { return std::string("Build"); }, kBuildProperties,
                                []() -> std::unique_ptr<TQXAction> { return std::make_unique<Build>(); }};
constexpr TQXActionClass kOther{"TOther",
                                [] { return std::string("Other"); },
                                {},
                                []() -> std::unique_ptr<TQXAction> { return std::make_unique<Build>(); }};
constexpr TFrameClass kPage{"TPage", []() -> std::unique_ptr<TFrame> { return nullptr; }};
constexpr TFrameClass kPage2{"TPage2", []() -> std::unique_ptr<TFrame> { return nullptr; }};
constexpr TQXPropertyEditorClass kEditor{"TEditor", [] { return std::make_unique<TQXPropertyEditor>(); }};

int optionsMade = 0;

class Paths : public TQXOptionsObject {
 public:
  Paths();
  void LoadOptions(IQXOptionsReader& reader) override {
    TQXOptionsObject::LoadOptions(reader);
    place = reader.ReadString("Place", "nowhere");
    number = reader.ReadInteger("Number", 7);
  }
  void SaveOptions(IQXOptionsWriter& writer) override {
    TQXOptionsObject::SaveOptions(writer);
    writer.WriteString("Place", place);
    writer.WriteInteger("Number", number);
  }
  void SetPlace(const std::string& value) {
    place = value;
    SetModified();
  }
  std::string place;
  std::int32_t number = 0;
};
constexpr TQXOptionsClass kPaths{
    "TPaths",
    [] { return std::string("Paths"); },
    [] { return std::string("Tools"); },
    [] { return std::string("PathsKey"); },
    {},
    []() -> std::unique_ptr<TQXOptionsObject> { return std::make_unique<Paths>(); }};
Paths::Paths() : TQXOptionsObject(kPaths) { ++optionsMade; }

Paths* FindPaths(Catalogue& catalogue) {
  return dynamic_cast<Paths*>(catalogue.FindOptions("Tools", "Paths"));
}

TEST(Catalogue, KeepsCallsInOrderWithTheirArguments) {
  Catalogue catalogue;
  catalogue.RegisterAction(kBuild, "Build", "Compilers", "BMP");
  catalogue.RegisterOptions(kPaths, "OPT");
  catalogue.RegisterOptions(kPaths, "OPT");
  catalogue.RegisterPropertyEditor(kBuild, "SolutionFile", kEditor);
  const TFrameClass* pages[] = {&kPage, &kPage2};
  catalogue.RegisterPropertyPages(kBuild, pages);
  catalogue.RegisterOptionsPage(kPaths, kPage);
  std::string seen;
  for (const RegistrationCall& call : catalogue.Calls()) {
    seen += call.operation;
    for (const auto& argument : call.arguments) {
      seen += " " + argument.name + "=";
      for (const std::string& value : argument.values) seen += value + (argument.isList ? ";" : "");
    }
    seen += "\n";
  }
  EXPECT_EQ(seen,
            "RegisterAction class=TBuild name=Build category=Compilers bitmap=BMP\n"
            "RegisterOptions class=TPaths bitmap=OPT\n"
            "RegisterOptions class=TPaths bitmap=OPT\n"
            "RegisterPropertyEditor class=TBuild property=SolutionFile editor=TEditor\n"
            "RegisterPropertyPages class=TBuild pages=TPage;TPage2;\n"
            "RegisterOptionsPage class=TPaths page=TPage\n");
  EXPECT_EQ(catalogue.Actions()[0].pages, (std::vector<const TFrameClass*>{&kPage, &kPage2}));
  EXPECT_EQ(catalogue.Options().size(), 1U);
}

TEST(Catalogue, FindsActionsInAnyCaseAndNamesTheNearest) {
  Catalogue catalogue;
  catalogue.RegisterAction(kBuild, "Build it", "", "");
  EXPECT_EQ(catalogue.NeedAction("BUILD IT").actionClass, &kBuild);
  try {
    catalogue.NeedAction("Biuld it");
    FAIL();
  } catch (const Exception& failure) {
    EXPECT_EQ(failure.Message(), "There is no action \"Biuld it\"; supported: Build it (nearest: Build it)");
  }
}

TEST(Catalogue, ADisplayNameBelongsToOneClass) {
  Catalogue catalogue;
  catalogue.RegisterAction(kBuild, "Build", "", "");
  EXPECT_NO_THROW(catalogue.RegisterAction(kBuild, "Build", "", ""));
  EXPECT_THROW(catalogue.RegisterAction(kOther, "build", "", ""), Exception);
  EXPECT_EQ(catalogue.Actions().size(), 1U);
}

TEST(Catalogue, EditorsAndPagesNeedTheirClass) {
  Catalogue catalogue;
  const TFrameClass* pages[] = {&kPage};
  EXPECT_THROW(catalogue.RegisterPropertyEditor(kBuild, "SolutionFile", kEditor), Exception);
  EXPECT_THROW(catalogue.RegisterPropertyPages(kBuild, pages), Exception);
  EXPECT_THROW(catalogue.RegisterOptionsPage(kPaths, kPage), Exception);
}

TEST(Catalogue, EditorsServeTextPropertiesOfTheirNameInAnyCase) {
  Catalogue catalogue;
  catalogue.RegisterAction(kBuild, "Build", "", "");
  catalogue.RegisterPropertyEditor(kBuild, "SOLUTIONFile", kEditor);
  catalogue.RegisterPropertyEditor(kBuild, "NoSuchProperty", kEditor);
  catalogue.RegisterPropertyEditor(kBuild, "Quick", kEditor);
  EXPECT_EQ(catalogue.FindEditor(kBuild, "solutionFILE"), &kEditor);
  EXPECT_EQ(catalogue.FindEditor(kBuild, "NoSuchProperty"), nullptr);
  EXPECT_EQ(catalogue.FindEditor(kBuild, "Quick"), nullptr);
}

TEST(Catalogue, MakesOneOptionsObjectWhenItIsFirstNeeded) {
  optionsMade = 0;
  Catalogue catalogue;
  EXPECT_EQ(catalogue.FindOptions("Tools", "Paths"), nullptr);
  catalogue.RegisterOptions(kPaths, "");
  catalogue.RegisterOptions(kPaths, "");
  EXPECT_EQ(optionsMade, 0);
  Paths* paths = FindPaths(catalogue);
  ASSERT_NE(paths, nullptr);
  EXPECT_EQ(FindPaths(catalogue), paths);
  EXPECT_EQ(&catalogue.ObjectOf(catalogue.Options()[0]), paths);
  EXPECT_EQ(optionsMade, 1);
  EXPECT_EQ(catalogue.FindOptions("tools", "Paths"), nullptr);
  EXPECT_EQ(paths->GetOptionType(), "TPaths");
  EXPECT_EQ(paths->GetOptionsName(), "Paths");
  EXPECT_EQ(paths->GetOptionsCategory(), "Tools");
}

TEST(Catalogue, LoadsOptionsFromTheirSectionAndSavesModifiedOnes) {
  OptionsStore store;
  store.Set("PathsKey", "Place", "here");
  Catalogue catalogue;
  catalogue.UseOptionsStore(&store);
  catalogue.RegisterOptions(kPaths, "");
  Paths* paths = FindPaths(catalogue);
  EXPECT_EQ(paths->place, "here");
  EXPECT_EQ(paths->number, 7);
  paths->place = "unmarked";
  catalogue.SaveOptions();
  EXPECT_EQ(store.Find("PathsKey", "Place"), "here");
  paths->SetPlace("there");
  EXPECT_TRUE(paths->IsModified());
  catalogue.SaveOptions();
  EXPECT_FALSE(paths->IsModified());
  EXPECT_EQ(store.Find("PathsKey", "Place"), "there");
  EXPECT_EQ(store.Find("PathsKey", "Number"), "7");
}

TEST(Catalogue, DropsOptionsThatWereNotSavedWhenItIsAskedTo) {
  OptionsStore store;
  store.Set("PathsKey", "Place", "here");
  Catalogue catalogue;
  catalogue.RestoreOptions();  // of no store
  catalogue.UseOptionsStore(&store);
  catalogue.RegisterOptions(kPaths, "");
  Paths* paths = FindPaths(catalogue);
  paths->SetPlace("there");
  catalogue.RestoreOptions();
  EXPECT_EQ(FindPaths(catalogue), paths);
  EXPECT_EQ(paths->place, "here");
  EXPECT_FALSE(paths->IsModified());
}

TQXOptionsObject* handed = nullptr;

TEST(Catalogue, AFunctionRegisteredTwiceIsKeptOnceTheLastOne) {
  Catalogue catalogue;
  catalogue.RegisterOptions(kPaths, "");
  handed = FindPaths(catalogue);
  catalogue.RegisterFunction("Options", [](IQXScriptCall& call) { call.SetResult(nullptr); });
  EXPECT_EQ(catalogue.CallFunction("Options"), nullptr);
  catalogue.RegisterFunction("Options", [](IQXScriptCall& call) { call.SetResult(handed); });
  EXPECT_EQ(catalogue.CallFunction("options"), handed);
  EXPECT_EQ(catalogue.Functions().size(), 1U);
  EXPECT_EQ(catalogue.CallFunction("unknown"), nullptr);
}

TEST(Catalogue, AnEnumerationRegisteredTwiceIsKeptOnce) {
  Catalogue catalogue;
  const std::string_view first[] = {"a"};
  const std::string_view second[] = {"b", "c"};
  catalogue.RegisterEnumeration("T", first);
  catalogue.RegisterEnumeration("T", second);
  ASSERT_EQ(catalogue.Enumerations().size(), 1U);
  EXPECT_EQ(catalogue.Enumerations()[0].values, (std::vector<std::string>{"b", "c"}));
}

TEST(Catalogue, ForgettingDropsEverything) {
  Catalogue catalogue;
  catalogue.RegisterAction(kBuild, "Build", "", "");
  catalogue.RegisterOptions(kPaths, "");
  FindPaths(catalogue);
  catalogue.RegisterFunction("F", [](IQXScriptCall&) {});
  catalogue.RegisterEnumeration("E", {});
  catalogue.Forget();
  EXPECT_TRUE(catalogue.Actions().empty() && catalogue.Options().empty() && catalogue.Functions().empty() &&
              catalogue.Enumerations().empty() && catalogue.Calls().empty());
  EXPECT_EQ(FindPaths(catalogue), nullptr);
}

TEST(Catalogue, ServicesOfTheContractLeadToTheOneInUse) {
  Catalogue catalogue;
  EXPECT_THROW(QXActionServices(), Exception);
  const CatalogueInUse use(catalogue);
  EXPECT_EQ(&QXActionServices(), static_cast<IQXActionServices*>(&catalogue));
  EXPECT_EQ(&QXOptionsServices(), static_cast<IQXOptionsServices*>(&catalogue));
  EXPECT_EQ(&QXScriptingServices(), static_cast<IQXScriptingServices*>(&catalogue));
}

TEST(Catalogue, DesignServicesExpandWithTheOpenProject) {
  Variables variables(nullptr);
  variables.SetProject("A", "open");
  const auto services = QXDesignApplicationServices();
  Catalogue catalogue;
  const CatalogueInUse use(catalogue);
  catalogue.UseDesignVariables(&variables);
  EXPECT_EQ(services->ExpandExpression("%A%", true), "open");
  catalogue.UseDesignVariables(nullptr);
  EXPECT_THROW(services->ExpandExpression("%QX_NO_SUCH_VARIABLE%", true), Exception);
}

}  // namespace
}  // namespace qx
