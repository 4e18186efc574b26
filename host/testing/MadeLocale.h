// A locale of the tests' own, made with the system's localedef, so that no test depends on which ones are
// installed. Outside Windows only.
#pragma once

#include <stdlib.h>
#include <time.h>

#include <filesystem>
#include <optional>
#include <string>

namespace qx {

// Sets an environment variable while it lives.
class Environment {
 public:
  Environment(const char* name, const char* value) : name_(name) {
    if (const char* old = getenv(name)) old_ = old;
    setenv(name, value, 1);
    tzset();
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  ~Environment() {
    old_ ? setenv(name_, old_->c_str(), 1) : unsetenv(name_);
    tzset();
  }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

// A folder with one locale, "made", found through LOCPATH while it lives.
class MadeLocale {
 public:
  MadeLocale(const std::string& definition, const std::string& charset)
      : folder_((std::filesystem::temp_directory_path() / "locale-XXXXXX").string()) {
    if (mkdtemp(folder_.data()) == nullptr) return;
    const std::string make = "localedef -i " + definition + " -f " + charset + " " + folder_ + "/made";
    const bool isRun = system((make + " >/dev/null 2>&1").c_str()) >= 0;
    if (!isRun || !std::filesystem::exists(folder_ + "/made/LC_TIME")) return;
    folderEntry_.emplace("LOCPATH", folder_.c_str());
    nameEntry_.emplace("LC_ALL", "made");
  }
  MadeLocale(const MadeLocale&) = delete;
  MadeLocale& operator=(const MadeLocale&) = delete;
  ~MadeLocale() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  bool IsMade() const { return nameEntry_.has_value(); }

 private:
  std::string folder_;
  std::optional<Environment> folderEntry_;
  std::optional<Environment> nameEntry_;
};

}  // namespace qx
