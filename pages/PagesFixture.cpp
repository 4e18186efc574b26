#include "pages/PagesFixture.h"

#include "pages/Qxvsdotnetassemblyframe.h"
#include "pages/Qxvsdotnetoutputlocationframe.h"
#include "pages/Qxvsdotnetprojectframe.h"
#include "pages/Qxvsdotnetversioninfoframe.h"

namespace qx {

std::string SolutionText(const std::vector<TestProject>& projects, const Texts& configurations) {
  std::string text = "Microsoft Visual Studio Solution File, Format Version 9.00\r\n# Visual Studio 2005\r\n";
  for (const TestProject& project : projects)
    text += "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"" + project.name +
            "\", \"Any.csproj\", \"" + project.identifier + "\"\r\nEndProject\r\n";
  text += "Global\r\n";
  if (!configurations.empty()) {
    text += "\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n";
    for (const std::string& name : configurations) text += "\t\t" + name + " = " + name + "\r\n";
    text += "\tEndGlobalSection\r\n";
  }
  return text + "EndGlobal\r\n";
}

const TFrameClass& PlainPage() {
  struct Plain final : TFrame {
    std::string PageName() const override { return "Plain"; }
  };
  static constexpr TFrameClass record{"TPlain",
                                      []() -> std::unique_ptr<TFrame> { return std::make_unique<Plain>(); }};
  return record;
}

PagesFixture::PagesFixture() {
  host.catalogue.UseDesignVariables(&variables);
  action = host.Make<TQXVSDotNetAction>(TQXVSDotNetAction::Class());
  registered.pages = {&TVSDotNetProjectFrame::Class(), &TVSDotNetAssemblyFrame::Class(),
                      &TVSDotNetOutputLocationFrame::Class(), &TVC7VersionInfoFrame::Class()};
}

std::string PagesFixture::WriteSolution(const std::string& name, const std::vector<TestProject>& projects,
                                        const Texts& configurations) const {
  folder.Write("Any.csproj", "<Project/>");
  return folder.Write(name, SolutionText(projects, configurations));
}

std::string PagesFixture::WriteSolution() const {
  return WriteSolution("App.sln", {{"Library", kLibrary}, {"Program", kProgram}, {"Tool", kTool}});
}

void PagesFixture::Open() { dialog = PageDialog::ForAction(registered, *action); }

Texts PagesFixture::Ticks(int page) {
  const auto& list = Of<TCheckListBox>(page, "lstProjects");
  Texts ticks;
  for (int i = 0; i < list.Count(); ++i) ticks.push_back((list.IsChecked(i) ? "x " : "- ") + list.Item(i));
  return ticks;
}

Texts PagesFixture::Shown() {
  Texts shown;
  for (const Json& dialogBox : user.TakeShown())
    shown.push_back(std::string(dialogBox["kind"]) + ": " + std::string(dialogBox.value("text", "")));
  return shown;
}

}  // namespace qx
