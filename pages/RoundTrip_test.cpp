// A thousand random actions over random solutions, and over solutions that nobody here wrote: read by the
// pages, written by them, saved and loaded, every stored property is what it was but for what the pages'
// rules change, which stand here once more as a model. A second round changes nothing but the value of a key
// that stands twice: it shows the first one's, which is the version of the first round only now.
#include <filesystem>
#include <iostream>
#include <map>
#include <random>
#include <set>

#include "host/project/BuildProject.h"
#include "pages/PagesFixture.h"
#include "platform/Texts.h"
#include "plugin/Qxlanguages.h"
#include "solution/Vsnetsln.h"

namespace qx {
namespace {

constexpr unsigned kSeed = 20050711;
constexpr int kRounds = 1000;

using Properties = std::map<std::string, PropertyValue>;

// The solution as its reader gives it, for the model.
struct Opened {
  bool isOpened = false;
  std::vector<TestProject> projects;
  Texts configurations;
};

Opened Look(const std::string& file) {
  Opened opened;
  try {
    const InterfacePtr<IVSDotNetSolution> solution = OpenSolution(file);
    opened.isOpened = true;
    for (int i = 0; i < solution->GetProjects()->GetCount(); ++i) {
      const auto project = solution->GetProjects()->GetItem(i);
      opened.projects.push_back({project->GetName(), project->GetGUID()});
    }
    const auto configurations = solution->GetConfigurations();
    for (int i = 0; configurations && i < configurations->GetCount(); ++i)
      opened.configurations.push_back(configurations->GetItem(i)->GetName());
  } catch (const Exception&) {
  }
  return opened;
}

class RoundTrip : public PagesFixture {
 protected:
  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  bool Chance(int percent) { return Number(1, 100) <= percent; }
  template <class Value>
  const Value& OneOf(const std::vector<Value>& values) {
    return values[static_cast<std::size_t>(Number(0, static_cast<int>(values.size()) - 1))];
  }

  std::string Text() {
    static const Texts pieces{"a",   "B", " ", "1", "22", "|",  "=",           "\"",          "<b>", "&",
                              "%V%", "%", ".", "*", "é",  "\t", "{",           "FileVersion", ",",   ";",
                              "]]>", "Ω", "'", "/", "\\", "}",  "fileversion", "CompanyName", "-",   "0"};
    std::string text;
    for (int i = Number(0, 5); i > 0; --i) text += OneOf(pieces);
    return text;
  }
  std::string Keys() {
    std::string keys;
    for (int i = Number(0, Chance(10) ? 30 : 6); i > 0; --i)
      keys += Text() + (Chance(80) ? "=" + Text() : "") + OneOf(Texts{"\r\n", "\n", "\r\n", "\r"});
    return keys;
  }
  std::string Version() { return Chance(20) ? Text() : Text() + "|" + Text() + "|" + Text() + "|" + Text(); }
  TStringList Identifiers(const Opened& opened) {
    TStringList identifiers;
    for (int i = Number(0, 6); i > 0; --i) {
      if (opened.projects.empty() || Chance(25)) {
        identifiers.Add(Chance(50) ? kGone : Text());
        continue;
      }
      const std::string& identifier = OneOf(opened.projects).identifier;
      identifiers.Add(Chance(50) ? identifier : LowerCase(identifier));
    }
    return identifiers;
  }

  // A solution's file and, for the action, a text that leads to it.
  std::string RandomSolution(std::string& file) {
    file = folder / "Random.sln";
    if (Chance(5)) return "";
    if (!corpus_.empty() && Chance(25)) return file = OneOf(corpus_);
    if (Chance(5)) return file = folder / "Missing.sln";
    if (Chance(5)) return file = folder.Write("Bad.sln", Text());
    std::vector<TestProject> projects;
    static const Texts names{"App", "Library", "app", "A=B", "A", "Tést", "two words", "Tool"};
    for (int i = Number(0, 8); i > 0; --i)
      projects.push_back(
          {OneOf(names), "{" + std::to_string(Number(10000000, 10000012)) + "-ABCD-0000-0000-00000000000F}"});
    Texts configurations;
    for (int i = Number(0, 3); i > 0; --i) configurations.push_back(OneOf(names) + "|Win32");
    WriteSolution("Random.sln", projects, configurations);
    return Chance(50) ? file : "%ROOT%Random.sln";
  }

  PropertyValue RandomValue(const PublishedProperty& row, const Opened& opened) {
    if (row.kind == PropertyKind::Boolean) return Chance(50);
    if (row.kind == PropertyKind::Enumeration)
      return EnumerationValue{Number(0, static_cast<int>(row.valueNames.size()) - 1)};
    if (row.kind == PropertyKind::TextList) return Identifiers(opened);
    if (row.kind == PropertyKind::Integer) {
      if (row.name == "Locale" && Chance(70))
        return QXLanguages().GetLCID(Number(0, QXLanguages().GetCount() - 1));
      return Chance(80) ? Number(0, 65535) : Number(-2147483647, 2147483647);
    }
    if (row.name == "VersionInfoKeys") return Keys();
    if (row.name == "AssemblyVersion" || row.name == "AssemblyFileVersion") return Version();
    if (row.name == "SolutionConFiguration" && !opened.configurations.empty() && Chance(50))
      return OneOf(opened.configurations);
    return Chance(20) ? "" : Text();
  }

  void Randomise(const std::string& solution, const Opened& opened) {
    for (const PublishedProperty& row : Rows()) {
      if (row.storage == PropertyStorage::NotStored || row.name == "_WebDAVPassword") continue;
      row.set(*action, row.name == "Solution" ? PropertyValue(solution) : RandomValue(row, opened));
    }
  }

  static PropertyTable Rows() { return TQXVSDotNetAction::Class().properties; }
  // What is stored, the password in clear text.
  static Properties Stored(TQXVSDotNetAction& from) {
    Properties properties;
    for (const PublishedProperty& row : Rows())
      if (row.storage != PropertyStorage::NotStored && row.name != "_WebDAVPassword")
        properties.emplace(row.name, row.get(from));
    return properties;
  }

  void SaveAndLoad() {
    BuildProject project = BuildProject::Empty("p.xml");
    project.WriteAction(project.AppendAction("Build VS.Net Solution"), *action);
    const BuildProject loaded = BuildProject::Parse(project.Text(), "p.xml");
    action = host.Make<TQXVSDotNetAction>(TQXVSDotNetAction::Class());
    loaded.ReadAction(0, *action);
  }

  void LookForCorpus() {
    namespace fs = std::filesystem;
    const fs::path root = fs::path(QX_SOURCE_DIR).parent_path() / "shared" / "corpus";
    if (!fs::exists(root)) {
      std::cout << "left out: no corpus beside the source tree, so random solutions only\n";
      return;
    }
    std::set<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(root))
      if (entry.is_regular_file() && entry.path().extension() == ".sln") found.insert(entry.path().string());
    corpus_.assign(found.begin(), found.end());
  }

  std::mt19937 random_{kSeed};
  Texts corpus_;
};

// What the pages' rules make of a property set.
class Model {
 public:
  Model(Properties before, const Opened& opened) : after_(std::move(before)), opened_(opened) {}

  Properties After() {
    if (Text("SolutionConFiguration").empty() && !opened_.configurations.empty())
      Text("SolutionConFiguration") = opened_.configurations.front();
    Select("BuildType", "SelectedProjects");
    if (All("BuildType")) List("SelectedProjects").Clear();  // the other two lists stay
    Select("ApplyAssemblyInfoTo", "AssemblySelectedProjects");
    Select("ApplyResourceInfoTo", "ResourceSelectedProjects");
    for (const char* name : {"AutoIncAssemblyBuildNumber", "AutoIncAssemblyRevisionNo"})
      Flag(name) = Flag(name) && Flag("UpdateAssemblyVersion");
    for (const char* name : {"AutoIncAssemblyFileBuildNumber", "AutoIncAssemblyFileRevisionNo"})
      Flag(name) = Flag(name) && Flag("UpdateAssemblyFileVersion");
    if (Flag("UpdateAssemblyVersion")) FourParts(Text("AssemblyVersion"));
    if (Flag("UpdateAssemblyFileVersion")) FourParts(Text("AssemblyFileVersion"));
    for (const char* name : {"MajorVersion", "MinorVersion", "ReleaseVersion", "BuildVersion"})
      Number(name) = std::clamp(Number(name), 0, 65535);
    Flag("IsDebug") = false;  // overwritten by IsPrivate, which never changes
    if (QXLanguages().IndexOf(Number("Locale")) < 0) Number("Locale") = 0;
    if (Number("CodePage") == 0) Number("CodePage") = 1252;
    Number("WMIWebsiteNum") = std::max(Number("WMIWebsiteNum"), 1);
    Keys();
    return after_;
  }

 private:
  std::string& Text(const char* name) { return std::get<std::string>(after_.at(name)); }
  bool& Flag(const char* name) { return std::get<bool>(after_.at(name)); }
  std::int32_t& Number(const char* name) { return std::get<std::int32_t>(after_.at(name)); }
  TStringList& List(const char* name) { return std::get<TStringList>(after_.at(name)); }
  bool All(const char* type) { return std::get<EnumerationValue>(after_.at(type)).ordinal == 0; }

  // Known projects only, once each, as the solution orders and writes them.
  void Select(const char* type, const char* list) {
    if (All(type)) return;
    TStringList kept;
    std::set<std::string> seen;
    for (const TestProject& project : opened_.projects)
      if (seen.insert(FoldCase(project.identifier)).second && List(list).IndexOf(project.identifier) >= 0)
        kept.Add(project.identifier);
    List(list) = kept;
  }

  static void FourParts(std::string& version) {
    std::string rest = version + "|";
    std::string parts[4];
    for (int i = 0; i < 4 && !rest.empty(); ++i) {
      parts[i] = rest.substr(0, rest.find('|'));
      rest.erase(0, rest.find('|') + 1);
    }
    version = parts[0] + "|" + parts[1] + "|" + parts[2] + "|" + parts[3];
  }

  void Keys() {
    TStringList lines;
    lines.SetText(Text("VersionInfoKeys"));
    TStringList kept;
    for (int i = 0; i < lines.Count() && i < 19; ++i) {
      const std::size_t equals = lines.Get(i).find('=');
      if (equals == 0 || equals == std::string::npos) continue;
      const std::string key = lines.Get(i).substr(0, equals);
      kept.Add(key + "=" + lines.Value(key));
    }
    kept.SetValue("FileVersion", std::to_string(Number("MajorVersion")) + "." +
                                     std::to_string(Number("MinorVersion")) + "." +
                                     std::to_string(Number("ReleaseVersion")) + "." +
                                     std::to_string(Number("BuildVersion")));
    Text("VersionInfoKeys") = kept.Text();
  }

  Properties after_;
  const Opened& opened_;
};

TEST_F(RoundTrip, ChangesNothingThatTheRulesDoNotChange) {
  std::cout << "seed " << kSeed << ", " << kRounds << " rounds\n";
  LookForCorpus();
  variables.SetProject("ROOT", folder.Path());
  int opened = 0;
  int seen = 0;
  int changed = 0;
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    std::string file;
    const std::string solution = RandomSolution(file);
    const Opened look = solution.empty() ? Opened{} : Look(file);
    opened += look.isOpened ? 1 : 0;
    action = host.Make<TQXVSDotNetAction>(TQXVSDotNetAction::Class());
    Randomise(solution, look);
    const Properties before = Stored(*action);
    const Properties expected = Model(before, look).After();
    const Properties expectedAgain = Model(expected, look).After();
    for (const auto& [name, value] : expected) {
      ++seen;
      if (before.at(name) != value) ++changed;
      if (name == "VersionInfoKeys") continue;
      EXPECT_TRUE(expectedAgain.at(name) == value) << name;
    }
    for (const Properties* pass : {&expected, &expectedAgain}) {
      Open();
      Write();
      dialog.reset();
      SaveAndLoad();
      const Properties after = Stored(*action);
      for (const auto& [name, value] : *pass)
        EXPECT_TRUE(after.at(name) == value) << (pass == &expected ? "first " : "second ") << name;
    }
    user.TakeShown();
  }
  std::cout << opened << " solutions opened, " << corpus_.size() << " of them to choose from the corpus; "
            << changed << " of " << seen << " values changed by a rule\n";
  EXPECT_LT(changed, seen / 4);
  EXPECT_GT(opened, kRounds / 2);
}

}  // namespace
}  // namespace qx
