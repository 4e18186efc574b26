// What a line of the log is to a reader: an error, a warning, or just a line.
#pragma once

namespace qx::desktop {

enum class Severity { Plain, Heading, Good, Warning, Error };

}  // namespace qx::desktop
