// Stamping any bytes: as the model of the rules says, every line that is no attribute line as it was, and a
// second run with the same values changes no line that is there.
#include <cstdlib>
#include <string>

#include "platform/Lines.h"
#include "plugin/Qxtypes.h"
#include "versioning/AssemblyAttributes.h"
#include "versioning/RulesModel.h"
#include "versioning/SourceText.h"

namespace {

std::string Stamp(const std::string& bytes, const std::string& extension,
                  const std::map<qx::AssemblyAttribute, std::string>& values) {
  const qx::SourceText source(bytes, "A.cs", qx::PlainAscii::IsUtf8);
  const std::string text = qx::StampAssemblyInfo(
      source.Text(), extension,
      [&](qx::AssemblyAttribute attribute) {
        const auto found = values.find(attribute);
        return found == values.end() ? std::nullopt : std::optional(found->second);
      },
      [&](const std::string& value, std::string_view name) { return source.Fit(value, name); },
      [](const std::string&) {});
  // Line by line: what was no attribute line is there as it was.
  qx::LineCursor before(source.Text()), after(text);
  qx::Line old, stamped;
  while (before.Next(old)) {
    if (!after.Next(stamped)) std::abort();
    const bool mayChange = qx::FindWord(old.text, "assembly", ':') != std::string_view::npos;
    if (!mayChange && old.text != stamped.text) std::abort();
  }
  std::string storage, joined;
  for (const std::string_view piece : source.Encode({text}, storage)) joined += piece;
  return joined;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::string extension = size % 2 == 0 ? ".cs" : ".cpp";
  const std::map<qx::AssemblyAttribute, std::string> values = {{qx::AssemblyAttribute::Title, "T $1 \\"},
                                                               {qx::AssemblyAttribute::Company, "C"},
                                                               {qx::AssemblyAttribute::Copyright, "R"},
                                                               {qx::AssemblyAttribute::Version, "1.2.3.4"}};
  try {
    const std::string once = Stamp(bytes, extension, values);
    if (once != qx::model::StampAssemblyInfo(bytes, extension, values)) std::abort();
    const std::string twice = Stamp(once, extension, values);
    if (twice.compare(0, once.size(), once) != 0) std::abort();
  } catch (const qx::Exception&) {
    // Half a character at the end: nothing was written.
  }
  return 0;
}
