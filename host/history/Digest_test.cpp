#include "host/history/Digest.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(Sha256, IsThatOfTheStandard) {
  EXPECT_EQ(Sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(Sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(Sha256, OfPiecesIsThatOfTheWhole) {
  const std::string_view pieces[] = {"a", "", "bc"};
  EXPECT_EQ(Sha256(pieces), Sha256("abc"));
}

TEST(Sha256, OfWhatBeginsAlikeIsThatOfEachWhole) {
  const std::string_view one[] = {"b", "c"}, other[] = {"bd"};
  const DigestTail tails[] = {one, {}, other};
  EXPECT_EQ(Sha256Behind("a", tails), (std::vector<std::string>{Sha256("abc"), Sha256("a"), Sha256("abd")}));
}

}  // namespace
}  // namespace qx
