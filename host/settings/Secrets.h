// Reversible encryption of stored secrets for the running user: libsodium's secretbox under a key in the
// user's configuration folder, or the data protection of Windows.
#pragma once

#include <string>
#include <string_view>

#include "plugin/Qxtypes.h"

namespace qx {

// The text encrypted for this user, in printable ASCII that begins with its version: "qx1:..." or "qxw1:...".
// Each call gives another text. The empty text stays empty. `key` binds the secret to a word that decrypting
// needs again; it may be empty. Raises Exception when the user's key cannot be read or made.
std::string EncryptSecret(std::string_view text, std::string_view key);

// The clear text. Raises Exception when the text is no encrypted secret, was changed, or belongs to another
// user or another key.
std::string DecryptSecret(std::string_view text, std::string_view key);

}  // namespace qx
