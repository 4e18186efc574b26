// A folder of the test's own, and the real qxhost run in it with the tiny package.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/files/Files.h"
#include "tests/support/RunProgram.h"

namespace qx::cli {

inline std::string ProgramFile(const std::string& name) {
  return std::string(QX_BINARY_DIR) + "/" + name + QX_PROGRAM_ENDING;
}
inline std::string PackageFile(const std::string& name) {
  return std::string(QX_BINARY_DIR) + "/testpackages/" + name + QX_LIBRARY_ENDING;
}

class CliTest : public testing::Test {
 protected:
  using Words = std::vector<std::string>;

  void SetUp() override {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::temp_directory_path() /
              (std::string("qx-cli-") + test.test_suite_name() + "-" + test.name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::string PathOf(const std::string& name) const { return (folder_ / name).string(); }
  std::string Content(const std::string& name) const { return ReadFile(PathOf(name)); }
  void Write(const std::string& name, const std::string& bytes) const { ReplaceFile(PathOf(name), bytes); }
  bool Exists(const std::string& name) const { return std::filesystem::exists(folder_ / name); }

  // qxhost with these words, an options store of its own and no package but the one that is named.
  test::ProgramResult Host(Words words) const { return HostWith("tiny", std::move(words)); }
  test::ProgramResult HostWith(const std::string& package, Words words) const {
    words.insert(words.begin(), {"--package", PackageFile(package), "--options", PathOf("options.xml")});
    return test::RunProgram(ProgramFile("qxhost"), words, folder_.string());
  }

  // A project of tiny tasks, one for each list of assignments.
  void Project(const std::string& name, const std::vector<Words>& actions) const {
    ASSERT_EQ(Host({"new", name}).code, 0);
    for (const Words& assignments : actions) {
      Words words{"add", name, "Tiny Task"};
      words.insert(words.end(), assignments.begin(), assignments.end());
      const test::ProgramResult result = Host(words);
      ASSERT_EQ(result.code, 0) << result.err;
    }
  }

  std::filesystem::path folder_;
};

inline bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace qx::cli
