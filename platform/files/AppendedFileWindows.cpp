#include "platform/files/AppendedFile.h"

#include <windows.h>

#include "platform/WindowsText.h"
#include "plugin/Qxtypes.h"

namespace qx {

struct AppendedFile::State {
  std::string path;
  system::Handle file;
  [[noreturn]] void Fail() const { throw Exception("Cannot write " + path + ": " + system::LastError()); }
};

AppendedFile::AppendedFile(const std::string& path)
    : state_(new State{path, system::Handle(CreateFileW(system::WidePath(path).c_str(), GENERIC_WRITE,
                                                        FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                                        CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr))}) {
  if (!state_->file.IsOpen()) state_->Fail();
}

AppendedFile::~AppendedFile() = default;

void AppendedFile::Append(std::string_view bytes) {
  if (!system::WriteAll(state_->file, bytes)) state_->Fail();
}

void AppendedFile::Flush() {
  if (!FlushFileBuffers(state_->file.Get())) state_->Fail();
}

}  // namespace qx
