#include "built/WrittenSources.h"

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"
#include "plugin/Qxtypes.h"
#include "versioning/AssemblyAttributes.h"
#include "versioning/VersionBlock.h"

namespace qx {
namespace {

// Calls take(text) with the file's text; a file that cannot be read is passed over.
template <class Taker>
void WithText(const std::string& file, Taker&& take) {
  std::string bytes, decoded;
  if (TryReadFile(file, bytes)) take(DecodeText(bytes, decoded));
}

// "1,2,0,45" with dots; empty when one of them is no number (the name of a macro).
std::string DottedNumbers(std::string_view written) {
  std::string dotted;
  written = written.substr(0, written.find("//"));
  for (;;) {
    const std::size_t comma = written.find(',');
    const std::string number = Trim(written.substr(0, comma));
    if (!ToInteger(number)) return "";
    dotted += number;
    if (comma == std::string_view::npos) return dotted;
    dotted += '.';
    written = written.substr(comma + 1);
  }
}

}  // namespace

WrittenSources ReadWrittenSources(const OutputPlace& project, const std::string& script) {
  WrittenSources sources;
  std::string reference;
  WithText(project.file, [&](std::string_view text) { reference = AssemblyInfoReference(text); });
  const std::string info =
      reference.empty() ? "" : FindExisting(ExpandPath(FolderPart(project.file), reference));
  WithText(info, [&](std::string_view text) {
    const WrittenVersions versions = ReadWrittenVersions(text);
    sources.assembly = {versions.assembly, info};
    sources.fileOfAssembly = {versions.file, info};
  });
  const std::string found = script.empty() ? "" : FindExisting(script);
  WithText(found, [&](std::string_view text) {
    sources.fileOfScript.file = found;
    try {
      sources.fileOfScript.text = DottedNumbers(ReadVersionBlock(text, found).writtenNumbers);
    } catch (const Exception&) {
      // A block that the stamping refuses says nothing here either.
    }
  });
  return sources;
}

}  // namespace qx
