// What the tests of pages share: a folder with solutions, an action in a host in miniature, the dialog of its
// pages, and a user who is driven by the test.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "actions/Qxvsdotnetaction.h"
#include "host/actions/Catalogue.h"
#include "host/pages/PageDriver.h"
#include "host/pages/Pages.h"
#include "host/testing/TestFolder.h"
#include "host/testing/TestHost.h"
#include "platform/files/Files.h"

namespace qx {

using Texts = std::vector<std::string>;
using Json = nlohmann::ordered_json;

// A project of a solution that a test writes: its file lies below the solution's folder.
struct TestProject {
  std::string name;
  std::string identifier;
};

constexpr const char* kLibrary = "{AAAAAAAA-0000-0000-0000-00000000000a}";
constexpr const char* kProgram = "{BBBBBBBB-0000-0000-0000-00000000000B}";
constexpr const char* kTool = "{CCCCCCCC-0000-0000-0000-00000000000C}";
constexpr const char* kGone = "{DDDDDDDD-0000-0000-0000-00000000000D}";

std::string SolutionText(const std::vector<TestProject>& projects, const Texts& configurations);

// A page that cannot be anything a sibling asks for, to stand among those that can.
const TFrameClass& PlainPage();

class PagesFixture : public testing::Test {
 protected:
  PagesFixture();

  // Writes a solution with its projects' files and returns its path.
  std::string WriteSolution(const std::string& name, const std::vector<TestProject>& projects,
                            const Texts& configurations = {"Debug|Win32", "Release|Win32"}) const;
  // Library, program and tool.
  std::string WriteSolution() const;

  // Shows the pages, filled from the action, to the user.
  void Open();
  void Write() { dialog->Write(); }

  // The control of a page of the open dialog.
  template <class Control>
  Control& Of(int page, const char* name) {
    TControl* control = dialog->Page(page).FindControl(name);
    if (control == nullptr) throw Exception(std::string("no control ") + name);
    return dynamic_cast<Control&>(*control);
  }
  TControl& Any(int page, const char* name) { return Of<TControl>(page, name); }
  bool Enabled(int page, const char* name) { return Any(page, name).IsEnabled(); }
  // The list's names, an "x " before each that is ticked.
  Texts Ticks(int page);

  // The texts of the dialogs shown since the last call, "error: TEXT" or "message: TEXT".
  Texts Shown();

  TestFolder folder;
  Variables variables{nullptr};
  DrivenUser user;
  TestHost host;
  std::unique_ptr<TQXVSDotNetAction> action;
  RegisteredAction registered{&TQXVSDotNetAction::Class(), "Build VS.Net Solution", "", "", {}, {}};
  std::unique_ptr<PageDialog> dialog;
};

// Where the pages stand in the dialog.
constexpr int kSolutionPage = 0;
constexpr int kAssemblyPage = 1;
constexpr int kDetectionPage = 2;
constexpr int kVersionPage = 3;

}  // namespace qx
