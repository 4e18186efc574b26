// Texts between the host and the toolkit. The host's are bytes, UTF-8 where nothing else is said; bytes that
// are no UTF-8 keep a place of their own in the toolkit's texts, so that every text comes back as it went.
#pragma once

#include <wx/strconv.h>
#include <wx/string.h>

#include <string>
#include <string_view>

namespace qx::desktop {

inline const wxMBConvUTF8& TextConversion() {
  static const wxMBConvUTF8 conversion(wxMBConvUTF8::MAP_INVALID_UTF8_TO_PUA);
  return conversion;
}

inline wxString ToWx(std::string_view text) { return {text.data(), TextConversion(), text.size()}; }

inline std::string FromWx(const wxString& text) {
  const wxCharBuffer bytes = text.mb_str(TextConversion());
  return {bytes.data(), bytes.length()};
}

}  // namespace qx::desktop
