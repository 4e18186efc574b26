// The contract's identifiers and slot orders, dumped and compared with the golden list that packages built
// earlier rely on: a slot that moves breaks every package in the field without a word from the compiler.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "actions/Qxvsdotnetaction.h"
#include "options/Qxvsdotnetoptions.h"
#include "plugin/Qxaction.h"
#include "plugin/Qxcheck.h"
#include "plugin/Qxcontrols.h"
#include "plugin/Qxdotnetinfo.h"
#include "plugin/Qxexecuteaction.h"
#include "plugin/Qxframe.h"
#include "plugin/Qxfromfile.h"
#include "plugin/Qxlanguages.h"
#include "plugin/Qxoptions.h"
#include "plugin/Qxpageadvice.h"
#include "plugin/Qxprocess.h"
#include "plugin/Qxrunplaces.h"
#include "plugin/Qxrunreport.h"
#include "plugin/Qxservices.h"
#include "plugin/Qxtokeniser.h"
#include "plugin/Qxversions.h"
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

// What only derived classes may name.
struct OpenedControl : TControl {
  using TControl::Click, TControl::Type, TControl::Select, TControl::Tick, TControl::EditCell,
      TControl::PressButton;
};
struct OpenedExecuteAction : TQXExecuteAbstractAction {
  using TQXExecuteAbstractAction::GetCommandLine, TQXExecuteAbstractAction::GetExecutable,
      TQXExecuteAbstractAction::GetStartingDir, TQXExecuteAbstractAction::InterpretResult;
};

void DumpActionOfTheProject(Dump& dump) {
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
}

void DumpActionOfTheRun(Dump& dump) {
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

void DumpInterfacesOfActions(Dump& dump) {
  HEAD(IInterface);
  SLOT(IInterface, QueryInterface);
  SLOT(IInterface, _AddRef);
  SLOT(IInterface, _Release);
  HEAD(IQXRunPlaces);
  SLOT(IQXRunPlaces, GetWorkFolders);
  SLOT(IQXRunPlaces, GetInputFiles);
  HEAD(IQXWebLogin);
  SLOT(IQXWebLogin, GetWebLogin);
  HEAD(IQXRunReport);
  SLOT(IQXRunReport, ReportRun);
  HEAD(IQXVersions);
  SLOT(IQXVersions, GetVersions);
  SLOT(IQXVersions, SetVersions);
  SLOT(IQXVersions, BumpVersions);
  SLOT(IQXVersions, WarnOfText);
  HEAD(IQXCheck);
  SLOT(IQXCheck, CheckRun);
  HEAD(IQXFromFile);
  SLOT(IQXFromFile, TakesFile);
  SLOT(IQXFromFile, SetUpFromFile);
  HEAD(IQXPageAdvice);
  SLOT(IQXPageAdvice, WhatIsWrongWith);
  SLOT(IQXPageAdvice, TextWasLeft);
  SLOT(IQXPageAdvice, QuestionBeforeWriting);
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
}

void DumpInterfacesOfTheHost(Dump& dump) {
  HEAD(IArgument);
  SLOT(IArgument, GetSwitch);
  SLOT(IArgument, GetValue);
  SLOT(IArgument, GetOption);
  HEAD(ICommandLineBuilder);
  SLOT(ICommandLineBuilder, Reset);
  SLOT(ICommandLineBuilder, AddArgument);
  SLOT(ICommandLineBuilder, GetCommandLine);
  HEAD(IQXOptionsReader);
  SLOT(IQXOptionsReader, ReadString);
  SLOT(IQXOptionsReader, ReadInteger);
  HEAD(IQXOptionsWriter);
  SLOT(IQXOptionsWriter, WriteString);
  SLOT(IQXOptionsWriter, WriteInteger);
  HEAD(IQXApplicationServices);
  SLOT(IQXApplicationServices, ExpandExpression);
  HEAD(IStringTokeniser);
  SLOT(IStringTokeniser, AtEnd);
  SLOT(IStringTokeniser, Peek);
  SLOT(IStringTokeniser, Read);
  SLOT(IStringTokeniser, SkipBlanks);
  SLOT(IStringTokeniser, ReadUntil);
  SLOT(IStringTokeniser, Rest);
  HEAD(IQXDotNetInfo);
  SLOT(IQXDotNetInfo, FindVersion);
  HEAD(IQXDotNetFramework);
  SLOT(IQXDotNetFramework, GetInstallFolder);
  HEAD(IQXPageList);
  SLOT(IQXPageList, GetPageCount);
  SLOT(IQXPageList, GetPage);
  HEAD(IQXOptionPageOwner);
  SLOT(IQXOptionPageOwner, GetOptions);
}

// Tables of functions without an identifier: a package gets them from the host by a function's name.
void DumpServices(Dump& dump) {
  dump.Head("IQXStateReader");
  SLOT(IQXStateReader, ReadText);
  SLOT(IQXStateReader, ReadList);
  dump.Head("IQXStateWriter");
  SLOT(IQXStateWriter, WriteText);
  SLOT(IQXStateWriter, WriteList);
  dump.Head("IQXActionServices");
  SLOT(IQXActionServices, RegisterAction);
  SLOT(IQXActionServices, RegisterPropertyEditor);
  SLOT(IQXActionServices, RegisterPropertyPages);
  dump.Head("IQXOptionsServices");
  SLOT(IQXOptionsServices, RegisterOptions);
  SLOT(IQXOptionsServices, RegisterOptionsPage);
  SLOT(IQXOptionsServices, FindOptions);
  dump.Head("IQXScriptCall");
  SLOT(IQXScriptCall, SetResult);
  dump.Head("IQXScriptingServices");
  SLOT(IQXScriptingServices, RegisterFunction);
  SLOT(IQXScriptingServices, RegisterEnumeration);
}

// The classes of the runtime that packages derive from, beside the action itself.
void DumpBaseClasses(Dump& dump) {
  dump.Head("TQXExecuteAbstractAction");
  SLOT(OpenedExecuteAction, GetExecutable);
  SLOT(OpenedExecuteAction, GetStartingDir);
  SLOT(OpenedExecuteAction, GetCommandLine);
  SLOT(OpenedExecuteAction, InterpretResult);
  dump.Head("TQXOptionsObject");
  SLOT(TQXOptionsObject, LoadOptions);
  SLOT(TQXOptionsObject, SaveOptions);
  SLOT(TQXOptionsObject, IsModified);
  SLOT(TQXOptionsObject, GetOptionType);
  SLOT(TQXOptionsObject, GetOptionsName);
  SLOT(TQXOptionsObject, GetOptionsCategory);
  dump.Head("TShowActionPropertiesEditor");
  SLOT(TShowActionPropertiesEditor, GetPageName);
  dump.Head("TControl");
  SLOT(TControl, Kind);
  SLOT(TControl, IsWindowed);
  SLOT(OpenedControl, Click);
  SLOT(OpenedControl, Type);
  SLOT(OpenedControl, Select);
  SLOT(OpenedControl, Tick);
  SLOT(OpenedControl, EditCell);
  SLOT(OpenedControl, PressButton);
}

void DumpPackageOptions(Dump& dump) {
  HEAD(IQXVSDotNetOptions);
  SLOT(IQXVSDotNetOptions, GetDevEnvLocation);
  SLOT(IQXVSDotNetOptions, SetDevEnvLocation);
  SLOT(IQXVSDotNetOptions, GetDevEnv2003Location);
  SLOT(IQXVSDotNetOptions, SetDevEnv2003Location);
  SLOT(IQXVSDotNetOptions, GetDevEnv2005Location);
  SLOT(IQXVSDotNetOptions, SetDevEnv2005Location);
  SLOT(IQXVSDotNetOptions, GetDefaultVSVersion);
  SLOT(IQXVSDotNetOptions, SetDefaultVSVersion);
  SLOT(IQXVSDotNetOptions, GetMSTestLocation);
  SLOT(IQXVSDotNetOptions, SetMSTestLocation);
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

std::string DumpOfTheContract() {
  Dump dump;
  DumpActionOfTheProject(dump);
  DumpActionOfTheRun(dump);
  DumpInterfacesOfActions(dump);
  DumpInterfacesOfTheHost(dump);
  DumpServices(dump);
  DumpBaseClasses(dump);
  DumpPackageOptions(dump);
  DumpPages(dump);
  DumpSolutionModel(dump);
  DumpVersionInfo(dump);
  return dump.out.str();
}

TEST(Contract, IdentifiersAndSlotOrdersEqualTheGoldenList) {
  std::stringstream golden;
  golden << std::ifstream(QX_SOURCE_DIR "/tests/testdata/contract.txt").rdbuf();
  EXPECT_EQ(DumpOfTheContract(), golden.str());
}

// "Class::Function" of every slot that the headers of a folder declare, destructors left out.
std::set<std::string> DeclaredSlots(const std::filesystem::path& folder) {
  std::set<std::string> slots;
  for (const auto& header : std::filesystem::directory_iterator(folder)) {
    std::ifstream in(header.path());
    std::string owner;
    for (std::string line; std::getline(in, line);) {
      std::istringstream words(line.substr(0, line.find_first_of(":{")));
      if (line.starts_with("class ") && !line.ends_with(";")) {
        while (words >> owner) continue;
      }
      const std::size_t open = line.find('(');
      if (!line.starts_with("  virtual ") || line.find('~') < open || open == std::string::npos) continue;
      const std::size_t blank = line.rfind(' ', open);
      slots.insert(owner + "::" + line.substr(blank + 1, open - blank - 1));
    }
  }
  return slots;
}

TEST(Contract, EverySlotThatAHeaderOfTheContractDeclaresIsInTheList) {
  std::set<std::string> pinned;
  std::istringstream dump(DumpOfTheContract());
  std::string owner;
  for (std::string line; std::getline(dump, line);) {
    if (line.starts_with("  ")) {
      pinned.insert(owner + "::" + line.substr(line.rfind(' ') + 1));
    } else {
      owner = line.substr(0, line.find(' '));
    }
  }
  const std::set<std::string> declared = DeclaredSlots(QX_SOURCE_DIR "/plugin");
  EXPECT_GT(declared.size(), 130u) << "the test lost its way: too few slots were read";
  for (const std::string& slot : declared) EXPECT_TRUE(pinned.contains(slot)) << slot << " is not pinned";
}

}  // namespace
}  // namespace qx
