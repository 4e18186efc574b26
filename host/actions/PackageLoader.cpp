#include "host/actions/PackageLoader.h"

#include <array>

#include "host/system/HostProgram.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

constexpr std::array<std::string_view, 6> kStateNames{"named",    "found",   "opened",
                                                      "resolved", "started", "registered"};

constexpr std::string_view kPackageIsToBlame = " (the package's fault)";

// Runs an entry of the package's; what leaves it becomes an error that blames it.
template <class Entry>
std::string Call(const char* name, Entry entry) {
  try {
    entry();
    return "";
  } catch (const std::exception& fault) {
    return std::string(name) + " failed: " + fault.what() + std::string(kPackageIsToBlame);
  } catch (...) {
    return std::string(name) + " raised an exception of an unknown type" + std::string(kPackageIsToBlame);
  }
}

}  // namespace

std::string_view PackageStateName(PackageState state) {
  return kStateNames.at(static_cast<std::size_t>(state));
}

LoadedPackage::LoadedPackage(std::string file, Registration registration, const Catalogue& catalogue)
    : file_(std::move(file)), firstCall_(catalogue.Calls().size()) {
  Climb(registration);
  endOfCalls_ = catalogue.Calls().size();
  if (!error_.empty()) error_ = file_ + ": " + error_;
}

// What the package registers reaches the catalogue through the contract's services.
void LoadedPackage::Climb(Registration registration) {
  if (!FileExists(file_)) {
    error_ = FolderExists(file_) ? "it is a folder; name the package's library" : "there is no such file";
    return;
  }
  state_ = PackageState::Found;
  try {
    library_ = std::make_unique<SharedLibrary>(file_);
  } catch (const Exception& fault) {
    error_ = "it cannot be loaded as a library: " + fault.Message();
    return;
  }
  state_ = PackageState::Opened;

  load_ = library_->Find<QXPackageLoadEntry>(kPackageLoadName);
  unload_ = library_->Find<QXPackageUnloadEntry>(kPackageUnloadName);
  units_ = library_->Find<QXPackageUnitsEntry>(kPackageUnitsName);
  register_ = library_->Find<QXRegisterEntry>(kRegisterName);
  const auto missing = [&](bool found, const char* name) {
    if (!found && error_.empty())
      error_ = std::string("it does not export ") + name + ", so it is no package";
  };
  missing(load_ != nullptr, kPackageLoadName);
  missing(unload_ != nullptr, kPackageUnloadName);
  missing(units_ != nullptr, kPackageUnitsName);
  missing(register_ != nullptr, kRegisterName);
  if (!error_.empty()) return;
  state_ = PackageState::Resolved;

  error_ = Call(kPackageLoadName, load_);
  if (!error_.empty()) return;
  state_ = PackageState::Started;

  error_ = Call(kRegisterName, [&] { register_(registration == Registration::Design); });
  if (error_.empty()) state_ = PackageState::Registered;
}

LoadedPackage::~LoadedPackage() {
  if (state_ >= PackageState::Started) Call(kPackageUnloadName, unload_);
}

std::vector<TQXUnit> LoadedPackage::Units() const {
  if (state_ < PackageState::Resolved) return {};
  const TQXUnitTable table = units_();
  return std::vector<TQXUnit>(table.units, table.units + table.count);
}

PackageLoader::~PackageLoader() {
  catalogue_.Forget();
  while (!packages_.empty()) packages_.pop_back();
}

const LoadedPackage& PackageLoader::Load(const std::string& file, Registration registration) {
  const std::string full = ExpandPath("", file);
  for (const std::unique_ptr<LoadedPackage>& package : packages_) {
    if (package->File() == full) return *package;
  }
  packages_.push_back(std::make_unique<LoadedPackage>(full, registration, catalogue_));
  return *packages_.back();
}

std::string PackageLoader::FindInstalled(std::string_view name) {
  const std::string program = ProgramFolder();
  const std::string file = std::string(name) + std::string(SharedLibrary::Ending());
  for (const std::string& folder : {program, ExpandPath(program, QXHOST_LIBRARIES)}) {
    const std::string path = WithTrailingDelimiter(folder) + file;
    if (FileExists(path)) return path;
  }
  return "";
}

}  // namespace qx
