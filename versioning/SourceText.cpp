#include "versioning/SourceText.h"

#include <algorithm>

#include "platform/CodePages.h"
#include "platform/LineEnds.h"
#include "platform/Lines.h"
#include "platform/Texts.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool IsUtf16(TextEncoding encoding) {
  return encoding == TextEncoding::Utf16LittleEnd || encoding == TextEncoding::Utf16BigEnd;
}

// UTF-16 whose mark is missing, told by its first two characters when these are ASCII. It is refused
// (docs/deliberate.md): cut at line ends as bytes it would be ruined, and its backup with it.
bool LooksLikeUtf16(std::string_view bytes) {
  if (bytes.size() < 4) return false;
  const bool littleEnd = bytes[0] != 0 && bytes[1] == 0 && bytes[2] != 0 && bytes[3] == 0;
  const bool bigEnd = bytes[0] == 0 && bytes[1] != 0 && bytes[2] == 0 && bytes[3] != 0;
  return littleEnd || bigEnd;
}

}  // namespace

SourceText::SourceText(std::string_view bytes, std::string fileName, PlainAscii plainAscii)
    : bytes_(bytes), fileName_(std::move(fileName)), plainAscii_(plainAscii) {
  // The mark alone tells the encoding.
  encoding_ = TextFile::FromBytes(bytes.substr(0, 3)).encoding;
  if (IsUtf16(encoding_) && bytes.size() % 2 != 0) {
    throw Exception("Cannot write " + fileName_ + ": it is UTF-16 and ends in half a character");
  }
  if (LooksLikeUtf16(bytes)) {
    throw Exception("Cannot write " + fileName_ + ": it is UTF-16 without a mark (save the file with one)");
  }
  text_ = DecodeText(bytes, decoded_);
}

std::string_view SourceText::NormalText() {
  if (CurrentLineEnds() == LineEnds::Keep || HasOnlyCrLf(text_)) return text_;
  if (normal_.empty()) normal_ = WithCrLf(text_);
  return normal_;
}

std::string SourceText::Fit(const std::string& text, std::string_view subject,
                            const std::function<std::optional<std::uint32_t>()>& namedPage) const {
  if (IsAscii(text)) return text;
  if (auto fitting = TryFit(text, namedPage)) return *std::move(fitting);
  throw Exception("Cannot write " + fileName_ + ": its encoding cannot hold the text of " +
                  std::string(subject) + " (save the file as UTF-8 with a mark, or keep to its characters)");
}

std::optional<std::string> SourceText::TryFit(
    const std::string& text, const std::function<std::optional<std::uint32_t>()>& namedPage) const {
  const bool isUtf8 = IsValidUtf8(text);
  if (encoding_ != TextEncoding::Bytes) return isUtf8 ? std::optional(text) : std::nullopt;

  std::optional<std::uint32_t> page = namedPage ? namedPage() : std::nullopt;
  const bool plain = IsAscii(text_);
  if (!page && !plain && IsValidUtf8(text_)) page = kUtf8CodePage;
  // Bytes that are not UTF-8 were read from a file in some code page: they go in as they stand.
  if (!isUtf8) return page == kUtf8CodePage ? std::nullopt : std::optional(text);

  if (!page && plain && plainAscii_ == PlainAscii::IsUtf8) page = kUtf8CodePage;
  if (!page) page = SystemCodePage();
  if (!page && plain) page = kUtf8CodePage;
  if (page) return EncodeInCodePage(text, *page);
  // An unknown code page; what the file says already may be said again.
  return text_.find(text) == std::string_view::npos ? std::nullopt : std::optional(text);
}

std::vector<std::string_view> SourceText::Encode(const std::vector<std::string_view>& pieces,
                                                 std::string& storage) const {
  if (CurrentLineEnds() == LineEnds::Keep && !HasOnlyCrLf(text_)) {
    std::string joined;
    for (const std::string_view piece : pieces) joined += piece;
    storage = EncodeText(WithEndsOf(text_, joined), encoding_);
    return {storage};
  }
  if (IsUtf16(encoding_)) {
    TextFile file;
    file.encoding = encoding_;
    for (const std::string_view piece : pieces) storage += piece;
    file.lines = SplitLines(storage);
    storage = file.Bytes();
    return {storage};
  }
  std::vector<std::string_view> bytes{bytes_.substr(0, encoding_ == TextEncoding::Bytes ? 0 : 3)};
  bytes.insert(bytes.end(), pieces.begin(), pieces.end());
  return bytes;
}

}  // namespace qx
