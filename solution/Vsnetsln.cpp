#include "solution/Vsnetsln.h"

#include <algorithm>
#include <vector>

#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"
#include "solution/SolutionFile.h"

namespace qx {

class TVSDotNetObject {
 protected:
  virtual ~TVSDotNetObject() = default;
};

namespace {

template <class Interface>
class ModelObject : public TVSDotNetObject, public Implements<Interface> {
 public:
  TVSDotNetObject* GetImplementation() override { return this; }
};

// The item at an index, or an empty value when it is out of range.
template <class Item>
Item ItemOrNothing(const std::vector<Item>& items, int index) {
  const bool inside = index >= 0 && static_cast<std::size_t>(index) < items.size();
  return inside ? items[static_cast<std::size_t>(index)] : Item();
}

class TVSDotNetProjectDependancies final : public ModelObject<IVSDotNetProjectDependancies> {
 public:
  std::string GetItem(int index) override { return ItemOrNothing(list_.Items(), index); }
  int GetCount() override { return list_.Count(); }
  TStringList& GetList() override { return list_; }

 private:
  TStringList list_;
};

class TVSDotNetProject final : public ModelObject<IVSDotNetProject> {
 public:
  explicit TVSDotNetProject(SolutionProject values)
      : values_(std::move(values)), dependencies_(MakeInterface<TVSDotNetProjectDependancies>()) {
    dependencies_->GetList() = std::move(values_.dependencies);
  }
  std::string GetName() override { return values_.name; }
  std::string GetPath() override { return values_.path; }
  std::string GetGUID() override { return values_.guid; }
  std::string GetTypeGUID() override { return values_.typeGuid; }
  InterfacePtr<IVSDotNetProjectDependancies> GetDependencies() override { return dependencies_; }
  bool IsVCProject() override { return HasExtension(values_.path, ".vcproj"); }
  const TStringList& GetRCFiles() override { return values_.resourceScripts; }
  std::string GetVersionInfoFile() override { return values_.versionInfoFile; }

  const SolutionProject& Values() const { return values_; }

 private:
  SolutionProject values_;
  InterfacePtr<TVSDotNetProjectDependancies> dependencies_;
};

class TVSDotNetProjects final : public ModelObject<IVSDotNetProjects> {
 public:
  explicit TVSDotNetProjects(std::vector<SolutionProject> projects) {
    items_.reserve(projects.size());
    for (SolutionProject& project : projects)
      items_.push_back(MakeInterface<TVSDotNetProject>(std::move(project)));
  }
  InterfacePtr<IVSDotNetProject> GetItem(int index) override { return ItemOrNothing(items_, index); }
  int GetCount() override { return static_cast<int>(items_.size()); }
  InterfacePtr<IVSDotNetProject> FindByGUID(const std::string& text) override {
    return FindBy(&SolutionProject::guid, text);
  }
  InterfacePtr<IVSDotNetProject> FindByPath(const std::string& text) override {
    return FindBy(&SolutionProject::path, text);
  }

 private:
  InterfacePtr<IVSDotNetProject> FindBy(std::string SolutionProject::*field, const std::string& text) const {
    const auto found = std::find_if(items_.begin(), items_.end(),
                                    [&](const auto& item) { return item->Values().*field == text; });
    return found == items_.end() ? InterfacePtr<IVSDotNetProject>() : *found;
  }

  std::vector<InterfacePtr<TVSDotNetProject>> items_;
};

class TVSDotNetSolutionConfiguration final : public ModelObject<IVSDotNetSolutionConfiguration> {
 public:
  explicit TVSDotNetSolutionConfiguration(std::string name) : name_(std::move(name)) {}
  std::string GetName() override { return name_; }

 private:
  std::string name_;
};

class TVSDotNetSolutionConfigurations final : public ModelObject<IVSDotNetSolutionConfigurations> {
 public:
  explicit TVSDotNetSolutionConfigurations(std::vector<std::string> names) {
    for (std::string& name : names) {
      items_.emplace_back(MakeInterface<TVSDotNetSolutionConfiguration>(std::move(name)));
    }
  }
  InterfacePtr<IVSDotNetSolutionConfiguration> GetItem(int index) override {
    return ItemOrNothing(items_, index);
  }
  int GetCount() override { return static_cast<int>(items_.size()); }

 private:
  std::vector<InterfacePtr<IVSDotNetSolutionConfiguration>> items_;
};

class TVSDotNetSolution final : public ModelObject<IVSDotNetSolution> {
 public:
  TVSDotNetSolution(std::string fileName, SolutionModel model)
      : projects_(MakeInterface<TVSDotNetProjects>(std::move(model.projects))),
        fileName_(std::move(fileName)) {
    if (!model.configurations) return;
    configurations_ = MakeInterface<TVSDotNetSolutionConfigurations>(std::move(*model.configurations));
  }
  InterfacePtr<IVSDotNetSolutionConfigurations> GetConfigurations() override { return configurations_; }
  InterfacePtr<IVSDotNetProjects> GetProjects() override { return projects_; }
  std::string GetReservedText1() override { return {}; }
  std::string GetReservedText2() override { return {}; }
  std::string GetFileName() override { return fileName_; }

 private:
  InterfacePtr<IVSDotNetSolutionConfigurations> configurations_;
  InterfacePtr<IVSDotNetProjects> projects_;
  std::string fileName_;
};

// The file system as it is, looked up the way the host's ExpandRelativePath looks names up, with what was
// listed kept for the time of one opening.
class FilesOnDisk final : public SolutionFiles {
 public:
  bool FindFile(std::string& path) override { return finder_.FindFile(path); }
  bool Read(const std::string& path, std::string& bytes, std::string& reason) override {
    return TryReadFile(path, bytes, &reason);
  }
  bool ReadParts(const std::string& path, const std::function<bool(std::string_view)>& take) override {
    return TryReadParts(path, buffer_, take);
  }

 private:
  PathFinder finder_;
  std::string buffer_;
};

}  // namespace

InterfacePtr<IVSDotNetSolution> OpenSolution(const std::string& fileName) {
  // By the rules of the host's LoadUnicodeFile, without a copy of every line: there may be hundreds of thousands.
  const std::string bytes = ReadFile(fileName);
  std::string scratch;
  FilesOnDisk files;
  return MakeInterface<TVSDotNetSolution>(fileName,
                                          ReadSolution(fileName, DecodeText(bytes, scratch), files));
}

}  // namespace qx
