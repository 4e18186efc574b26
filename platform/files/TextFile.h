// A text file as lines, with the encoding it came in, so that it can go back in the same one. Lines are UTF-8
// where the file said so by its mark (or is UTF-16), and the file's own bytes otherwise.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qx {

enum class TextEncoding {
  Bytes,           // no mark: the lines hold the file's bytes (plain UTF-8 too)
  Utf8WithMark,    // EF BB BF
  Utf16LittleEnd,  // FF FE
  Utf16BigEnd,     // FE FF
};

struct TextFile {
  std::vector<std::string> lines;  // without their ends; the mark is not part of the first
  TextEncoding encoding = TextEncoding::Bytes;

  // Raises as ReadFile does.
  static TextFile Load(const std::string& path);
  static TextFile FromBytes(std::string_view bytes);

  // The file's bytes: its mark, and every line with CR LF behind it, the last one too. Raises "Line N cannot
  // be written as UTF-16: it is not UTF-8" (likewise "as UTF-8") where a line holds what the encoding cannot.
  std::string Bytes() const;
  // Puts them in the file's place as ReplaceFile does; an error of Bytes is led by "Cannot write FILE: ".
  void Save(const std::string& path) const;
};

// By the mark that a file's bytes begin with.
TextEncoding EncodingOf(std::string_view bytes);

// The text as a file's bytes, its mark first and its line ends as they stand. Raises "The text cannot be written as
// UTF-16: it is not UTF-8".
std::string EncodeText(std::string_view text, TextEncoding encoding);

// The text without the mark of UTF-8 that it may begin with.
std::string_view WithoutUtf8Mark(std::string_view text);

// The text of a file's bytes by the same rules, in one piece, without its mark. An odd last byte of UTF-16 is
// kept as U+FFFD. A text in plain bytes is not copied: the view then points into `bytes`, else into `scratch`.
std::string_view DecodeText(std::string_view bytes, std::string& scratch);

}  // namespace qx
