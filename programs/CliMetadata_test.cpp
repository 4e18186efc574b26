#include "programs/CliMetadata.h"

#include <gtest/gtest.h>

#include "host/testing/TestFolder.h"
#include "programs/ProgramFixture.h"

namespace qx {
namespace {

std::optional<AssemblyName> NameIn(std::optional<std::string> metadata) {
  const std::string bytes = MakeProgram({0x14C, false, std::move(metadata), {}});
  MemoryBytes source(bytes);
  return ReadAssemblyName(PeImage(source));
}

TEST(CliMetadata, GivesTheAssemblysNameWithNarrowAndWideIndexes) {
  for (const bool wide : {false, true}) {
    const auto assembly = NameIn(MetadataOf("Acme.Tools", {1, 2, 3, 65534}, "de-AT", wide));
    ASSERT_TRUE(assembly.has_value());
    EXPECT_EQ(assembly->name, "Acme.Tools");
    EXPECT_EQ(DottedVersion(assembly->version), "1.2.3.65534");
    EXPECT_EQ(assembly->culture, "de-AT");
  }
  EXPECT_EQ(NameIn(MetadataOf("A", {1, 0, 0, 0}, ""))->culture, "");
}

TEST(CliMetadata, GivesNothingForNativeProgramsAndModules) {
  EXPECT_EQ(NameIn(std::nullopt), std::nullopt);
  std::string module = MetadataOf("A", {1, 0, 0, 0}, "");
  module[module.find("#Strings") + 12 + 12] &= ~1;  // the bit of table 20, in the fifth byte of eight
  EXPECT_EQ(NameIn(module), std::nullopt);
}

TEST(CliMetadata, RefusesWhatIsDamaged) {
  const std::string good = MetadataOf("Acme", {1, 2, 3, 4}, "");
  std::string mark = good;
  mark[0] = 'X';
  EXPECT_EQ(MessageOf([&] { NameIn(mark); }), "it is damaged: its CLI metadata begins with the wrong mark");
  std::string streams = good;
  streams[streams.find("#~") + 1] = '?';
  EXPECT_EQ(MessageOf([&] { NameIn(streams); }), "it is damaged: its CLI metadata has no tables");
  std::string rows = good;
  rows[rows.find("#Strings") + 12 + 24 + 3] = 0x7F;  // the count of the first table
  EXPECT_EQ(MessageOf([&] { NameIn(rows); }), "it is damaged: its assembly's name lies outside its sections");
  std::string texts = good;
  texts[texts.find("#Strings") - 4] = 1;  // the size of the texts
  EXPECT_EQ(MessageOf([&] { NameIn(texts); }), "it is damaged: a name lies outside its CLI metadata");
}

}  // namespace
}  // namespace qx
