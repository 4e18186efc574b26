// Reads the machine's registry, in the view that 32-bit programs see. Nothing here writes.
// Outside Windows an exported .reg file may stand in for it.
#pragma once

#include <optional>
#include <string>

namespace qx {

// The text value `name` ("" for the default one) of a key below HKEY_LOCAL_MACHINE, as it is stored: its
// %VARIABLES% are not expanded. None when key or value are missing or the value is no text. Any thread.
std::optional<std::string> ReadMachineText(const std::string& key, const std::string& name);

// Outside Windows: the .reg export that answers from now on; an empty path ends that, and nothing is found.
// Raises Exception when the file cannot be read or is no export. On Windows it changes nothing. Any thread.
void SetRegistryFile(const std::string& path);

// The same with the text of an export, which is the caller's own making.
void SetRegistryText(const std::string& text);

}  // namespace qx
