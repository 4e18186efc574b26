// The contract's identifiers and slot orders, dumped and compared with the golden list that packages built
// earlier rely on: a slot that moves breaks every package in the field without a word from the compiler.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "actions/Qxvsdotnetaction.h"
#include "plugin/Qxaction.h"
#include "plugin/Qxdotnetinfo.h"
#include "plugin/Qxexecuteaction.h"
#include "plugin/Qxframe.h"
#include "plugin/Qxlanguages.h"
#include "plugin/Qxoptions.h"
#include "plugin/Qxprocess.h"
#include "plugin/Qxservices.h"
#include "plugin/Qxtokeniser.h"
#include "solution/Vsnetsln.h"
#include "versioning/Qxassemblyinfo.h"
#include "versioning/Qxvc7versioninfo.h"

namespace qx {
namespace {

// Index of a virtual member function in its table: both systems' compilers keep 1 + its byte offset in the
// first word of a pointer to it.
template <class Member>
std::size_t SlotOf(Member member) {
  std::uintptr_t word = 0;
  std::memcpy(&word, &member, sizeof word);
  return (word - 1) / sizeof(void*);
}

std::string TextOf(const TGUID& guid) {
  static const char digits[] = "0123456789ABCDEF";
  std::string text = "{";
  for (std::size_t i = 0; i < guid.bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += digits[guid.bytes[i] >> 4];
    text += digits[guid.bytes[i] & 15];
  }
  return text + "}";
}

struct Dump {
  std::ostringstream out;
  void Head(const char* name) { out << name << '\n'; }
  void Head(const char* name, const TGUID& guid) { out << name << ' ' << TextOf(guid) << '\n'; }
  void Slot(std::size_t slot, const char* name) { out << "  " << slot << ' ' << name << '\n'; }
};

#define HEAD(type) dump.Head(#type, type::IID)
#define SLOT(type, name) dump.Slot(SlotOf(&type::name), #name)

void DumpAction(Dump& dump) {
  dump.Head("TQXAction");
  SLOT(TQXAction, ResetXMLID);
  SLOT(TQXAction, GetObjectID);
  SLOT(TQXAction, SetObjectID);
  SLOT(TQXAction, ReadState);
  SLOT(TQXAction, WriteState);
  SLOT(TQXAction, Initialise);
  SLOT(TQXAction, GetChildren);
  SLOT(TQXAction, Loaded);
  SLOT(TQXAction, AddChildObject);
  SLOT(TQXAction, Create);
  SLOT(TQXAction, SetActionTypeID);
  SLOT(TQXAction, BeforeDeletion);
  SLOT(TQXAction, Execute);
  SLOT(TQXAction, GetActionLogTitle);
  SLOT(TQXAction, SetActionLogTitle);
  SLOT(TQXAction, GetDescription);
  SLOT(TQXAction, SetDescription);
  SLOT(TQXAction, GetObjectImplmentation);
  SLOT(TQXAction, GetCanHaveScripts);
  SLOT(TQXAction, GetIsSwitchActionList);
  SLOT(TQXAction, GetIsStopAction);
  SLOT(TQXAction, GetIsExitActionListAction);
  SLOT(TQXAction, GetCanIgnoreFailure);
  SLOT(TQXAction, GetIsTryAction);
  SLOT(TQXAction, GetIsCatchAction);
  SLOT(TQXAction, GetIsFinallyAction);
  SLOT(TQXAction, GetIsEndBlockAction);
  SLOT(TQXAction, GetIsSwitchAction);
  SLOT(TQXAction, GetIsCaseAction);
  SLOT(TQXAction, GetIsElseAction);
  SLOT(TQXAction, GetIsErrorFatal);
  SLOT(TQXAction, GetStatusText);
  SLOT(TQXAction, ResetBuildStatus);
  SLOT(TQXAction, Clear);
  SLOT(TQXAction, GetImageIndex);
  SLOT(TQXAction, GetNextActionSource);
  SLOT(TQXAction, GetNextAction);
  SLOT(TQXAction, InternalGetActionName);
  SLOT(TQXAction, ShowInCodeComplete);
  SLOT(TQXAction, GetDescriptionFormatString);
  SLOT(TQXAction, GetDescriptionKeyValue);
  SLOT(TQXAction, SetDescriptionKeyValue);
  SLOT(TQXAction, GetNonSearchProperties);
  SLOT(TQXAction, Validate);
  SLOT(TQXAction, GetHiddenProperties);
  SLOT(TQXAction, GetPropertyHelp);
  SLOT(TQXAction, GetPropertyAlias);
  SLOT(TQXAction, GetReadOnlyProperties);
  SLOT(TQXAction, GetDefaultPropertyName);
  SLOT(TQXAction, InitialiseScriptParams);
  SLOT(TQXAction, GetIsPaused);
  SLOT(TQXAction, SkipPause);
  SLOT(TQXAction, EncryptString);
  SLOT(TQXAction, DecryptString);
  SLOT(TQXAction, StopSignalled);
  SLOT(TQXAction, TerminateAction);
  SLOT(TQXAction, CanTerminate);
  SLOT(TQXAction, GetQuickHelpFilename);
  SLOT(TQXAction, GetHelpTopicID);
  SLOT(TQXAction, Updated);
  SLOT(TQXAction, GetCopyRight);
  SLOT(TQXAction, IsComment);
  SLOT(TQXAction, GetActionName);
  SLOT(TQXAction, GetChildAction);
  SLOT(TQXAction, GetChildActionCount);
}

void DumpHost(Dump& dump) {
  HEAD(IInterface);
  SLOT(IInterface, QueryInterface);
  SLOT(IInterface, _AddRef);
  SLOT(IInterface, _Release);
  HEAD(IQXActionLogMessage);
  SLOT(IQXActionLogMessage, AppendDetail);
  SLOT(IQXActionLogMessage, SetHeading);
  HEAD(IQXActionValidationError);
  SLOT(IQXActionValidationError, AddError);
  HEAD(IQXActionContext);
  SLOT(IQXActionContext, GetApplicationServices);
  HEAD(IQXProcessCallback);
  SLOT(IQXProcessCallback, RequiresSync);
  SLOT(IQXProcessCallback, OnStdOutData);
  SLOT(IQXProcessCallback, OnStdErrData);
  HEAD(IQXProcess);
  SLOT(IQXProcess, SetExecutable);
  SLOT(IQXProcess, SetStartingDirectory);
  SLOT(IQXProcess, SetParameters);
  SLOT(IQXProcess, SetRedirectOutput);
  SLOT(IQXProcess, SetHideWindow);
  SLOT(IQXProcess, SetCallback);
  SLOT(IQXProcess, SetStopEvent);
  SLOT(IQXProcess, Execute);
  HEAD(IArgument);
  HEAD(ICommandLineBuilder);
  SLOT(ICommandLineBuilder, Reset);
  SLOT(ICommandLineBuilder, AddArgument);
  SLOT(ICommandLineBuilder, GetCommandLine);
  HEAD(IQXOptionsReader);
  HEAD(IQXOptionsWriter);
  HEAD(IQXApplicationServices);
  HEAD(IStringTokeniser);
  HEAD(IQXDotNetInfo);
  HEAD(IQXDotNetFramework);
  HEAD(IQXPageList);
  SLOT(IQXPageList, GetPageCount);
  SLOT(IQXPageList, GetPage);
  HEAD(IQXOptionPageOwner);
  SLOT(IQXOptionPageOwner, GetOptions);
}

void DumpPages(Dump& dump) {
  dump.Head("TFrame");
  SLOT(TFrame, InitFrame);
  SLOT(TFrame, InitPage);
  SLOT(TFrame, ReadActionData);
  SLOT(TFrame, WriteActionData);
  SLOT(TFrame, OnPageActivate);
  SLOT(TFrame, OnPageDeActivate);
  SLOT(TFrame, PageName);
  SLOT(TFrame, GetHelpContext);
  dump.Head("TQXOptionsFrame");
  dump.Slot(SlotOf<void (TQXOptionsFrame::*)(IQXOptionPageOwner&)>(&TQXOptionsFrame::InitPage), "InitPage");
  SLOT(TQXOptionsFrame, ReadOptions);
  SLOT(TQXOptionsFrame, WriteOptions);
  SLOT(TQXOptionsFrame, GetPageName);
  HEAD(IVSDotNetPropertyPage);
  SLOT(IVSDotNetPropertyPage, UpdateSolution);
}

void DumpSolutionModel(Dump& dump) {
  HEAD(IVSDotNetObject);
  SLOT(IVSDotNetObject, GetImplementation);
  HEAD(IVSDotNetSolution);
  SLOT(IVSDotNetSolution, GetConfigurations);
  SLOT(IVSDotNetSolution, GetProjects);
  SLOT(IVSDotNetSolution, GetReservedText1);
  SLOT(IVSDotNetSolution, GetReservedText2);
  SLOT(IVSDotNetSolution, GetFileName);
  HEAD(IVSDotNetSolutionConfiguration);
  SLOT(IVSDotNetSolutionConfiguration, GetName);
  HEAD(IVSDotNetSolutionConfigurations);
  SLOT(IVSDotNetSolutionConfigurations, GetItem);
  SLOT(IVSDotNetSolutionConfigurations, GetCount);
  HEAD(IVSDotNetSolutionContext);
  HEAD(IVSDotNetSolutionContexts);
  HEAD(IVSDotNetProject);
  SLOT(IVSDotNetProject, GetName);
  SLOT(IVSDotNetProject, GetPath);
  SLOT(IVSDotNetProject, GetGUID);
  SLOT(IVSDotNetProject, GetTypeGUID);
  SLOT(IVSDotNetProject, GetDependencies);
  SLOT(IVSDotNetProject, IsVCProject);
  SLOT(IVSDotNetProject, GetRCFiles);
  SLOT(IVSDotNetProject, GetVersionInfoFile);
  HEAD(IVSDotNetProjects);
  SLOT(IVSDotNetProjects, GetItem);
  SLOT(IVSDotNetProjects, GetCount);
  SLOT(IVSDotNetProjects, FindByGUID);
  SLOT(IVSDotNetProjects, FindByPath);
  HEAD(IVSDotNetProjectConfiguration);
  HEAD(IVSDotNetProjectConfigurations);
  HEAD(IVSDotNetProjectDependancies);
  SLOT(IVSDotNetProjectDependancies, GetItem);
  SLOT(IVSDotNetProjectDependancies, GetCount);
  SLOT(IVSDotNetProjectDependancies, GetList);
}

void DumpVersionInfo(Dump& dump) {
  HEAD(IQXVC7VersionInfo);
  SLOT(IQXVC7VersionInfo, GetBuildVer);
  SLOT(IQXVC7VersionInfo, GetCodePage);
  SLOT(IQXVC7VersionInfo, GetIsDebug);
  SLOT(IQXVC7VersionInfo, GetIsDLL);
  SLOT(IQXVC7VersionInfo, GetIsPreRelease);
  SLOT(IQXVC7VersionInfo, GetIsPrivate);
  SLOT(IQXVC7VersionInfo, GetIsSpecial);
  SLOT(IQXVC7VersionInfo, GetLocale);
  SLOT(IQXVC7VersionInfo, GetMajorVer);
  SLOT(IQXVC7VersionInfo, GetMinorVer);
  SLOT(IQXVC7VersionInfo, GetReleaseVer);
  SLOT(IQXVC7VersionInfo, GetVersionInfoKeys);
  SLOT(IQXVC7VersionInfo, SetBuildVer);
  SLOT(IQXVC7VersionInfo, SetCodePage);
  SLOT(IQXVC7VersionInfo, SetIsDebug);
  SLOT(IQXVC7VersionInfo, SetIsDLL);
  SLOT(IQXVC7VersionInfo, SetIsPreRelease);
  SLOT(IQXVC7VersionInfo, SetIsPrivate);
  SLOT(IQXVC7VersionInfo, SetIsSpecial);
  SLOT(IQXVC7VersionInfo, SetLocale);
  SLOT(IQXVC7VersionInfo, SetMajorVer);
  SLOT(IQXVC7VersionInfo, SetMinorVer);
  SLOT(IQXVC7VersionInfo, SetReleaseVer);
  SLOT(IQXVC7VersionInfo, SetVersionInfoKeys);
  SLOT(IQXVC7VersionInfo, GetIncludeCompileDate);
  SLOT(IQXVC7VersionInfo, SetIncludeCompileDate);
  HEAD(IQXVC7VersionInfoParser);
  SLOT(IQXVC7VersionInfoParser, ReadVersionInfo);
  SLOT(IQXVC7VersionInfoParser, UpdateVersionInfo);
  HEAD(IQXAssemblyInfoUpdater);
  SLOT(IQXAssemblyInfoUpdater, UpdateAll);
  SLOT(IQXAssemblyInfoUpdater, UpdateSelected);
}

#undef HEAD
#undef SLOT

TEST(Contract, IdentifiersAndSlotOrdersEqualTheGoldenList) {
  Dump dump;
  DumpAction(dump);
  DumpHost(dump);
  DumpPages(dump);
  DumpSolutionModel(dump);
  DumpVersionInfo(dump);
  std::stringstream golden;
  golden << std::ifstream(QX_SOURCE_DIR "/tests/testdata/contract.txt").rdbuf();
  EXPECT_EQ(dump.out.str(), golden.str());
}

// An object behind two interfaces answers for both and for the root; the pointer counts.
class IFirst : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{11111111-1111-1111-1111-111111111111}");
  using Base = IInterface;
  virtual int First() = 0;
};
class ISecond : public IFirst {
 public:
  static constexpr TGUID IID = Guid("{22222222-2222-2222-2222-222222222222}");
  using Base = IFirst;
  virtual int Second() = 0;
};
class IThird : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{33333333-3333-3333-3333-333333333333}");
  using Base = IInterface;
  virtual int Third() = 0;
};
class Many : public Implements<ISecond, IThird> {
 public:
  explicit Many(bool* gone) : gone_(gone) {}
  ~Many() override { *gone_ = true; }
  int First() override { return 1; }
  int Second() override { return 2; }
  int Third() override { return 3; }

 private:
  bool* gone_;
};

TEST(Interfaces, QueryFindsEveryBaseAndNothingElse) {
  bool gone = false;
  {
    const InterfacePtr<Many> many = MakeInterface<Many>(&gone);
    EXPECT_EQ(Query<IFirst>(many.get())->First(), 1);
    EXPECT_EQ(Query<ISecond>(many.get())->Second(), 2);
    const InterfacePtr<IThird> third = Query<IThird>(many.get());
    EXPECT_EQ(third->Third(), 3);
    EXPECT_EQ(Query<ISecond>(third.get())->Second(), 2);
    EXPECT_TRUE(Query<IInterface>(third.get()) == Query<IInterface>(many.get()));
    EXPECT_FALSE(Query<IQXProcess>(third.get()));
  }
  EXPECT_TRUE(gone);
}

TEST(Interfaces, PointerCountsEachHolderOnce) {
  bool gone = false;
  auto* raw = new Many(&gone);
  InterfacePtr<Many> holder = InterfacePtr<Many>::Share(raw);
  InterfacePtr<IThird> other = holder;
  EXPECT_EQ(raw->_AddRef(), 3);
  EXPECT_EQ(raw->_Release(), 2);
  holder = nullptr;
  EXPECT_FALSE(gone);
  InterfacePtr<IThird> adopted = InterfacePtr<IThird>::Adopt(other.Detach());
  EXPECT_FALSE(other);
  adopted = nullptr;
  EXPECT_TRUE(gone);
}

}  // namespace
}  // namespace qx
