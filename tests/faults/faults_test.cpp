// A run that stamps, ended at its system calls one by one, and each of its writes failing as on a full disk. After
// each one function looks at everything that is promised. A short form takes some of the calls; QX_FAULTS=N takes N.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr int kProjects = 5;
constexpr int kShort = 60;
constexpr int kTimedOut = 124;  // of timeout(1)

std::string ReadAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class StampingFaults : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("qx-faults-" + std::to_string(::getpid()));
    fs::remove_all(folder_);
    fs::create_directories(folder_ / "tools");
    std::ofstream(folder_ / "tools/devenv.com") << "#!/bin/sh\nexit 0\n";
    fs::permissions(folder_ / "tools/devenv.com", fs::perms::owner_all);
    setenv("XDG_STATE_HOME", (folder_ / "state").c_str(), 1);
    if (Traced("kill 1 /bin/true").code != 128 + 9) GTEST_SKIP() << "processes cannot be traced here";
    Begin();
    Host("options DevEnvLocation=" + (folder_ / "tools").string() + " CheckBuilt=off");
    Host("new p.xml");
    ASSERT_EQ(Host("add p.xml 'Build VS.Net Solution' Solution=all.sln SolutionConFiguration=Release "
                   "VStudioVersion=vs2002 UpdateAssemblyInfo=True UpdateAssemblyVersion=True "
                   "'AssemblyVersion=1|0|0|0' AutoIncAssemblyBuildNumber=True")
                  .code,
              0);
    clean_ = ReadAll(Work() / "p.xml");
    options_ = ReadAll(folder_ / "options.xml");
  }
  void TearDown() override { fs::remove_all(folder_); }

  fs::path Work() const { return folder_ / "work"; }
  fs::path Source(int i) const { return Work() / ("P" + std::to_string(i)) / "AssemblyInfo.cs"; }
  static std::string Old(int i) {
    return "// project " + std::to_string(i) + "\r\n[assembly: AssemblyVersion(\"0.0.0.0\")]\r\n";
  }
  static std::string Text(int i, int number) {
    return number == 0 ? Old(i)
                       : "// project " + std::to_string(i) + "\r\n[assembly: AssemblyVersion(\"1.0." +
                             std::to_string(number) + ".0\")]\r\n";
  }

  // A fresh tree with nothing kept of an earlier one.
  void Begin() const {
    fs::remove_all(Work());
    fs::remove_all(folder_ / "state");
    std::string projects;
    for (int i = 0; i < kProjects; ++i) {
      const std::string name = "P" + std::to_string(i);
      fs::create_directories(Work() / name);
      std::ofstream(Work() / name / (name + ".csproj")) << "Include=\"AssemblyInfo.cs\"";
      std::ofstream(Source(i), std::ios::binary) << Old(i);
      projects += "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"" + name + "\", \"" + name + "\\" +
                  name + ".csproj\", \"{" + name + "}\"\r\nEndProject\r\n";
    }
    std::ofstream(Work() / "all.sln", std::ios::binary)
        << "Microsoft Visual Studio Solution File, Format Version 7.00\r\n" + projects +
               "Global\r\nEndGlobal\r\n";
    if (!clean_.empty()) std::ofstream(Work() / "p.xml", std::ios::binary) << clean_;
    if (!options_.empty()) std::ofstream(folder_ / "options.xml", std::ios::binary) << options_;
  }

  // What a command printed, complaints too, and its exit code.
  struct Answer {
    int code = 0;
    std::string out;
  };
  Answer Shell(const std::string& command) const {
    Answer answer;
    FILE* pipe = popen(("cd " + Work().string() + " && { " + command + "; } 2>&1").c_str(), "r");
    char part[4096];
    for (std::size_t size = 0; (size = fread(part, 1, sizeof part, pipe)) > 0;) answer.out.append(part, size);
    answer.code = WEXITSTATUS(pclose(pipe));
    return answer;
  }
  std::string HostCommand() const {
    return std::string(QX_BINARY_DIR) + "/qxhost --options " + (folder_ / "options.xml").string() + " ";
  }
  Answer Host(const std::string& words) const { return Shell(HostCommand() + words); }
  Answer Traced(const std::string& words) const {
    fs::create_directories(Work());
    return Shell("timeout -k 5 60 " + std::string(QX_BINARY_DIR) + "/kill_at " + words);
  }

  // The number that the build project has.
  int Number() const {
    const std::string text = ReadAll(Work() / "p.xml");
    const std::string name = "<Property name=\"AssemblyVersion\">1|0|";
    const std::size_t at = text.find(name);
    return at == std::string::npos ? -1 : std::atoi(text.c_str() + at + name.size());
  }
  // The number that stands in each source; every source has to be whole.
  std::vector<int> Numbers(const std::string& fault, int most) const {
    std::vector<int> numbers;
    for (int i = 0; i < kProjects; ++i) {
      const std::string text = ReadAll(Source(i));
      int number = -1;
      for (int n = 0; n <= most; ++n) number = text == Text(i, n) ? n : number;
      EXPECT_GE(number, 0) << fault << ": P" << i << " holds " << text;
      const fs::path backup = Source(i).string() + ".bak";
      const bool isBackedUp = fs::exists(backup);
      // What is new has its backup, whole and of its own.
      EXPECT_TRUE(number < 1 || isBackedUp) << fault;
      EXPECT_TRUE(!isBackedUp || ReadAll(backup) == Old(i)) << fault;
      EXPECT_TRUE(!isBackedUp || fs::hard_link_count(backup) == 1) << fault;
      numbers.push_back(number);
    }
    return numbers;
  }
  // Names that no run should leave behind.
  std::string Litter() const {
    std::string litter;
    for (const fs::path& root : {Work(), folder_ / "state"}) {
      if (!fs::exists(root)) continue;
      for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const std::string name = entry.path().filename();
        if (name.ends_with(".tmp") || name.ends_with(".lock")) litter += entry.path().string() + " ";
      }
    }
    return litter;
  }

  // Everything that is promised, after a first run that ended in whatever way.
  void LookAtEverything(const std::string& fault) const {
    const std::vector<int> after = Numbers(fault, 1);
    const int given = Number();
    EXPECT_GE(given, 0) << fault << ": the build project is torn";
    for (const int number : after)
      EXPECT_LE(number, given) << fault << ": a number was stamped that is not saved";
    // Whatever was stamped is had back.
    const bool isStamped = std::count(after.begin(), after.end(), 1) > 0;
    const auto restored = Host("restore p.xml");
    EXPECT_TRUE(!isStamped || restored.code == 0) << fault << restored.out;
    for (int i = 0; i < kProjects; ++i) EXPECT_EQ(ReadAll(Source(i)), Old(i)) << fault;
    EXPECT_EQ(Number(), given) << fault;
    // The next run goes through, gives a new number and leaves nothing lying about.
    const auto next = Host("run p.xml");
    EXPECT_EQ(next.code, 0) << fault << next.out;
    EXPECT_EQ(Number(), given + 1) << fault;
    for (const int number : Numbers(fault, 2)) EXPECT_EQ(number, given + 1) << fault;
    EXPECT_EQ(Litter(), "") << fault;
  }

  // How many faults a test takes, and the calls that they are at, spread over all of them.
  static std::vector<long> Places(long calls) {
    const char* wanted = std::getenv("QX_FAULTS");
    const long count = std::min(calls, wanted == nullptr ? long{kShort} : std::atol(wanted));
    std::vector<long> places;
    for (long i = 0; i < count; ++i) places.push_back(1 + i * calls / count);
    return places;
  }

  fs::path folder_;
  std::string clean_, options_;
};

TEST_F(StampingFaults, KilledAtEachSystemCall) {
  Begin();
  const auto whole = Traced("kill 0 " + HostCommand() + "run p.xml 2>/dev/null | tail -n 1");
  const long calls = std::atol(whole.out.c_str());
  ASSERT_GT(calls, 200) << whole.out;
  int killed = 0, stamped = 0;
  for (const long place : Places(calls)) {
    Begin();
    killed += Traced("kill " + std::to_string(place) + " " + HostCommand() + "run p.xml").code == 137 ? 1 : 0;
    stamped += ReadAll(Source(0)) == Old(0) ? 0 : 1;
    LookAtEverything("killed at call " + std::to_string(place) + " of " + std::to_string(calls));
    if (HasFailure()) break;
  }
  std::cout << killed << " kills at " << calls << " system calls, " << stamped << " behind a first file\n";
  EXPECT_GT(killed, 0);
}

using BothRuns = StampingFaults;

// While a run of one build project works, one of another on the same solution is refused and names it.
TEST_F(BothRuns, OfTwoProjectsOnOneSolutionOneIsRefused) {
  Begin();
  std::ofstream(folder_ / "tools/devenv.com")
      << "#!/bin/sh\ntouch begun; while [ ! -e go ]; do sleep 0.05; done\nexit 0\n";
  fs::copy_file(Work() / "p.xml", Work() / "q.xml");
  const auto both =
      Shell(HostCommand() + "run p.xml >/dev/null & while [ ! -e begun ]; do sleep 0.05; done; " +
            HostCommand() + "run q.xml; echo \"code $?\"; touch go; wait; " + HostCommand() +
            "run q.xml --wait 5; echo \"code $?\"");
  EXPECT_NE(both.out.find("is in use by process"), std::string::npos) << both.out;
  EXPECT_NE(both.out.find("p.xml)\ncode 2\n"), std::string::npos) << both.out;
  EXPECT_NE(both.out.rfind("code 0\n"), std::string::npos) << both.out;
  EXPECT_EQ(Litter(), "");
}

// Reports and logs are written over nothing that a run reads, whatever name leads to it.
TEST_F(BothRuns, ReportsAndLogsOverWhatIsReadAreRefused) {
  Begin();
  fs::create_symlink(Source(0), Work() / "link.json");
  for (const std::string words :
       {"--report json=P0/AssemblyInfo.cs", "--report html=P1/P1.csproj", "--report sarif=link.json",
        "--report junit=all.sln", "--log-file P0/AssemblyInfo.cs", "--log-file link.json"}) {
    const auto refused = Host("run p.xml " + words);
    EXPECT_EQ(refused.code, 2) << words << refused.out;
    EXPECT_NE(refused.out.find("name another file"), std::string::npos) << refused.out;
    EXPECT_EQ(ReadAll(Source(0)), Old(0)) << words;
    EXPECT_EQ(ReadAll(Work() / "P1/P1.csproj"), "Include=\"AssemblyInfo.cs\"") << words;
  }
  EXPECT_EQ(Host("run p.xml --report json=" + (folder_ / "state/qxhost/x.json").string()).code, 2);
}

TEST_F(StampingFaults, AFullDiskAtEachWrite) {
  Begin();
  const auto whole = Traced("fail 28 0 " + HostCommand() + "run p.xml 2>/dev/null | tail -n 1");
  const long calls = std::atol(whole.out.c_str());
  ASSERT_GT(calls, 40) << whole.out;
  int failed = 0;
  for (const long place : Places(calls)) {
    Begin();
    const int code = Traced("fail 28 " + std::to_string(place) + " " + HostCommand() + "run p.xml").code;
    EXPECT_NE(code, kTimedOut) << "it hangs at write " << place << " of " << calls;
    failed += code != 0 ? 1 : 0;
    LookAtEverything("no space at write " + std::to_string(place) + " of " + std::to_string(calls));
    if (HasFailure()) break;
  }
  std::cout << failed << " failed runs at " << calls << " calls that write\n";
  EXPECT_GT(failed, 0);
}

}  // namespace
}  // namespace qx
