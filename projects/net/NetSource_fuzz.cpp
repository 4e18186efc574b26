// Sources of any bytes, in both languages.
#include "projects/net/NetSource.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  for (const qx::NetLanguage language : {qx::NetLanguage::CSharp, qx::NetLanguage::VisualBasic}) {
    qx::FirstClass(language, source);
    qx::KeyFileAttribute(language, source, "DEBUG;TRACE");
  }
  return 0;
}
