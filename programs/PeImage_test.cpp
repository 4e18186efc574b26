#include "programs/PeImage.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "programs/ProgramFixture.h"

namespace qx {
namespace {

// Why the bytes are no image.
std::string Refusal(const std::string& bytes) {
  MemoryBytes source(bytes);
  return MessageOf([&] { PeImage image(source); });
}

std::string With(std::string bytes, std::size_t at, std::string_view change) {
  return bytes.replace(at, change.size(), change);
}

TEST(PeImage, TellsMachineAndDirectoriesOfBothWidths) {
  for (const bool is64 : {false, true}) {
    const std::uint16_t machine = is64 ? 0x8664 : 0x14C;
    const std::string bytes = MakeProgram({machine, is64, "metadata", "version"});
    MemoryBytes source(bytes);
    const PeImage image(source);
    EXPECT_EQ(image.Machine(), machine);
    EXPECT_EQ(image.CliHeader().address, 0x2000u);
    EXPECT_EQ(image.CliHeader().size, 72u);
    EXPECT_EQ(image.Resources().address, 0x2000u + 80);
    EXPECT_EQ(image.At(0x2000 + 72, 8, "it"), "metadata");
  }
}

TEST(PeImage, NamesMachinesAndGivesTheNumberOfOthers) {
  EXPECT_EQ(MachineName(0x14C), "x86");
  EXPECT_EQ(MachineName(0x8664), "x64");
  EXPECT_EQ(MachineName(0xAA64), "arm64");
  EXPECT_EQ(MachineName(0x1F0), "0x01F0");
}

TEST(PeImage, SaysWhatAFileIsThatIsNoProgram) {
  const std::string good = MakeProgram({});
  EXPECT_EQ(Refusal(""), "it is empty");
  EXPECT_EQ(Refusal("#!/bin/sh\n"), "it is no Windows program: it does not begin with MZ");
  EXPECT_EQ(Refusal(good.substr(0, 63)), "it is cut off: its first header lies behind its end");
  EXPECT_EQ(Refusal(good.substr(0, 64)),
            "it is cut off, or a DOS program: its PE header would lie behind its end");
  EXPECT_EQ(Refusal(With(good, 64, "NE")), "it is a program for 16-bit Windows");
  EXPECT_EQ(Refusal(With(good, 64, "XX")), "it is no Windows program: it has no PE header");
  EXPECT_EQ(Refusal(good.substr(0, 80)), "it is cut off: its file header lies behind its end");
  EXPECT_EQ(Refusal(good.substr(0, 100)), "it is cut off: its optional header lies behind its end");
  EXPECT_EQ(Refusal(good.substr(0, 320)), "it is cut off: its section table lies behind its end");
  EXPECT_EQ(Refusal(With(good, 88, "\x07\x01")), "it is damaged: its optional header is of no known form");
}

TEST(PeImage, RefusesAddressesOutsideItsSectionsAndBytesOutsideTheFile) {
  const std::string bytes = MakeProgram({});
  MemoryBytes source(bytes);
  const PeImage image(source);
  EXPECT_EQ(image.At(0x2000, 512, "it").size(), 512u);
  EXPECT_EQ(image.UpTo(0x21F0, 100, "it").size(), 16u);
  EXPECT_EQ(MessageOf([&] { image.At(0x2001, 512, "it"); }), "it is damaged: it lies outside its sections");
  EXPECT_EQ(MessageOf([&] { image.At(0x2200, 1, "it"); }), "it is damaged: it lies outside its sections");
  EXPECT_EQ(MessageOf([&] { image.At(1ull << 40, 1, "it"); }), "it is damaged: it lies outside its sections");
  const std::string cut = bytes.substr(0, 1000);
  MemoryBytes cutSource(cut);
  EXPECT_EQ(MessageOf([&] { PeImage(cutSource).At(0x2000, 512, "it"); }),
            "it is cut off: it lies behind its end");
}

TEST(PeImage, TakesSectionsFromWholeSectorsAndTheHeadersAsLoaded) {
  const std::string bytes =
      With(MakeProgram({0x14C, false, "metadata", {}}), 88 + 224 + 20, "\x0A\x02");  // place 0x20A
  MemoryBytes source(bytes);
  const PeImage image(source);
  EXPECT_EQ(image.At(0x2000 + 72, 8, "it"), "metadata");
  EXPECT_EQ(image.At(64, 2, "it"), "PE");
}

}  // namespace
}  // namespace qx
