// Scripts: a Lua text that calls the functions and uses the enumerations which packages have registered. An
// options object that a function gives is a value with the object's published properties as fields.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/actions/Catalogue.h"

namespace qx {

struct Script {
  std::string name;  // as complaints name it: the file, or "-e"
  std::string text;  // a byte order mark, and a first line that begins with "#", are passed over
  std::vector<std::string> arguments;  // `...` and the table `arg`
};

// Runs the script to its end. `print` takes what the script prints, each line with its line end. Raises
// Exception "NAME:LINE: what is wrong" when the script cannot be compiled or fails; what it did until then
// stays done, nothing is saved.
//
// What a script meets beside Lua's own libraries (os.exit is left out: a script ends by its end):
// - every registered function, as a global of its name, letter case aside; it gives nil or an options object.
//   An object's fields are its properties by name, letter case aside: texts, whole numbers, booleans, lists as
//   tables of texts, and enumerations as ordinals, which may be set by their name too. A secret can be set
//   and not read.
// - every registered enumeration, as a global table from its names to their ordinals and back, and each of
//   its values as a global of that name.
// Any other use, such as a property that the object does not have, is an error that names the nearest valid one.
void RunScript(Catalogue& catalogue, const Script& script,
               const std::function<void(std::string_view)>& print);

}  // namespace qx
