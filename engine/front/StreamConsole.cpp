#include "engine/front/StreamConsole.h"

#include "platform/Posix.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {

StreamConsole::StreamConsole(const std::string& logFile) : log_(nullptr, std::fclose) {
  if (logFile.empty()) return;
  const std::string path = ExpandPath("", logFile);
  log_.reset(std::fopen(path.c_str(), "wb"));
  if (!log_) throw Exception("Cannot write " + path + ": " + system::LastError());
}

void StreamConsole::Write(std::string_view line) {
  for (std::FILE* stream : {stdout, log_.get()}) {
    if (stream == nullptr) continue;
    std::fwrite(line.data(), 1, line.size(), stream);
    std::fputc('\n', stream);
    std::fflush(stream);  // whoever reads along sees each line when it comes
  }
}

}  // namespace qx
