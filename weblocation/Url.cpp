#include "weblocation/Url.h"

#include <algorithm>

namespace qx {
namespace {

// Cuts off and gives what stands before the mark; the whole text when it has none.
std::string_view TakeUpTo(std::string_view& text, char mark) {
  const std::size_t end = text.find(mark);
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return taken;
}

void SplitAuthority(std::string_view authority, Url& url) {
  const std::size_t at = authority.find('@');
  if (at != std::string_view::npos) authority.remove_prefix(at + 1);
  const std::size_t open = authority.find('[');
  const std::size_t close = authority.find(']');
  if (open != std::string_view::npos && close != std::string_view::npos && open < close) {
    url.host = authority.substr(open + 1, close - open - 1);
    authority.remove_prefix(close + 1);
    TakeUpTo(authority, ':');
  } else {
    url.host = TakeUpTo(authority, ':');
  }
  url.port = authority;
}

}  // namespace

// Decodes nothing, so "%20" is three characters (docs/deliberate.md).
Url SplitUrl(std::string_view text) {
  std::string slashed(text);
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  std::string_view rest = slashed;
  Url url;
  const std::size_t mark = rest.find("://");
  const bool isAbsolute = mark != std::string_view::npos && mark > 0;
  if (isAbsolute) {
    url.protocol = rest.substr(0, mark);
    rest.remove_prefix(mark + 3);
  }
  rest = rest.substr(0, rest.find('?'));
  if (isAbsolute) {
    SplitAuthority(TakeUpTo(rest, '/'), url);
    url.path = "/";
  }
  const std::size_t folders = rest.rfind('/') + 1;  // 0 when there is none
  url.path += rest.substr(0, folders);
  rest.remove_prefix(folders);
  url.document = rest.substr(0, rest.find('#'));
  return url;
}

std::string WithTrailingSlash(std::string text) {
  if (!text.empty() && text.back() != '/') text += '/';
  return text;
}

std::string WithoutTrailingSlash(std::string text) {
  if (text.ends_with('/')) text.pop_back();
  return text;
}

std::string TrimSlashes(std::string text) {
  if (text.starts_with('/')) text.erase(0, 1);
  return WithoutTrailingSlash(std::move(text));
}

}  // namespace qx
