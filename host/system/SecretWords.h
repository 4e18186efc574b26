// The secrets of this process, for whoever has to cut a text before it can be looked through for them: a part of a
// secret is not known again. Any thread.
#pragma once

#include <cstddef>
#include <string_view>

namespace qx {

// From now on no cut divides this text.
void NeverDivide(std::string_view secret);
// The size of the longest; 0: there is none.
std::size_t LongestSecret();
// The place at or before `cut` where the text can be cut without dividing a secret. Right when the text goes on for
// LongestSecret() behind the cut or ends before that. 0 where there is no such place.
std::size_t CutBetweenSecrets(std::string_view text, std::size_t cut);

}  // namespace qx
