#include <iconv.h>

#include <cerrno>
#include <utility>

#include "platform/XmlEncoding.h"
#include "plugin/Qxtypes.h"

namespace qx::system {
namespace {

class Converter {
 public:
  explicit Converter(const char* name) : handle_(iconv_open("UTF-8", name)) {}
  ~Converter() {
    if (IsOpen()) iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  // The C library's sign for "unknown" is this pointer.
  bool IsOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

  // Converts what it can and passes over what it has converted; an error number, or 0 at the end.
  int Convert(std::string_view& bytes, std::string& out) {
    char buffer[4096];
    char* to = buffer;
    std::size_t room = sizeof buffer;
    char* from = const_cast<char*>(bytes.data());  // the interface is older than const; it only reads
    std::size_t left = bytes.size();
    const int error = iconv(handle_, &from, &left, &to, &room) == static_cast<std::size_t>(-1) ? errno : 0;
    bytes.remove_prefix(bytes.size() - left);
    out.append(buffer, sizeof buffer - room);
    return error;
  }

 private:
  iconv_t handle_;
};

}  // namespace

std::string DecodeLegacy(const LegacyEncoding& encoding, std::string_view bytes) {
  Converter converter(encoding.library_name);
  if (!converter.IsOpen())
    throw Exception("The encoding " + std::string(encoding.name) + " is not supported");
  std::string out;
  while (!bytes.empty()) {
    const int error = converter.Convert(bytes, out);
    if (error == 0 || error == E2BIG) continue;
    out += "\xEF\xBF\xBD";
    bytes.remove_prefix(1);
  }
  return out;
}

}  // namespace qx::system
