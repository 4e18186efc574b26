// Faults while a rewriter works: ended at each of its system calls, each of them failing, a full disk. At
// every point the file is the old one or the new one, whole, and the backup is whole or absent.
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <vector>

#include "host/testing/TestFolder.h"

namespace qx {
namespace {

const std::string kStamp = std::string(QX_BINARY_DIR) + "/stamp_once";

// The leak checker of a sanitizer's build cannot look at a program that is traced.
int Shell(const std::string& command) {
  return std::system(("ASAN_OPTIONS=detect_leaks=0 " + command + " >/dev/null 2>&1").c_str());
}

// One kind of file: what is stamped, and which backup it leaves.
struct Case {
  std::string kind;
  std::string argument;
  std::string file;
  std::string backup;
  std::string old;
};

Case ScriptCase() {
  std::string text = "// \xA9\r\n";
  for (int i = 0; i < 2000; ++i) text += "// line " + std::to_string(i) + "\r\n";
  return {"rc", "App.rc", "App.rc", "App.rc.orig", text + "1 VERSIONINFO\r\nBEGIN\r\nEND\r\n// behind\r\n"};
}
Case SourceCase(const std::string& lineEnd) {
  return {"solution", "All.sln", "AssemblyInfo.cs", "AssemblyInfo.cs.bak",
          "// \xA9" + lineEnd + "[assembly: AssemblyVersion(\"1.0.0.0\")]" + lineEnd};
}

void Prepare(const TestFolder& folder, const Case& one) {
  folder.Write(
      "All.sln",
      "Microsoft Visual Studio Solution File, Format Version 8.00\r\n"
      "Project(\"{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}\") = \"P\", \"P.csproj\", \"{1}\"\r\nGlobal\r\n"
      "EndGlobal\r\n");
  folder.Write("P.csproj", "Include=\"AssemblyInfo.cs\"");
  folder.Write(one.file, one.old);
}

class Faults : public testing::TestWithParam<int> {
 protected:
  const Case one = GetParam() == 0 ? ScriptCase() : SourceCase(GetParam() == 1 ? "\r\n" : "\n");

  std::string Command(const TestFolder& folder) const {
    return kStamp + " " + one.kind + " " + (folder / one.argument);
  }
  // Runs one stamping behind `fault` and looks at what is left.
  void Look(const std::string& newText, const std::string& newBackup, const std::string& fault) const {
    const TestFolder folder;
    Prepare(folder, one);
    Shell(fault + Command(folder));
    const std::string text = folder.Read(one.file);
    EXPECT_TRUE(text == one.old || text == newText) << fault << "\n" << text;
    EXPECT_TRUE(!folder.Has(one.backup) || folder.Read(one.backup) == newBackup) << fault;
    EXPECT_TRUE(text != newText || folder.Has(one.backup)) << fault;
  }
};

INSTANTIATE_TEST_SUITE_P(Files, Faults, testing::Values(0, 1, 2));

// The system calls of a run from the first one on that names the folder, each as "name" and its number among
// those of that name.
std::vector<std::pair<std::string, int>> SystemCalls(const TestFolder& folder, const std::string& trace) {
  std::vector<std::pair<std::string, int>> calls;
  std::map<std::string, int> seen;
  std::ifstream lines(trace);
  bool ours = false;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t open = line.find('(');
    if (open == std::string::npos || line[0] == '+') continue;
    const std::string name = line.substr(0, open);
    const int number = ++seen[name];
    // The first mention is the start of the program itself.
    ours = ours || (name != "execve" && line.find(folder / "") != std::string::npos);
    if (ours && name != "exit_group") calls.emplace_back(name, number);
  }
  return calls;
}

TEST_P(Faults, EndedOrFailingAtEverySystemCall) {
  const TestFolder whole;
  Prepare(whole, one);
  if (Shell("strace -o /dev/null true") != 0) GTEST_SKIP() << "strace is not installed or not permitted";
  ASSERT_EQ(Shell("strace -o " + (whole / "trace") + " " + Command(whole)), 0);
  const std::string newText = whole.Read(one.file), newBackup = whole.Read(one.backup);
  ASSERT_NE(newText, one.old);
  const auto calls = SystemCalls(whole, whole / "trace");
  for (const auto& [name, number] : calls) {
    for (const std::string fault : {"signal=KILL", "error=EIO", "error=ENOSPC"}) {
      Look(newText, newBackup,
           "strace -o /dev/null -e trace=" + name + " -e inject=" + name + ":" + fault +
               ":when=" + std::to_string(number) + " ");
    }
  }
  std::cout << calls.size() << " system calls\n";
  EXPECT_GT(calls.size(), 15U);
}

// A file system of a few pages that only the superuser can make.
class SmallDisk {
 public:
  explicit SmallDisk(const TestFolder& folder) : path_(folder / "disk") {
    std::filesystem::create_directories(path_);
    mounted_ = mount("none", path_.c_str(), "tmpfs", 0, "size=512k") == 0;
  }
  ~SmallDisk() {
    if (mounted_) umount(path_.c_str());
  }
  bool IsMounted() const { return mounted_; }

 private:
  std::string path_;
  bool mounted_;
};

TEST_P(Faults, AFullDiskLeavesTheOldFile) {
  const TestFolder whole;
  Prepare(whole, one);
  ASSERT_EQ(Shell(Command(whole)), 0);
  const std::string newText = whole.Read(one.file), newBackup = whole.Read(one.backup);
  int full = 0;
  for (int pages = 0; pages < 60; pages += 2) {
    const TestFolder folder;
    const SmallDisk disk(folder);
    if (!disk.IsMounted()) GTEST_SKIP() << "only the superuser can make a small disk";
    Case there = one;
    for (std::string* name : {&there.argument, &there.file, &there.backup}) *name = "disk/" + *name;
    Prepare(folder, there);
    if (one.kind == "solution") {
      folder.Write("disk/All.sln", folder.Read("All.sln"));
      folder.Write("disk/P.csproj", folder.Read("P.csproj"));
    }
    // Fill the disk but for some pages.
    const auto space = std::filesystem::space(folder / "disk").available;
    const std::uintmax_t left = static_cast<std::uintmax_t>(pages) * 4096;
    const std::string filler(space > left ? space - left : 0, 'x');
    folder.Write("disk/filler", filler);
    full += Shell(kStamp + " " + there.kind + " " + (folder / there.argument)) != 0 ? 1 : 0;
    const std::string text = folder.Read(there.file);
    EXPECT_TRUE(text == one.old || text == newText) << pages;
    EXPECT_TRUE(!folder.Has(there.backup) || folder.Read(there.backup) == newBackup) << pages;
  }
  EXPECT_GT(full, 0);
}

}  // namespace
}  // namespace qx
