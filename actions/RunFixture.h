// What the tests of a run share: a folder with a small solution, an action attached to a log in memory, and
// recording stand-ins for both compilers.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "actions/Qxvsdotnetaction.h"
#include "host/settings/HostSettings.h"
#include "host/testing/TestHost.h"
#include "platform/files/Paths.h"

namespace qx {

using Lines = std::vector<std::string>;

constexpr const char* kLibId = "{11111111-0000-0000-0000-000000000001}";
constexpr const char* kAppId = "{11111111-0000-0000-0000-000000000002}";
constexpr const char* kToolId = "{11111111-0000-0000-0000-000000000003}";
constexpr const char* kGoneId = "{99999999-0000-0000-0000-000000000009}";

class RunFixture : public testing::Test {
 protected:
  RunFixture();
  ~RunFixture() override;

  // Files below the test's own folder; names with "/".
  std::string Path(const std::string& name) const;
  void Write(const std::string& name, const std::string& text) const;
  std::string Read(const std::string& name) const;
  bool Exists(const std::string& name) const { return std::filesystem::exists(root_ / name); }

  // What the stand-in compilers do; what was asked of them, one block a call: "in FOLDER | argument | ...".
  void Script(const std::string& text) const { Write("vs/script", text); }
  Lines Calls() const;

  void Use(TVSDotNetVersion version) { action->Settings().vstudioVersion = version; }
  void UseMSBuild();
  void Select(const Lines& ids);
  // Compares the whole log of the run with the lines; the result with `succeeds`.
  void ExpectRun(bool succeeds, const Lines& log);
  // The two lines before each compiler run.
  Lines Running(const std::string& compiler, const std::string& parameters) const;

  std::string devenv() const { return Path("vs/") + "devenv.com"; }
  std::string msbuild() const { return Path("vs/") + "MSBuild.exe"; }
  std::string solution() const { return Path("src/App.sln"); }

  std::filesystem::path root_;
  std::optional<HostSettingsInUse> settings_;
  TestHost host;
  std::unique_ptr<TQXVSDotNetAction> action;
};

inline Lines operator+(Lines a, const Lines& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

}  // namespace qx
