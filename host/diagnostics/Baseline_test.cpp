#include "host/diagnostics/Baseline.h"

#include <gtest/gtest.h>

#include "platform/System.h"
#include "platform/files/Paths.h"
#include "plugin/Qxtypes.h"

namespace qx {
namespace {

Diagnostic Made(std::string_view code, std::string_view file, std::string_view message, int line = 1) {
  Diagnostic diagnostic;
  diagnostic.severity = Severity::Warning;
  diagnostic.code = code;
  diagnostic.file = file;
  diagnostic.message = message;
  diagnostic.line = line;
  return diagnostic;
}

const std::string kFolder = kIsWindows ? "C:\\src" : "/src";

TEST(Baseline, HoldsByCodeFileAndMessageWhateverTheLine) {
  const Diagnostic one = Made("C1", "a.cpp", "x", 3);
  const Baseline baseline = Baseline::Read(BaselineText(std::span(&one, 1), kFolder), kFolder);
  EXPECT_EQ(baseline.Size(), 1u);
  EXPECT_TRUE(baseline.Holds(Made("C1", "a.cpp", "x", 99)));
  EXPECT_FALSE(baseline.Holds(Made("C2", "a.cpp", "x")));
  EXPECT_FALSE(baseline.Holds(Made("C1", "b.cpp", "x")));
  EXPECT_FALSE(baseline.Holds(Made("C1", "a.cpp", "y")));
  EXPECT_FALSE(Baseline(kFolder).Holds(one));
}

TEST(Baseline, NamesFilesFromTheFolder) {
  const std::string file = kFolder + "/Core\\a.cpp";
  const Diagnostic one = Made("C1", file, "x");
  const std::string text = BaselineText(std::span(&one, 1), kFolder);
  EXPECT_NE(text.find("\"file\":\"Core/a.cpp\""), std::string::npos) << text;
  const std::string other = kIsWindows ? "D:\\other" : "/other";
  const Baseline elsewhere = Baseline::Read(text, other);
  EXPECT_TRUE(elsewhere.Holds(Made("C1", other + "/core/A.cpp", "x")));
  EXPECT_TRUE(elsewhere.Holds(Made("C1", ".\\Core\\a.cpp", "x")));
  EXPECT_FALSE(elsewhere.Holds(Made("C1", file, "x")));
}

TEST(Baseline, WritesEachOnceSortedALineEach) {
  const std::vector<Diagnostic> all{Made("C2", "b.cpp", "x"), Made("C1", "b.cpp", "x"),
                                    Made("C9", "a.cpp", "x"), Made("C2", "b.cpp", "x", 7)};
  EXPECT_EQ(BaselineText(all, kFolder),
            "{\"version\":1,\"diagnostics\":[\n"
            "{\"code\":\"C9\",\"file\":\"a.cpp\",\"message\":\"x\"},\n"
            "{\"code\":\"C1\",\"file\":\"b.cpp\",\"message\":\"x\"},\n"
            "{\"code\":\"C2\",\"file\":\"b.cpp\",\"message\":\"x\"}\n]}\n");
  EXPECT_EQ(BaselineText({}, kFolder), "{\"version\":1,\"diagnostics\":[\n]}\n");
}

TEST(Baseline, HoldsTextsThatAreNoUtf8) {
  const Diagnostic one = Made("", "\xE4.cpp", "a\xFF\n\"");
  const Baseline baseline = Baseline::Read(BaselineText(std::span(&one, 1), kFolder), kFolder);
  EXPECT_TRUE(baseline.Holds(one));
}

TEST(Baseline, SaysWhatIsWrongWithAText) {
  const auto fault = [](std::string_view text) -> std::string {
    try {
      Baseline::Read(text, kFolder);
    } catch (const Exception& e) {
      return e.Message();
    }
    return "none";
  };
  EXPECT_EQ(fault(""), "it is no JSON");
  EXPECT_EQ(fault("{"), "it is no JSON");
  EXPECT_EQ(fault("[]"), "it holds no list \"diagnostics\"");
  EXPECT_EQ(fault("{\"version\":1,\"diagnostics\":3}"), "it holds no list \"diagnostics\"");
  EXPECT_EQ(fault("{\"version\":2,\"diagnostics\":[]}"), "its version is not 1");
  EXPECT_EQ(fault("{\"diagnostics\":[]}"), "its version is not 1");
  EXPECT_EQ(fault("{\"version\":1,\"diagnostics\":[7]}"), "a diagnostic has no text \"code\"");
  EXPECT_EQ(fault("{\"version\":1,\"diagnostics\":[{\"code\":\"\",\"file\":1}]}"),
            "a diagnostic has no text \"file\"");
  EXPECT_EQ(fault("{\"version\":1,\"diagnostics\":[]}"), "none");
}

}  // namespace
}  // namespace qx
