// A large solution in the pages of an action, beside what reading the solution takes alone: opening the
// dialog, the refresh button, and a tick, which reads it anew too. All four pages are there and follow.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "actions/Qxvsdotnetaction.h"
#include "host/actions/Catalogue.h"
#include "host/pages/Pages.h"
#include "host/system/HostProgram.h"
#include "host/testing/TestHost.h"
#include "pages/Qxvsdotnetassemblyframe.h"
#include "pages/Qxvsdotnetoutputlocationframe.h"
#include "pages/Qxvsdotnetprojectframe.h"
#include "pages/Qxvsdotnetversioninfoframe.h"
#include "solution/Vsnetsln.h"

namespace {

namespace fs = std::filesystem;

constexpr int kProjects = 1000;

std::string Guid(int i) {
  char text[64];
  std::snprintf(text, sizeof text, "{%08X-1111-2222-3333-444444444444}", static_cast<unsigned>(i));
  return text;
}

// A solution with its projects' files on disk, gone at the end of the program.
class Solution {
 public:
  Solution() : folder_(fs::temp_directory_path() / "qx-page-bench") {
    fs::create_directories(folder_);
    std::string text =
        "\r\nMicrosoft Visual Studio Solution File, Format Version 9.00\r\n# Visual Studio 2005\r\n";
    std::string rows;
    for (int i = 0; i < kProjects; ++i) {
      const std::string name = "Project" + std::to_string(i);
      fs::create_directories(folder_ / name);
      std::ofstream(folder_ / name / (name + ".csproj")) << "<Project/>";
      text += "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"" + name + "\", \"" + name + "\\" +
              name + ".csproj\", \"" + Guid(i) + "\"\r\nEndProject\r\n";
      for (const char* row : {".Debug|Any CPU.ActiveCfg", ".Debug|Any CPU.Build.0",
                              ".Release|Any CPU.ActiveCfg", ".Release|Any CPU.Build.0"})
        rows += "\t\t" + Guid(i) + row + " = Debug|Any CPU\r\n";
    }
    std::ofstream(folder_ / "App.sln", std::ios::binary)
        << text
        << "Global\r\n\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n"
           "\t\tDebug|Any CPU = Debug|Any CPU\r\n\t\tRelease|Any CPU = Release|Any "
           "CPU\r\n\tEndGlobalSection\r\n"
           "\tGlobalSection(ProjectConfigurationPlatforms) = postSolution\r\n"
        << rows << "\tEndGlobalSection\r\nEndGlobal\r\n";
  }
  ~Solution() { fs::remove_all(folder_); }
  std::string File() const { return (folder_ / "App.sln").string(); }

 private:
  fs::path folder_;
};

const Solution& TheSolution() {
  static const Solution solution = [] {
    qx::KeepFreedMemory();  // as the host does where pages are shown
    return Solution();
  }();
  return solution;
}

constexpr auto kAll = qx::TVSDotNetBuildType::btAllProjects;
constexpr auto kSelected = qx::TVSDotNetBuildType::btSelectedProjects;

// The dialog of an action that builds the solution, or selected projects of it.
class Dialog {
 public:
  explicit Dialog(qx::TVSDotNetBuildType buildType) {
    action_->SetSolution(TheSolution().File());
    action_->Settings().buildType = buildType;
    dialog_ = qx::PageDialog::ForAction(registered_, *action_);
  }
  qx::TControl& Control(const char* name) { return *dialog_->Page(0).FindControl(name); }

 private:
  qx::TestHost host_;
  std::unique_ptr<qx::TQXVSDotNetAction> action_ =
      host_.Make<qx::TQXVSDotNetAction>(qx::TQXVSDotNetAction::Class());
  const qx::RegisteredAction registered_{
      &qx::TQXVSDotNetAction::Class(),
      "Build",
      "",
      "",
      {},
      {&qx::TVSDotNetProjectFrame::Class(), &qx::TVSDotNetAssemblyFrame::Class(),
       &qx::TVSDotNetOutputLocationFrame::Class(), &qx::TVC7VersionInfoFrame::Class()}};
  std::unique_ptr<qx::PageDialog> dialog_;
};

void OpenSolutionAlone(benchmark::State& state) {
  const std::string file = TheSolution().File();
  for (auto _ : state) benchmark::DoNotOptimize(qx::OpenSolution(file));
}
BENCHMARK(OpenSolutionAlone)->Unit(benchmark::kMicrosecond);

// The dialog from nothing to the end, with all that is no business of the solution's.
void OpenTheDialog(benchmark::State& state) {
  for (auto _ : state) Dialog dialog(kAll);
}
BENCHMARK(OpenTheDialog)->Unit(benchmark::kMicrosecond);

void RefreshInThePages(benchmark::State& state) {
  Dialog dialog(kSelected);
  qx::TControl& file = dialog.Control("txtSolution");
  for (auto _ : state) file.UserPressButton(1);
}
BENCHMARK(RefreshInThePages)->Unit(benchmark::kMicrosecond);

void TickInThePages(benchmark::State& state) {
  Dialog dialog(kSelected);
  qx::TControl& list = dialog.Control("lstProjects");
  bool tick = true;
  for (auto _ : state) {
    if (list.UserTick(kProjects / 2, tick) != qx::TUserAnswer::Done) state.SkipWithError("no tick");
    tick = !tick;
  }
}
BENCHMARK(TickInThePages)->Unit(benchmark::kMicrosecond);

}  // namespace
