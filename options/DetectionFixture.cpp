#include "options/DetectionFixture.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "platform/System.h"
#include "platform/files/Paths.h"
#include "platform/registry/Registry.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

bool Command(const std::string& line) { return std::system((line + " >nul 2>nul").c_str()) == 0; }

const std::string kKey = "HKLM\\SOFTWARE\\Microsoft\\VisualStudio";

void RemoveAll() { Command("reg delete " + kKey + " /f /reg:32"); }

std::string Doubled(const std::string& text) {
  std::string out;
  for (const char c : text) out += c == '\\' ? "\\\\" : std::string(1, c);
  return out;
}

}  // namespace

DetectionFixture::DetectionFixture() {
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  const std::string shared = (folder / "vsdotnet-registry-tests").string();
  while (!lock_) {
    try {
      lock_ = std::make_unique<FileLock>(shared);
    } catch (const Exception&) {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  }
  exportFile_ = shared + ".reg";
}

// A machine in use keeps its registry: only a Wine prefix is written to.
void DetectionFixture::SetUp() {
  if (kIsWindows && !Command("reg query HKCU\\Software\\Wine"))
    GTEST_SKIP() << "this would change the registry of a machine in use";
}

DetectionFixture::~DetectionFixture() {
  SetRegistryFile("");
  RemoveFile(exportFile_);
  if (kIsWindows && !IsSkipped()) RemoveAll();
}

void DetectionFixture::Install(const std::vector<std::pair<std::string, std::string>>& products) {
  if (kIsWindows) {
    RemoveAll();
    for (const auto& [version, folder] : products) {
      // A backslash before the closing quote is doubled, as every program's command line wants it.
      ASSERT_TRUE(
          Command("reg add " + kKey + "\\" + version + " /v InstallDir /d \"" + folder + "\\\" /f /reg:32"));
    }
    return;
  }
  std::string text = "REGEDIT4\r\n";
  for (const auto& [version, folder] : products) {
    text += "\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Microsoft\\VisualStudio\\" + version + "]\r\n" +
            "\"InstallDir\"=\"" + Doubled(folder) + "\"\r\n";
  }
  ReplaceFile(exportFile_, text);
  SetRegistryFile(exportFile_);
}

}  // namespace qx
