// The .NET framework table: what the host's settings say, else what is installed.
#include "host/settings/DotNetInfo.h"

#include "host/settings/HostSettings.h"
#include "platform/Texts.h"
#include "plugin/Qxdotnetinfo.h"

namespace qx {
namespace {

class Framework final : public Implements<IQXDotNetFramework> {
 public:
  explicit Framework(std::string folder) : folder_(std::move(folder)) {}
  std::string GetInstallFolder() override { return folder_; }

 private:
  std::string folder_;
};

class DotNetInfo final : public Implements<IQXDotNetInfo> {
 public:
  InterfacePtr<IQXDotNetFramework> FindVersion(const std::string& version) override {
    const std::string key = LowerCase(version);
    if (!IsFrameworkVersion(key)) return nullptr;
    const auto& set = CurrentHostSettings().frameworks;
    const auto found = set.find(key);
    std::string folder = found != set.end() ? found->second : InstalledFrameworkFolder(key);
    if (folder.empty()) return nullptr;
    return MakeInterface<Framework>(std::move(folder));
  }
};

}  // namespace

InterfacePtr<IQXDotNetInfo> QXDotNetInfo() { return MakeInterface<DotNetInfo>(); }

}  // namespace qx
