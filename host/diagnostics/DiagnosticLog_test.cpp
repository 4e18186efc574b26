#include "host/diagnostics/DiagnosticLog.h"

#include <gtest/gtest.h>

#include "host/diagnostics/Baseline.h"

namespace qx {
namespace {

class Diagnostics : public testing::Test {
 protected:
  void Say(const std::vector<std::string>& lines, int action = 1) {
    for (const std::string& line : lines) {
      const std::size_t end = line.size();
      LogRecord record;
      record.kind = LogKind::Status;
      record.action = action;
      record.details = LogDetails(line, std::span(&end, 1));
      log_.Take(record);
    }
  }
  // "PROJECT:CODE" of each that is kept.
  std::vector<std::string> Kept() const {
    std::vector<std::string> all;
    for (const Diagnostic& one : log_.Kept()) {
      all.push_back(std::to_string(one.action) + " " + std::string(one.project) + ":" +
                    std::string(one.code));
    }
    return all;
  }
  using Texts = std::vector<std::string>;

  DiagnosticLog log_;
};

TEST_F(Diagnostics, BelongToTheProjectThatVisualStudioNamedLast) {
  Say({"LINK : error LNK1: before", "------ Build started: Project: A, Configuration: Debug Win32 ------",
       "a.cpp(1) : error C1: x", "", "A - 1 error(s), 0 warning(s)",
       "------ Build started: Project: B, Configuration: Debug Win32 ------", "b.cs(1,1): warning CS2: x",
       "---------------------- Done ----------------------", "LINK : error LNK3: behind"});
  EXPECT_EQ(Kept(), (Texts{"1 :LNK1", "1 A:C1", "1 B:CS2", "1 :LNK3"}));
  EXPECT_EQ(log_.Counts().errors, 3);
  EXPECT_EQ(log_.Counts().warnings, 1);
}

TEST_F(Diagnostics, BelongToTheProjectWhoseNumberTheirLineBears) {
  Say({"1>------ Build started: Project: A, Configuration: Debug Win32 ------",
       "2>------ Build started: Project: B, Configuration: Debug Win32 ------", "1>a.cpp(1) : error C1: x",
       "2>b.cpp(1) : error C2: x", "b.cpp(1) : error C3: x"});
  EXPECT_EQ(Kept(), (Texts{"1 A:C1", "1 B:C2", "1 B:C3"}));
}

TEST_F(Diagnostics, BelongToTheProjectThatMSBuildIsIn) {
  Say({"Project \"A.sln\" (default targets):", "x : error MSB1: y",
       "Project \"A.sln\" is building \"L.csproj\" (default targets):", "a.cs(1,1): error CS1: x",
       "Project \"L.csproj\" is building \"M.csproj\" (default targets):", "a.cs(1,1): error CS2: x",
       "Done building project \"M.csproj\".", "a.cs(1,1): error CS3: x",
       "Done building project \"L.csproj\" -- FAILED.", "a.cs(1,1): error CS4: x [C:\\p\\N.csproj]"});
  EXPECT_EQ(Kept(), (Texts{"1 :MSB1", "1 L:CS1", "1 M:CS2", "1 L:CS3", "1 N:CS4"}));
}

TEST_F(Diagnostics, AreNotCountedAgainWhenMSBuildListsThem) {
  const std::string error = "a.cs(1,1): error CS1: x";
  Say({"Project \"L.csproj\" (default targets):", error, error, "Done building project \"L.csproj\".",
       "Build FAILED.", "", "\t" + error, "b.cs(1,1): error CS2: told here only", "    2 Error(s)",
       "Project \"L.csproj\" (default targets):", error});
  EXPECT_EQ(Kept(), (Texts{"1 L:CS1", "1 L:CS1", "1 :CS2", "1 L:CS1"}));
}

TEST_F(Diagnostics, OfAnotherActionBelongToNoProjectYet) {
  Say({"------ Build started: Project: A, Configuration: Debug ------", "a.cpp(1) : error C1: x"});
  Say({"a.cpp(1) : error C1: x", "------ Build started: Project: A, Configuration: Debug ------"}, 2);
  EXPECT_EQ(Kept(), (Texts{"1 A:C1", "2 :C1"}));
  ASSERT_EQ(log_.Projects().size(), 2u);
  EXPECT_EQ(log_.Projects()[1].action, 2);
  EXPECT_EQ(log_.Projects()[1].name, "A");
}

TEST_F(Diagnostics, TellThousandsOfProjectsApart) {
  constexpr std::size_t kMany = 5000;
  for (int action = 1; action <= 2; ++action) {
    for (int round = 0; round < 2; ++round) {
      for (std::size_t i = 0; i < kMany; ++i)
        Say({"------ Build started: Project: P" + std::to_string(i) + ", Configuration: Debug ------",
             "a.cpp(1) : error C1: x"},
            action);
    }
  }
  ASSERT_EQ(log_.Projects().size(), 2 * kMany);
  for (std::size_t i = 0; i < kMany; ++i) {
    const std::string name = "P" + std::to_string(i);
    EXPECT_EQ(log_.Projects()[i].name, name);
    EXPECT_EQ(log_.Projects()[kMany + i].name, name);
    EXPECT_EQ(log_.Projects()[kMany + i].action, 2);
    for (std::size_t part = 0; part < 4; ++part) EXPECT_EQ(log_.Kept()[part * kMany + i].project, name);
  }
}

TEST_F(Diagnostics, AreReadFromMessagesAndFromEveryLineOfADetail) {
  LogRecord record;
  record.action = 1;
  record.text = "a.cpp(1) : error C1: x\r\nplain\n\nb.cpp(2) : warning C2: y";
  log_.Take(record);
  ASSERT_EQ(log_.InLastRecord().size(), 2u);
  EXPECT_EQ(log_.InLastRecord()[0].line, 0u);
  EXPECT_EQ(log_.InLastRecord()[1].line, 3u);
  EXPECT_EQ(log_.InLastRecord()[1].diagnostic.code, "C2");
  record.kind = LogKind::Exception;
  log_.Take(record);
  EXPECT_TRUE(log_.InLastRecord().empty());
  EXPECT_EQ(log_.Counts().errors, 1);
}

TEST_F(Diagnostics, ThatTheBaselineHoldsDoNotCount) {
  const Baseline baseline =
      Baseline::Read(R"({"version":1,"diagnostics":[{"code":"C2","file":"b.cpp","message":"y"}]})", "");
  DiagnosticLog log(&baseline);
  LogRecord record;
  record.action = 1;
  record.text = "b.cpp(2) : warning C2: y\nb.cpp(9) : warning C2: y\nb.cpp(2) : warning C2: z";
  log.Take(record);
  EXPECT_EQ(log.Counts().warnings, 1);
  EXPECT_EQ(log.Counts().known, 2);
  EXPECT_TRUE(log.Kept()[1].isKnown);
  EXPECT_FALSE(log.Kept()[2].isKnown);
}

TEST_F(Diagnostics, AreCountedBeyondWhatIsKept) {
  LogRecord record;
  record.action = 1;
  record.text = "b.cpp(2) : warning C2: y";
  for (std::size_t i = 0; i < DiagnosticLog::kMostKept; ++i) log_.Take(record);
  EXPECT_FALSE(log_.IsCut());
  log_.Take(record);
  EXPECT_TRUE(log_.IsCut());
  EXPECT_EQ(log_.Kept().size(), DiagnosticLog::kMostKept);
  EXPECT_EQ(log_.Counts().warnings, static_cast<std::int64_t>(DiagnosticLog::kMostKept) + 1);
}

TEST_F(Diagnostics, KeepTheirTextsWhenTheRecordIsGone) {
  {
    std::string line = "file.cpp(1) : error C1: " + std::string(200'000, 'x');
    Say({line, line, "b.cpp(1) : error C2: small"});
  }
  EXPECT_EQ(log_.Kept()[0].message.size(), 200'000u);
  EXPECT_EQ(log_.Kept()[2].message, "small");
  EXPECT_EQ(log_.Kept()[1].file, "file.cpp");
}

}  // namespace
}  // namespace qx
