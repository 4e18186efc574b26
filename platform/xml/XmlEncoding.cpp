#include "platform/xml/XmlEncoding.h"

#include <algorithm>

#include "platform/Texts.h"

namespace qx {
namespace {

constexpr LegacyEncoding kLegacy[] = {
    {"windows-1250", "CP1250", 1250},
    {"windows-1251", "CP1251", 1251},
    {"windows-1252", "CP1252", 1252},
    {"windows-1253", "CP1253", 1253},
    {"windows-1254", "CP1254", 1254},
    {"windows-1255", "CP1255", 1255},
    {"windows-1256", "CP1256", 1256},
    {"windows-1257", "CP1257", 1257},
    {"windows-1258", "CP1258", 1258},
    {"windows-874", "CP874", 874},
    {"iso-8859-1", "ISO-8859-1", 28591},
    {"iso-8859-2", "ISO-8859-2", 28592},
    {"iso-8859-3", "ISO-8859-3", 28593},
    {"iso-8859-4", "ISO-8859-4", 28594},
    {"iso-8859-5", "ISO-8859-5", 28595},
    {"iso-8859-6", "ISO-8859-6", 28596},
    {"iso-8859-7", "ISO-8859-7", 28597},
    {"iso-8859-8", "ISO-8859-8", 28598},
    {"iso-8859-9", "ISO-8859-9", 28599},
    {"iso-8859-13", "ISO-8859-13", 28603},
    {"iso-8859-15", "ISO-8859-15", 28605},
    {"shift_jis", "CP932", 932},
    {"x-sjis", "CP932", 932},
    {"windows-31j", "CP932", 932},
    {"euc-jp", "EUC-JP", 20932},
    {"gb2312", "GBK", 936},
    {"gbk", "GBK", 936},
    {"gb18030", "GB18030", 54936},
    {"big5", "CP950", 950},
    {"euc-kr", "CP949", 949},
    {"ks_c_5601-1987", "CP949", 949},
    {"koi8-r", "KOI8-R", 20866},
    {"koi8-u", "KOI8-U", 21866},
    {"us-ascii", "US-ASCII", 20127},
    {"ascii", "US-ASCII", 20127},
};

}  // namespace

std::string_view DeclaredEncoding(std::string_view bytes) {
  constexpr std::string_view kBegin = "<?xml", kWord = "encoding", kBlanks = " \t\r\n";
  if (!bytes.starts_with(kBegin) || kBlanks.find(bytes.substr(kBegin.size(), 1)) == std::string_view::npos)
    return {};
  const std::size_t end = bytes.find("?>");
  if (end == std::string_view::npos) return {};
  bytes = bytes.substr(0, end);
  const std::size_t word = bytes.find(kWord);
  if (word == std::string_view::npos) return {};
  bytes = TrimView(bytes.substr(word + kWord.size()));
  if (!bytes.starts_with('=')) return {};
  bytes = TrimView(bytes.substr(1));
  if (bytes.empty() || (bytes[0] != '"' && bytes[0] != '\'')) return {};
  const std::size_t close = bytes.find(bytes[0], 1);
  const std::string_view name = bytes.substr(1, close == std::string_view::npos ? 0 : close - 1);
  const bool couldBe = std::ranges::all_of(name, [](char c) { return c > ' ' && c < '\x7F'; });
  return couldBe ? name : std::string_view();
}

const LegacyEncoding* FindLegacyEncoding(std::string_view name) {
  const std::string lower = LowerCase(name);
  const auto found = std::find_if(std::begin(kLegacy), std::end(kLegacy),
                                  [&](const auto& entry) { return entry.name == lower; });
  return found == std::end(kLegacy) ? nullptr : found;
}

void DecodeDeclaredLegacy(std::string& bytes) {
  const std::string_view declared = DeclaredEncoding(bytes);
  const LegacyEncoding* legacy = FindLegacyEncoding(declared);
  if (legacy == nullptr) return;
  bytes.replace(static_cast<std::size_t>(declared.data() - bytes.data()), declared.size(), "utf-8");
  if (!IsAscii(bytes)) bytes = system::DecodeLegacy(*legacy, bytes);
}

bool IsAscii(std::string_view text) {
  unsigned char all = 0;
  for (const char c : text) all = static_cast<unsigned char>(all | static_cast<unsigned char>(c));
  return all < 0x80;
}

}  // namespace qx
