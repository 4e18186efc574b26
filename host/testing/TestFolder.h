// A folder of a test's own below the system's temporary folder, gone with the test. For tests of every room.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

namespace qx {

class TestFolder {
 public:
  TestFolder() {
    static std::atomic<int> counter{0};
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = test == nullptr ? "none" : std::string(test->test_suite_name()) + "." + test->name();
    std::replace(name.begin(), name.end(), '/', '_');  // which names of parameterised tests hold
    do {
      path_ = std::filesystem::temp_directory_path() / ("qx-" + name + "-" + std::to_string(++counter));
    } while (!std::filesystem::create_directory(path_));
  }
  ~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  // With the system's delimiter behind it.
  std::string Path() const { return Text(path_ / ""); }
  // The path of a name in it; delimiters as given.
  std::string operator/(std::string_view name) const { return Path() + std::string(name); }

  // Writes a file, making its folders; the path.
  std::string Write(const std::string& name, std::string_view bytes) const {
    const std::filesystem::path file = path_ / Utf8(name);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
    return Text(file);
  }
  std::string Read(const std::string& name) const {
    std::ifstream in(path_ / Utf8(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  bool Has(const std::string& name) const { return std::filesystem::exists(path_ / Utf8(name)); }
  // Every name that stands directly in it, sorted, joined by blanks.
  std::string Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      names.insert(Text(entry.path().filename()));
    }
    std::string joined;
    for (const std::string& name : names) joined += (joined.empty() ? "" : " ") + name;
    return joined;
  }
  // How many files and folders stand directly in it.
  int Count() const {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(path_), {}));
  }

 private:
  static std::filesystem::path Utf8(const std::string& name) {
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
  }
  static std::string Text(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
  }

  std::filesystem::path path_;
};

// The message of the Exception that a call raises; the test fails when it raises none.
template <class Call>
std::string MessageOf(Call&& call) {
  try {
    call();
  } catch (const std::exception& error) {
    return error.what();
  }
  ADD_FAILURE() << "no exception was raised";
  return {};
}

}  // namespace qx
