// The help pages: well formed, without scripts, and complete. Every property, every caption of a page
// and every message in the sources must be found in them, so that nothing new goes untold.
#include <filesystem>
#include <pugixml.hpp>
#include <regex>
#include <set>
#include <sstream>

#include "actions/Qxmstestaction.h"
#include "options/Qxvsdotnetoptions.h"
#include "pages/PagesFixture.h"
#include "pages/Qxmstestframe.h"
#include "pages/Qxvsdotnetassemblyframe.h"
#include "pages/Qxvsdotnetoptionsframe.h"
#include "pages/Qxvsdotnetoutputlocationframe.h"
#include "pages/Qxvsdotnetprojectframe.h"
#include "pages/Qxvsdotnetversioninfoframe.h"
#include "platform/Texts.h"

namespace qx {
namespace {

constexpr const char* kBuildHelp = "VSDotNet.html";
constexpr const char* kTestHelp = "MSTest.html";

std::string HelpFile(const char* name) { return ReadFile(std::string(QX_SOURCE_DIR) + "/Plugins/" + name); }

// One blank in the place of each run of blanks and line ends.
std::string Joined(const std::string& text) {
  return Trim(std::regex_replace(text, std::regex("\\s+"), " "));
}

void AppendText(const pugi::xml_node& node, std::string& text) {
  for (const pugi::xml_node child : node.children()) {
    if (child.type() == pugi::node_pcdata) text += child.value();
    const std::string name = child.name();
    const bool isInline = name == "code" || name == "b" || name == "i" || name == "a" || name.empty();
    if (!isInline) text += "\n";
    if (name != "style") AppendText(child, text);
  }
}

// What a reader sees.
std::string Shown(const char* name) {
  pugi::xml_document page;
  const pugi::xml_parse_result result =
      page.load_string(HelpFile(name).c_str(), pugi::parse_full | pugi::parse_ws_pcdata);
  EXPECT_TRUE(result) << name << ": " << result.description() << " at " << result.offset;
  std::string text;
  AppendText(page.child("html").child("body"), text);
  return Joined(text);
}

void ExpectTold(const char* page, const std::string& text) {
  EXPECT_NE(Shown(page).find(Joined(text)), std::string::npos)
      << page << " does not tell of \"" << text << "\"";
}

TEST(Help, IsPlainWellFormedHtmlForLightAndDark) {
  for (const char* name : {kBuildHelp, kTestHelp}) {
    const std::string html = HelpFile(name);
    EXPECT_TRUE(html.starts_with("<!DOCTYPE html>\n<html lang=\"en\">")) << name;
    EXPECT_NE(html.find("<meta charset=\"utf-8\" />"), std::string::npos) << name;
    EXPECT_NE(html.find("color-scheme: light dark"), std::string::npos) << name;
    for (const char* unwanted : {"<script", "javascript:", "http-equiv", "src=", "@import", "url("})
      EXPECT_EQ(html.find(unwanted), std::string::npos) << name << " holds " << unwanted;
    EXPECT_GT(Shown(name).size(), 1000u) << name;
  }
}

TEST(Help, ItsLinksLeadSomewhere) {
  for (const char* name : {kBuildHelp, kTestHelp}) {
    const std::string html = HelpFile(name);
    const std::regex link("href=\"([^\"]*)\"");
    for (std::sregex_iterator at(html.begin(), html.end(), link), end; at != end; ++at) {
      const std::string target = (*at)[1];
      if (target.starts_with('#')) {
        EXPECT_NE(html.find("id=\"" + target.substr(1) + "\""), std::string::npos) << name << " " << target;
      } else {
        EXPECT_TRUE(FileExists(std::string(QX_SOURCE_DIR) + "/Plugins/" + target)) << name << " " << target;
      }
    }
  }
}

TEST(Help, StandsWhereTheActionsNameIt) {
  TestHost host;
  const std::unique_ptr<TQXAction> actions[] = {host.Make(TQXVSDotNetAction::Class()),
                                                host.Make(TQXMSTestAction::Class())};
  for (const auto& action : actions) {
    const std::string file = action->GetQuickHelpFilename();
    EXPECT_TRUE(FileExists(std::string(QX_BINARY_DIR) + "/" + file)) << file;
    EXPECT_EQ(ReadFile(std::string(QX_BINARY_DIR) + "/" + file),
              ReadFile(std::string(QX_SOURCE_DIR) + "/" + file));
  }
}

TEST(Help, TellsOfEveryProperty) {
  const std::pair<const TQXActionClass*, const char*> subjects[] = {{&TQXVSDotNetAction::Class(), kBuildHelp},
                                                                    {&TQXMSTestAction::Class(), kTestHelp}};
  for (const auto& [subject, page] : subjects) {
    for (const PublishedProperty& row : subject->properties) {
      EXPECT_NE(HelpFile(page).find("<code>" + std::string(row.name) + "</code>"), std::string::npos)
          << page << " does not tell of " << row.name;
    }
  }
}

TEST(Help, TellsOfEverythingThatThePagesShow) {
  DrivenUser user;
  const auto expectCaptions = [](const TFrame& page, const char* help) {
    for (const TControl* control : page.Controls()) {
      // Headings group what is told of; the note is told in other words.
      if (control->Kind() == "heading" || control->name == "lblNote" || control->caption.empty()) continue;
      std::string caption = Trim(control->caption);
      std::erase(caption, '&');
      ExpectTold(help, caption);
    }
  };
  expectCaptions(TVSDotNetProjectFrame(), kBuildHelp);
  expectCaptions(TVSDotNetAssemblyFrame(), kBuildHelp);
  expectCaptions(TVSDotNetOutputLocationFrame(), kBuildHelp);
  expectCaptions(TVC7VersionInfoFrame(), kBuildHelp);
  expectCaptions(TVSDotNetOptionsFrame(), kBuildHelp);
  expectCaptions(TMSTestFrame(), kTestHelp);
}

// The literals of every statement that logs, raises or shows something, from the call to its semicolon.
std::set<std::string> MessagesOf(const std::filesystem::path& source) {
  static const std::regex call(
      R"((Fail|SendMessage|AddError|Exception|SetHeading|[lL]og_?|Expand|QXShow\w+|RaiseTransferError|)"
      R"(RaiseAbout|Unexpected)\()");
  static const std::regex literal(R"re("((?:[^"\\]|\\.)*)")re");
  std::set<std::string> messages;
  std::istringstream lines(ReadFile(source.string()));
  std::string text;
  for (std::string line; std::getline(lines, line);)
    if (!Trim(line).starts_with("//") && !line.starts_with("#")) text += line + "\n";
  for (std::sregex_iterator at(text.begin(), text.end(), call), end; at != end; ++at) {
    const auto begin = static_cast<std::size_t>(at->position());
    // Adjacent literals are one text.
    const std::string statement = std::regex_replace(text.substr(begin, text.find(";\n", begin) - begin),
                                                     std::regex("\"\\s*\\n\\s*\""), "");
    for (std::sregex_iterator in(statement.begin(), statement.end(), literal); in != end; ++in) {
      std::string message = std::regex_replace((*in)[1].str(), std::regex(R"(\\(r|n))"), "\n");
      std::erase_if(message, [](char c) { return c == '\\' || c == '"' || c == '\''; });  // around a name
      std::istringstream parts(message);
      for (std::string part; std::getline(parts, part);)
        if (std::regex_search(part, std::regex("[A-Za-z]{3}"))) messages.insert(Trim(part));
    }
  }
  return messages;
}

TEST(Help, TellsOfEveryMessage) {
  namespace fs = std::filesystem;
  // A programming error, which no user can cause; a name that only stands in for others.
  const std::set<std::string> leftOut{"Assertion failure (PlugIns/VStudio.NET/QXResolveIISDirectory)"};
  int told = 0;
  for (const char* room : {"actions", "versioning", "weblocation", "solution", "pages"}) {
    for (const auto& entry : fs::directory_iterator(fs::path(QX_SOURCE_DIR) / room)) {
      const std::string name = entry.path().filename().string();
      if (!name.ends_with(".cpp") || name.find("_test") != std::string::npos ||
          name.find("_fuzz") != std::string::npos || name.find("Fixture") != std::string::npos ||
          name.find("Model") != std::string::npos)
        continue;
      const char* page = name.find("mstest") != std::string::npos ? kTestHelp : kBuildHelp;
      for (const std::string& message : MessagesOf(entry.path())) {
        if (leftOut.contains(message)) continue;
        ++told;
        EXPECT_NE(Shown(page).find(Joined(message)), std::string::npos)
            << page << " does not tell of \"" << message << "\" of " << room << "/" << name;
      }
    }
  }
  EXPECT_GT(told, 40) << "the test lost its way: too few messages were found";
  for (const char* reason : {"List index out of bounds", "Unexpected", "Cannot read", "Cannot write",
                             ": 0 succeeded,", "is not a valid integer value"})
    ExpectTold(kBuildHelp, reason);
  ExpectTold(kTestHelp, "MSTest Locatation");
}

}  // namespace
}  // namespace qx
