// A folder of one test's own: empty at its beginning, gone at its end.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace qx {

class TestFolder {
 public:
  TestFolder() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::temp_directory_path() /
              ("qx-" + std::string(test != nullptr ? test->name() : "run") + "-" + std::to_string(now));
    std::filesystem::create_directories(folder_);
  }
  ~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  // Without a trailing delimiter.
  std::string Path() const { return folder_.string(); }
  std::string Path(std::string_view name) const { return (folder_ / name).string(); }
  // Writes a file, and the folders above it; returns its path.
  std::string Write(std::string_view name, std::string_view bytes) const {
    const std::filesystem::path file = folder_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
    return file.string();
  }
  std::string Read(std::string_view name) const {
    std::ifstream file(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace qx
