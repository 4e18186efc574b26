#include "engine/dotnet/CopyLocal.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "projects/net/NetResources.h"

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kLargest = 64 * 1024 * 1024;  // of assemblies that are looked into

std::string Stem(const std::string& file) {
  const std::string name = FilePart(file);
  return name.substr(0, name.size() - ExtensionOf(name).size());
}

class Collector {
 public:
  Collector(const CompilePlan& plan, const AssemblyFolders& folders)
      : target_(plan.OutputFolder()), folders_(folders) {}

  void Add(const std::string& assembly) {
    if (!seen_.insert(assembly).second) return;
    Copy(assembly, FilePart(assembly));
    const std::string folder = FolderPart(assembly);
    const std::string stem = Stem(assembly);
    for (const std::string& beside : {stem + ".pdb", FilePart(assembly) + ".mdb", stem + ".xml"}) {
      if (FileExists(folder + beside)) Copy(folder + beside, beside);
    }
    std::string bytes;
    std::error_code error;
    const bool isSmall = fs::file_size(assembly, error) <= kLargest && !error;
    if (isSmall) TryReadFile(assembly, bytes);
    std::vector<std::string> needed;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
      const std::string name = at->path().filename().string();
      if (HasExtension(name, ".dll") && NamesAssembly(bytes, Stem(name)) &&
          FindFrameworkAssembly(folders_, Stem(name)).empty()) {
        needed.push_back(folder + name);
      }
      // A culture's folder: "de/NAME.resources.dll".
      const std::string satellite = name + "/" + stem + ".resources.dll";
      if (!CultureOfName("x." + name + ".x").empty() && FileExists(folder + satellite)) {
        Copy(folder + satellite, satellite);
      }
    }
    std::ranges::sort(needed);
    for (const std::string& other : needed) Add(other);
  }

  std::vector<FileCopy> copies;

 private:
  void Copy(const std::string& from, const std::string& name) {
    if (target_ + name != from) copies.push_back({from, target_ + name});
  }

  std::string target_;
  const AssemblyFolders& folders_;
  std::set<std::string> seen_;
};

}  // namespace

bool NamesAssembly(std::string_view bytes, std::string_view name) {
  std::string text(1, '\0');
  (text += name) += '\0';
  return bytes.find(text) != std::string_view::npos;
}

std::vector<FileCopy> CopiesBeside(const CompilePlan& plan, const AssemblyFolders& folders) {
  Collector collector(plan, folders);
  for (const PlannedReference& reference : plan.references) {
    if (reference.copyLocal) collector.Add(reference.file);
  }
  if (!plan.applicationConfig.empty()) {
    collector.copies.push_back({plan.applicationConfig, plan.output + ".config"});
  }
  return std::move(collector.copies);
}

}  // namespace qx
