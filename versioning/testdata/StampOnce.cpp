// stamp_once rc FILE | solution FILE: one run of a rewriter with fixed values, in a process of its own. For
// the fault injection, which ends that process at every system call, and for measuring whole runs.
#include <cstdio>
#include <cstring>

#include "host/actions/ActionHost.h"
#include "solution/Vsnetsln.h"
#include "versioning/Qxassemblyinfo.h"
#include "versioning/Qxvc7versioninfo.h"

namespace qx {
namespace {

class Info final : public AnswersUncounted<IQXVC7VersionInfo> {
 public:
  virtual ~Info() = default;
  std::int32_t GetBuildVer() override { return 4; }
  std::int32_t GetCodePage() override { return 1200; }
  bool GetIsDebug() override { return true; }
  bool GetIsDLL() override { return true; }
  bool GetIsPreRelease() override { return true; }
  bool GetIsPrivate() override { return true; }
  bool GetIsSpecial() override { return true; }
  std::int32_t GetLocale() override { return 0x409; }
  std::int32_t GetMajorVer() override { return 7; }
  std::int32_t GetMinorVer() override { return 6; }
  std::int32_t GetReleaseVer() override { return 5; }
  std::string GetVersionInfoKeys() override {
    return "CompanyName=ACME\r\nFileVersion=\r\nLegalCopyright=(C) $1 & \\\\ 100%\r\nProductVersion=7.6\r\n";
  }
  void SetBuildVer(std::int32_t) override {}
  void SetCodePage(std::int32_t) override {}
  void SetIsDebug(bool) override {}
  void SetIsDLL(bool) override {}
  void SetIsPreRelease(bool) override {}
  void SetIsPrivate(bool) override {}
  void SetIsSpecial(bool) override {}
  void SetLocale(std::int32_t) override {}
  void SetMajorVer(std::int32_t) override {}
  void SetMinorVer(std::int32_t) override {}
  void SetReleaseVer(std::int32_t) override {}
  void SetVersionInfoKeys(const std::string&) override {}
  bool GetIncludeCompileDate() override { return false; }
  void SetIncludeCompileDate(bool) override {}
};

class Source final : public AnswersUncounted<IAssemblyInfoSource> {
 public:
  virtual ~Source() = default;
  bool IsAttributeUpdated(AssemblyAttribute attribute) override {
    return attribute == AssemblyAttribute::Version || attribute == AssemblyAttribute::FileVersion ||
           attribute == AssemblyAttribute::Company;
  }
  std::string GetAttributeText(AssemblyAttribute attribute) override {
    return attribute == AssemblyAttribute::Company ? "New Works" : "7|6|5|4";
  }
  bool IsFileVersionLinked() override { return false; }
  ProjectLocationSettings GetProjectLocation() override { return {}; }
  std::string ExpandText(const std::string& text) override { return text; }
  InterfacePtr<IQXApplicationServices> GetServices() override { return nullptr; }
};

class Silence final : public Implements<IQXActionLogMessage> {
 public:
  void AppendDetail(std::string_view) override {}
  void SetHeading(std::string_view) override {}
};

int Run(const char* kind, const char* file) {
  const bool isScript = std::strcmp(kind, "rc") == 0;
  if (!isScript && std::strcmp(kind, "solution") != 0) return 2;
  try {
    const Variables variables;
    Info info;
    Source source;
    if (isScript) GetVersionInfoParser(MakeApplicationServices(variables), file)->UpdateVersionInfo(info);
    if (!isScript) {
      GetAssemblyInfoUpdater(OpenSolution(file), source, MakeInterface<Silence>())->UpdateAll();
    }
    return 0;
  } catch (const Exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}

}  // namespace
}  // namespace qx

int main(int argc, char** argv) { return argc == 3 ? qx::Run(argv[1], argv[2]) : 2; }
