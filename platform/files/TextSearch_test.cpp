#include <gtest/gtest.h>

#include "platform/files/TextFile.h"
#include "platform/files/TextSearch.h"

namespace qx {
namespace {

// The text as a file of each encoding.
std::vector<std::string> Files(const std::string& text) {
  const auto wide = [&](const char* mark, bool lowFirst) {
    std::string bytes(mark, 2);
    for (const char c : text) bytes += lowFirst ? std::string{c, '\0'} : std::string{'\0', c};
    return bytes;
  };
  return {text, "\xEF\xBB\xBF" + text, wide("\xFF\xFE", true), wide("\xFE\xFF", false)};
}

bool FindsInParts(const std::string& bytes, std::size_t size) {
  TextSearch search("WORD");
  for (std::size_t at = 0; at < bytes.size(); at += size)
    search.Take(std::string_view(bytes).substr(at, size));
  return search.Found();
}

TEST(TextSearch, FindsAWordWhereverPartsAreCut) {
  for (const char* text : {"WORD", "a WORD", "WWORD b", "WOR", "wo WORRD", "", "W", "a\r\nWORDWORD\r\n"}) {
    for (const std::string& bytes : Files(text)) {
      std::string scratch;
      const bool isThere = DecodeText(bytes, scratch).find("WORD") != std::string_view::npos;
      for (std::size_t size = 1; size <= bytes.size() + 1; ++size) {
        EXPECT_EQ(FindsInParts(bytes, size), isThere) << text << " in parts of " << size;
      }
    }
  }
}

TEST(TextSearch, SaysSoAtThePartThatEndsTheWord) {
  TextSearch search("WORD");
  EXPECT_FALSE(search.Take("a WO"));
  EXPECT_FALSE(search.Found());
  EXPECT_TRUE(search.Take("RD"));
  EXPECT_TRUE(search.Take("b"));
}

TEST(TextSearch, TakesNoWordAcrossCharactersOfTwoBytes) {
  // The bytes of the word stand there, a byte too early.
  const std::string shifted = std::string("\xFF\xFE", 2) + std::string("\x20W\0O\0R\0D\0\x20", 10);
  EXPECT_FALSE(FindsInParts(shifted, shifted.size()));
}

}  // namespace
}  // namespace qx
