#include "programs/ProgramFile.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "plugin/Qxtypes.h"
#include "programs/ProgramFixture.h"

namespace qx {
namespace {

std::string Whole() {
  return MakeProgram(
      {0x8664, true, MetadataOf("Acme", {1, 2, 3, 4}, ""), VersionBlock({1, 2, 3, 5}, {1, 2, 0, 0})});
}

TEST(ProgramFile, TellsAllThatAProgramSays) {
  const TestFolder folder;
  const ProgramFile program = ReadProgram(folder.Write("a.exe", Whole()));
  EXPECT_EQ(program.machine, 0x8664);
  EXPECT_TRUE(program.isManaged);
  ASSERT_TRUE(program.assembly.has_value());
  EXPECT_EQ(DottedVersion(program.assembly->version), "1.2.3.4");
  ASSERT_TRUE(program.version.has_value());
  EXPECT_EQ(DottedVersion(program.version->fixed->file), "1.2.3.5");
}

TEST(ProgramFile, TakesAProgramThatSaysNothing) {
  const TestFolder folder;
  const ProgramFile program = ReadProgram(folder.Write("a.dll", MakeProgram({})));
  EXPECT_FALSE(program.isManaged);
  EXPECT_FALSE(program.assembly.has_value());
  EXPECT_FALSE(program.version.has_value());
}

TEST(ProgramFile, TakesAProgramWithOtherResourcesOnly) {
  std::string bytes = Whole();
  const std::size_t type = bytes.find(std::string_view("\x10\0\0\0\x18\0\0\x80", 8));
  ASSERT_NE(type, std::string::npos);
  bytes[type] = 3;  // icons
  MemoryBytes source(bytes);
  EXPECT_FALSE(ReadProgram(source).version.has_value());
}

TEST(ProgramFile, ComesToAnEndInFoldersThatHoldThemselves) {
  std::string bytes = Whole();
  for (const std::string_view place :
       {std::string_view("\x18\0\0\x80", 4), std::string_view("\x30\0\0\x80", 4)}) {
    bytes[bytes.find(place)] = 0;
  }
  MemoryBytes source(bytes);
  EXPECT_EQ(MessageOf([&] { ReadProgram(source); }), "it is damaged: its version resource is a folder");
}

TEST(ProgramFile, NamesTheFileAndTheReason) {
  const TestFolder folder;
  const std::string cut = folder.Write("cut.exe", Whole().substr(0, 600));
  EXPECT_EQ(MessageOf([&] { ReadProgram(cut); }),
            "Cannot read " + cut + ": it is cut off: its CLI metadata lies behind its end");
  const std::string missing = folder / "none.exe";
  EXPECT_TRUE(MessageOf([&] { ReadProgram(missing); }).starts_with("Cannot read " + missing + ": "));
}

// Whatever is cut off, the reader ends with an answer or a reason; what it answers without the end of the
// file is what it answers with it.
TEST(ProgramFile, TakesEveryCutFile) {
  const std::string whole = Whole();
  int refused = 0;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::string cut = whole.substr(0, size);
    MemoryBytes source(cut);
    try {
      const ProgramFile program = ReadProgram(source);
      EXPECT_EQ(DottedVersion(program.version->fixed->file), "1.2.3.5") << size;
    } catch (const Exception& error) {
      EXPECT_TRUE(error.Message().starts_with("it is ")) << size << ": " << error.Message();
      ++refused;
    }
  }
  EXPECT_GT(refused, 1000);
}

TEST(ProgramFile, TakesEveryChangedByte) {
  const std::string whole = Whole();
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int value : {0x00, 0x7F, 0x80, 0xFF}) {
      std::string changed = whole;
      changed[at] = static_cast<char>(value);
      MemoryBytes source(changed);
      try {
        ReadProgram(source);
      } catch (const Exception& error) {
        EXPECT_TRUE(error.Message().starts_with("it is ")) << at << ": " << error.Message();
      }
    }
  }
}

}  // namespace
}  // namespace qx
