#include "platform/VisibleText.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(VisibleText, ShowsWhatATerminalWouldObey) {
  EXPECT_EQ(VisibleText("\x1b]0;title\x07"), "\\u001B]0;title\\u0007");
  EXPECT_EQ(VisibleText(std::string_view("a\0b\x7F", 4)), "a\\u0000b\\u007F");
  EXPECT_EQ(VisibleText("\u009B31m"), "\\u009B31m");
  EXPECT_EQ(VisibleText("failed\rsucceeded"), "failed\\u000Dsucceeded");
  EXPECT_EQ(VisibleText("a\u202Eb\u2066c\u2028d\u200Fe\u061Cf"), "a\\u202Eb\\u2066c\\u2028d\\u200Fe\\u061Cf");
}

TEST(VisibleText, LeavesEverythingElse) {
  for (const std::string_view text :
       {"", "plain\ttext\nwith lines\r\nof both kinds\r\n", "\u00A9 \u20AC \u2014 \u0645",
        "bytes \x9B\xFF\x80 of no encoding", "\xE2\x80", "\xC2"}) {
    EXPECT_EQ(VisibleText(text), text);
    EXPECT_FALSE(HasHiddenCharacters(text)) << text;
  }
}

TEST(VisibleText, KnowsWhetherThereIsAnything) {
  for (const std::string_view text : {"\x1b", "a\rb", "\u0085", "\u2029", "ends in\r"}) {
    EXPECT_TRUE(HasHiddenCharacters(text)) << text;
  }
}

// Texts are looked at in pieces of several bytes.
TEST(VisibleText, FindsACharacterWhereverItStands) {
  for (std::size_t size = 1; size < 40; ++size) {
    const std::string plain(size, '~');
    EXPECT_FALSE(HasHiddenCharacters(plain)) << size;
    for (std::size_t at = 0; at < size; ++at) {
      for (const char c : {'\x1b', '\x7F', '\0', '\x1F'}) {
        std::string text = plain;
        text[at] = c;
        EXPECT_TRUE(HasHiddenCharacters(text)) << size << " " << at;
      }
      for (const char c : {'\n', '\t', ' ', '\x80', '\xFF', '\xC2'}) {
        std::string text = plain;
        text[at] = c;
        EXPECT_FALSE(HasHiddenCharacters(text)) << size << " " << at;
      }
    }
  }
}

TEST(VisibleText, LetsColoursPassOnDemandAndNothingElse) {
  EXPECT_EQ(VisibleText("\x1b[1;31mred\x1b[0m", ColourSequences::Kept), "\x1b[1;31mred\x1b[0m");
  EXPECT_EQ(VisibleText("\x1b[1;31mred\x1b[m"), "\\u001B[1;31mred\\u001B[m");
  EXPECT_EQ(VisibleText("\x1b[2J\x1b[5;5H\x1b[31", ColourSequences::Kept),
            "\\u001B[2J\\u001B[5;5H\\u001B[31");
}

}  // namespace
}  // namespace qx
