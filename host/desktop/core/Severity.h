// What a line of the log is to a reader: an error, a warning, or just a line. Told by its looks alone, for
// the compilers of all these years, their linkers and the build engines.
#pragma once

#include <string_view>

namespace qx::desktop {

enum class Severity { Plain, Heading, Good, Warning, Error };

// What a line of a compiler's output is: "x.cs(3,4): error CS0103: ...", "warning C4996: ...". Any 8-bit
// encoding that keeps ASCII.
Severity SeverityOf(std::string_view line);

}  // namespace qx::desktop
