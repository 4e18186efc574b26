#include "engine/vc/DefFile.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(DefFile, KeepsExportsAndDropsTheRest) {
  EXPECT_EQ(DefFileForLd("LIBRARY\r\nVERSION 1.0\r\nDESCRIPTION 'a; b'\r\n\r\nEXPORTS ; all\r\n"
                         "  First @1 NONAME\r\n  Second=Inner @2 PRIVATE ; hidden\r\n  Third CONSTANT\r\n"
                         "SECTIONS\r\n  .data READ\r\nHEAPSIZE 1024\r\n"),
            "EXPORTS\n First @1 NONAME\n Second=Inner @2\n Third DATA\n");
}

TEST(DefFile, TakesAnExportOnTheLineOfTheStatement) {
  EXPECT_EQ(DefFileForLd("EXPORTS One\nTwo\nNAME x\n"), "EXPORTS\n One\n Two\n");
}

TEST(DefFile, ExportsNamesThatAreStatementsInCapitals) {
  EXPECT_EQ(DefFileForLd("EXPORTS\n version\n data\n"), "EXPORTS\n version\n data\n");
}

TEST(DefFile, OfStdcallFunctionsNamesThemAsTheirCallersDo) {
  const std::string symbols = "00000000 T _plain@4\n0000000a T _cd\n         U _other@8\n00000014 T _two@8\n";
  EXPECT_EQ(DefFileWithStdcall("EXPORTS\n plain @1\n cd @5 NONAME\n renamed=two\n other\n", symbols),
            "EXPORTS\n plain@4 @1\n cd @5 NONAME\n renamed@8\n other\n");
  EXPECT_EQ(DefFileWithStdcall("EXPORTS\n cd\n", symbols), "");
}

TEST(DefFile, OfNothingExportsNothing) { EXPECT_EQ(DefFileForLd(""), "EXPORTS\n"); }

}  // namespace
}  // namespace qx
