#include "weblocation/TemporaryName.h"

#include <algorithm>
#include <array>

#include "platform/Texts.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

bool IsControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }

// Names that Windows gives to devices in every folder, whatever extension follows.
bool IsDeviceName(std::string_view name) {
  static constexpr std::array<std::string_view, 7> plain{"con",    "prn",     "aux",   "nul",
                                                         "conin$", "conout$", "clock$"};
  static constexpr std::array<std::string_view, 2> numbered{"com", "lpt"};
  static constexpr std::array<std::string_view, 3> superscripts{"\xC2\xB9", "\xC2\xB2", "\xC2\xB3"};
  const std::string stem = LowerCase(TrimView(name.substr(0, name.find('.'))));
  if (std::find(plain.begin(), plain.end(), stem) != plain.end()) return true;
  return std::any_of(numbered.begin(), numbered.end(), [&](std::string_view device) {
    if (!stem.starts_with(device)) return false;
    const std::string_view number = std::string_view(stem).substr(device.size());
    return (number.size() == 1 && number[0] >= '0' && number[0] <= '9') ||
           std::find(superscripts.begin(), superscripts.end(), number) != superscripts.end();
  });
}

// The text with its control characters made visible, so that it stays on one line of a message.
std::string Shown(std::string_view text) {
  std::string shown;
  for (const char c : text) {
    if (IsControl(c)) {
      shown += "\\x" + UpperHex(static_cast<unsigned char>(c), 2);
    } else {
      shown += c;
    }
  }
  return shown;
}

const char* WhyNotATemporaryName(std::string_view name) {
  if (name.empty()) return "it is empty";
  if (name == "." || name == "..") return "it is a folder";
  if (std::any_of(name.begin(), name.end(), IsDelimiter)) return "it holds a path delimiter";
  if (name.find(':') != std::string_view::npos) return "it holds a colon";
  if (std::any_of(name.begin(), name.end(), IsControl)) return "it holds a control character";
  if (name.back() == '.' || name.back() == ' ') return "it ends in a point or blank";
  if (IsDeviceName(name)) return "it is the name of a device";
  return nullptr;
}

}  // namespace

void RequireTemporaryName(std::string_view name) {
  if (const char* reason = WhyNotATemporaryName(name)) {
    throw Exception("Refused to use \"" + Shown(name) + "\" as the name of a temporary file: " + reason);
  }
}

void RequireRemoteFolder(std::string_view folder) {
  const char* reason = nullptr;
  if (std::any_of(folder.begin(), folder.end(), IsControl)) reason = "it holds a control character";
  if (folder.find(':') != std::string_view::npos) reason = "it holds a colon";
  for (std::string_view rest = folder; !rest.empty();) {
    const auto end = std::find_if(rest.begin(), rest.end(), IsDelimiter);
    const auto size = static_cast<std::size_t>(end - rest.begin());
    if (rest.substr(0, size) == "..") reason = "it leads out of the project's folder";
    rest.remove_prefix(std::min(size + 1, rest.size()));
  }
  if (reason != nullptr)
    throw Exception("Refused to use the remote folder \"" + Shown(folder) + "\": " + reason);
}

}  // namespace qx
