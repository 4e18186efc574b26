// Splits the URL of a web project into the parts that are asked for, and puts slashes at the ends of texts or
// takes them off. Plain text work; any thread.
#pragma once

#include <string>
#include <string_view>

namespace qx {

// The parts of a URL as they are written: nothing is decoded, but backslashes count as slashes.
struct Url {
  std::string protocol;  // before "://"; empty for a text that has none, which is then all path and document
  std::string host;  // without user name and password; of an IPv6 address what stands between the brackets
  std::string port;  // the text between the host's colon and the path, empty when there is none
  std::string path;  // the folders, with leading and trailing "/"; "/" for a URL without folders
  std::string document;  // what follows the last "/", without a query ("?") and without a bookmark ("#")
};

Url SplitUrl(std::string_view text);

// Adds a "/" unless the text is empty or ends in one.
std::string WithTrailingSlash(std::string text);
// Drops one "/" at the end.
std::string WithoutTrailingSlash(std::string text);
// Drops one "/" at the front, then one at the end.
std::string TrimSlashes(std::string text);

}  // namespace qx
