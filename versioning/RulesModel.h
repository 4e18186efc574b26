// An independent model of the stamping rules, for the tests alone: written line by line from the rules, with none
// of the product's code, so that the two can be compared over files that nobody here wrote. Slow and simple.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "versioning/Qxassemblyinfo.h"

namespace qx::model {

// A file as units: bytes, or UTF-16 units when it has that mark. ASCII has the same numbers in both.
struct File {
  std::string mark;
  bool wide = false;
  bool bigEnd = false;
  std::vector<std::u16string> lines;
};
File Load(const std::string& bytes);
std::string Save(const File& file);

// `values`: what is to be updated, in ASCII.
std::string StampAssemblyInfo(const std::string& bytes, const std::string& extension,
                              const std::map<AssemblyAttribute, std::string>& values);

// The file with its block replaced by `block` (CR LF lines in ASCII), or nothing and the message in `error`.
std::optional<std::string> ReplaceVersionBlock(const std::string& bytes, const std::string& block,
                                               std::string& error);

// What reading gives, as one text, "numbers 1.2.3.4 flags 2B dll 0 locale 1033 page 1252", absent parts left
// out; or "error: MESSAGE".
std::string DescribeVersionBlock(const std::string& bytes);

}  // namespace qx::model
