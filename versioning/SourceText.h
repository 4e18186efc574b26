// A source file's text together with the encoding it came in: what is put into it must fit, and it goes back
// as it came. Works on bytes and views; reads and writes no file.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/TextFile.h"

namespace qx {

// What a file without a mark, with nothing but ASCII in it, is taken for when a text beyond ASCII is put in.
enum class PlainAscii {
  IsUtf8,            // source code: its compilers try UTF-8 first
  IsSystemCodePage,  // resource scripts: their compilers take the system's code page (UTF-8 outside Windows)
};

class SourceText {
 public:
  // `bytes` must outlive the object. Raises Exception for UTF-16 that ends in half a character or has no
  // mark, which nothing could write back.
  SourceText(std::string_view bytes, std::string fileName, PlainAscii plainAscii);
  SourceText(const SourceText&) = delete;
  SourceText& operator=(const SourceText&) = delete;

  // The text without its mark: UTF-8 when the file has a mark, the file's bytes otherwise.
  std::string_view Text() const { return text_; }
  // The same as its backup has it: with every line ended by CR LF, unless line ends are kept
  // (platform/LineEnds.h); copied only where that changes it.
  std::string_view NormalText();

  // `text` as it can stand in Text(). UTF-8 becomes the file's code page: the one it names (`namedPage`,
  // asked only when it matters), else UTF-8 when the file is, else the system's. Raises Exception naming the
  // file and `subject` for what the encoding cannot hold: nothing is guessed and nothing replaced by
  // something like it.
  std::string Fit(const std::string& text, std::string_view subject,
                  const std::function<std::optional<std::uint32_t>()>& namedPage = {}) const;

  // The bytes of a file that holds these pieces of text, its mark first; with the line ends of Text() where
  // they are kept. The result points into the pieces or into `storage`.
  std::vector<std::string_view> Encode(const std::vector<std::string_view>& pieces,
                                       std::string& storage) const;

 private:
  std::optional<std::string> TryFit(const std::string& text,
                                    const std::function<std::optional<std::uint32_t>()>& namedPage) const;

  std::string_view bytes_;
  std::string fileName_;
  PlainAscii plainAscii_;
  TextEncoding encoding_;
  std::string decoded_;
  std::string normal_;
  std::string_view text_;
};

}  // namespace qx
