// The contract's small services, over the platform's files and paths, and its dialogs.
#include "plugin/Qxutils.h"

#include "host/system/UserInterface.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"
#include "plugin/Qxcontrols.h"

namespace qx {
namespace {

// The contract's dialogs are functions that take no host. It belongs to the program, which has one user.
constinit UserInterface* currentInterface = nullptr;

bool TakePicked(std::optional<std::string> picked, std::string& path) {
  if (picked) path = std::move(*picked);
  return picked.has_value();
}

}  // namespace

void SetUserInterface(UserInterface* userInterface) { currentInterface = userInterface; }

void LoadUnicodeFile(const std::string& path, TStringList& lines) {
  lines.Items() = TextFile::Load(path).lines;
}

std::string ExpandRelativePath(const std::string& baseFolder, const std::string& relativePath) {
  std::string expanded = ExpandPath(baseFolder, relativePath);
  std::string existing = FindExisting(expanded);
  return existing.empty() ? expanded : existing;
}

bool QXBrowseForFile(const std::string& title, const std::string& filter, std::string& path) {
  return currentInterface != nullptr &&
         TakePicked(currentInterface->PickFile({title, filter, {}, path}), path);
}

bool QXBrowseForDirectory(const std::string& title, std::string& path) {
  return currentInterface != nullptr && TakePicked(currentInterface->PickFolder(title, path), path);
}

bool TOpenDialog::Execute() {
  if (currentInterface == nullptr) return false;
  const FileQuestion question{title, filter, defaultExtension, fileName};
  if (!TakePicked(currentInterface->PickFile(question), fileName)) return false;
  if (!defaultExtension.empty() && ExtensionOf(fileName).empty())
    fileName += (defaultExtension.front() == '.' ? "" : ".") + defaultExtension;
  return true;
}

void QXShowMessage(const std::string& text) {
  if (currentInterface != nullptr) currentInterface->ShowMessage(text);
}

void QXShowError(const std::string& text) {
  if (currentInterface != nullptr) currentInterface->ShowError(text);
}

}  // namespace qx
