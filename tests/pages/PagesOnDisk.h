// A folder with solutions to show, and the real program with the real package run in it. Pages are driven
// twice: their models by the command line, and their widgets on a screen.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "host/testing/TestFolder.h"
#include "tests/support/RunProgram.h"
#include "tests/support/Screen.h"

namespace qx {

using Json = nlohmann::ordered_json;
using Words = std::vector<std::string>;

inline constexpr const char* kBuild = "Build VS.Net Solution";
inline constexpr const char* kTest = "Run MSTest";
inline constexpr const char* kOptions = "";

enum class Driven { Models, Widgets };

// What there is to drive in this build.
inline std::vector<Driven> AllDriven() {
#ifdef QX_VIEW_DRIVER
  return {Driven::Models, Driven::Widgets};
#else
  return {Driven::Models};
#endif
}

// Why these cannot be driven here; empty: they can.
inline std::string Missing(Driven driven) {
  return driven == Driven::Models || test::HasScreen() ? "" : test::kNoScreen;
}

class PagesOnDisk {
 public:
  explicit PagesOnDisk(Driven driven = Driven::Models) : driven_(driven) {
    folder.Write("Any.csproj", "<Project/>");
    folder.Write("App.sln", Solution({"Library|A", "Program|B", "Tool|C"}, {"Debug|Win32", "Release|Win32"}));
    folder.Write("Other.sln", Solution({"Else|D", "Tool|C"}, {"Checked"}));
    folder.Write("Same.sln", Solution({"Tool|A", "Tool|C"}, {}));
    folder.Write("Bad.sln", "Something else\r\n");
    folder.Write("Torn.sln", "Microsoft Visual Studio Solution File, Format Version 9.00\r\nProject(\"" +
                                 Guid("A") +
                                 "\") = \"Name\", \"Any.csproj\"\r\nEndProject\r\nGlobal\r\nEndGlobal\r\n");
  }

  test::ProgramResult Host(const Words& words) const { return Run("qxhost", words); }

  // A build project with one such action; for the options a registry of a machine where nothing is installed,
  // which outside Windows stands in for the host's own.
  void Add(const std::string& action, const Words& settings) const {
    if (action == kOptions) {
      folder.Write("nothing.reg", "REGEDIT4\r\n");
      ASSERT_EQ(Host({"options", "Registry=nothing.reg"}).code, 0);
      return;
    }
    ASSERT_EQ(Host({"new", "p.xml"}).code, 0);
    Words words{"add", "p.xml", action};
    words.insert(words.end(), settings.begin(), settings.end());
    const test::ProgramResult added = Host(words);
    ASSERT_EQ(added.code, 0) << added.err;
  }

  // The answers to the commands, one each.
  std::vector<Json> Drive(const std::string& action, const Words& commands) const {
    std::string input;
    for (const std::string& command : commands) input += command + "\n";
    folder.Write("commands.txt", input);
    const test::ProgramResult result =
        Run(driven_ == Driven::Models ? "qxhost" : "qx_view_driver",
            {"drive", action == kOptions ? "--options-page" : "p.xml", "--input", folder / "commands.txt"});
    EXPECT_EQ(result.code, 0) << result.err;
    std::vector<Json> answers;
    std::istringstream lines(result.out);
    for (std::string line; std::getline(lines, line);) answers.push_back(Json::parse(line));
    return answers;
  }

  Json Saved(const std::string& action) const {
    const test::ProgramResult shown =
        action == kOptions ? Host({"options", "--json"}) : Host({"show", "p.xml", "--all", "--json"});
    EXPECT_EQ(shown.code, 0) << shown.err;
    const Json saved = Json::parse(shown.out);
    return action == kOptions ? saved["objects"][0]["properties"] : saved["actions"][0]["properties"];
  }

  TestFolder folder;

 private:
  test::ProgramResult Run(const char* program, Words words) const {
    words.insert(words.begin(), {"--options", folder / "options.xml"});
    return test::RunProgram(std::string(QX_BINARY_DIR) + "/" + program + QX_PROGRAM_ENDING, words,
                            folder.Path());
  }
  static std::string Guid(const std::string& letter) {
    return "{" + std::string(8, letter[0]) + "-0000-0000-0000-00000000000" + letter + "}";
  }
  static std::string Solution(const Words& projects, const Words& configurations) {
    std::string text = "Microsoft Visual Studio Solution File, Format Version 9.00\r\n";
    for (const std::string& project : projects)
      text += "Project(\"" + Guid("F") + "\") = \"" + project.substr(0, project.find('|')) +
              "\", \"Any.csproj\", \"" + Guid(project.substr(project.find('|') + 1)) + "\"\r\nEndProject\r\n";
    text += "Global\r\nGlobalSection(SolutionConfiguration) = preSolution\r\n";
    for (const std::string& name : configurations) text += name + " = " + name + "\r\n";
    return text + "EndGlobalSection\r\nEndGlobal\r\n";
  }

  Driven driven_;
};

}  // namespace qx
