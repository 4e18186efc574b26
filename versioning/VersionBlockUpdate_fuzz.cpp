// Replacing the block of any bytes: everything outside of it survives but for line ends, and the script then
// holds the new block and can be read.
#include <cstdlib>
#include <string>

#include "platform/Lines.h"
#include "platform/files/TextFile.h"
#include "plugin/Qxtypes.h"
#include "versioning/SourceText.h"
#include "versioning/VersionBlock.h"

namespace {

std::string Encoded(const qx::SourceText& source, const std::vector<std::string_view>& pieces) {
  std::string storage, joined;
  for (const std::string_view piece : source.Encode(pieces, storage)) joined += piece;
  return joined;
}

void Update(std::string_view bytes) {
  qx::VersionValues values;
  values.numbers = {7, 6, 5, 4};
  const std::string block = qx::WriteVersionBlock(values, {{"CompanyName", "ACME"}});
  qx::SourceText source(bytes, "App.rc", qx::PlainAscii::IsSystemCodePage);
  const std::string script(source.NormalText());
  const auto place = qx::FindVersionBlock(script, "App.rc");
  const std::string before = script.substr(0, place.begin), behind = script.substr(place.end);
  if (script != qx::WithCrLf(source.Text())) std::abort();

  const std::string updated = Encoded(source, {before, block, behind});
  std::string decoded;
  const std::string_view text = qx::DecodeText(updated, decoded);
  if (text != before + block + behind) std::abort();
  const auto again = qx::FindVersionBlock(text, "App.rc");
  if (again.begin != place.begin || again.end != place.begin + block.size()) std::abort();
  if (qx::ReadVersionBlock(text, "App.rc").numbers != values.numbers) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    Update({reinterpret_cast<const char*>(data), size});
  } catch (const qx::Exception&) {
    // A malformed block, or half a character at the end: nothing was written.
  }
  return 0;
}
