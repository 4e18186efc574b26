// Builds of each engine as they were recorded, one that passes and one that fails, in every form that they are told in:
// testdata/builds/NAME holds what the engine printed (run.log) and one file a form. With QX_WRITE_RECORDED set the files
// are written instead: look at what changed before it is committed.
#include <gtest/gtest.h>

#include <memory>

#include "host/report/Reports.h"
#include "host/report/RunRecorder.h"
#include "host/report/ServiceLog.h"
#include "platform/Environment.h"
#include "platform/files/Files.h"

namespace qx {
namespace {

const std::string kFolder = std::string(QX_SOURCE_DIR) + "/host/report/testdata/builds/";

// A stream in one system's form.
class Told : public LogSink {
 public:
  Told(std::string_view system, const DiagnosticLog& diagnostics)
      : log_(*FindServiceSystem(system), diagnostics) {}
  void Take(const LogRecord& record) override { log_.Append(text, record); }
  std::string text;

 private:
  ServiceLog log_;
};

// A recorded build, run again without its engine.
class Build {
 public:
  explicit Build(const std::string& name) : succeeds_(name.ends_with("-passes")) {
    for (const char* system : {"teamcity", "github", "azure"})
      told_.push_back(&static_cast<Told&>(log_.AddSink(std::make_unique<Told>(system, diagnostics_))));
    log_.AddBegin(1, "Build", 2);
    // Line by line, as a child's output comes: at line feeds only.
    const std::string text = ReadFile(kFolder + name + "/run.log");
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = text.find('\n', at);
      const InterfacePtr<IQXActionLogMessage> message = CreateLogMessage();
      message->AppendDetail(text.substr(at, end - at));
      log_.AddStatus(1, *message);
      at = end + 1;
    }
    log_.AddResult(1, "Build", succeeds_, 1.5);
    record_ = Record(name);
    log_.AddSummary(SummaryAsText(record_.summary), SummaryAsJson(record_.summary));
  }

  // The name of each file and what is to be in it.
  std::vector<std::pair<std::string, std::string>> Forms() const {
    return {{"report.html", HtmlReport(record_)}, {"report.json", JsonReport(record_)},
            {"report.xml", JunitReport(record_)}, {"report.sarif", SarifReport(record_)},
            {"teamcity.log", told_.at(0)->text},  {"github.log", told_.at(1)->text},
            {"azure.log", told_.at(2)->text}};
  }

 private:
  RunRecord Record(const std::string& name) {
    RunRecord record;
    recorder_.FillIn(record);
    record.project = "/src/" + name + ".xml";
    record.hostVersion = "1.0.0";
    record.started = std::chrono::sys_days(std::chrono::year(2026) / 11 / 22);
    record.outcome = succeeds_ ? RunOutcome::Succeeded : RunOutcome::ActionFailed;
    record.actions = {
        {1, "Build", succeeds_ ? ActionState::Succeeded : ActionState::Failed, 1.5, {}, {}, {}}};
    RunReport report;
    report.versions = {{"AssemblyVersion", "1.2.0.0", "1.2.1.0"}};
    record.summary = {
        succeeds_, 2, "", {{1, report}}, diagnostics_.Counts().errors, diagnostics_.Counts().warnings, 0};
    record.diagnostics = diagnostics_.Kept();
    record.projects = diagnostics_.Projects();
    return record;
  }

  bool succeeds_;
  ActionLog log_;
  DiagnosticLog& diagnostics_ = static_cast<DiagnosticLog&>(log_.AddSink(std::make_unique<DiagnosticLog>()));
  RunRecorder& recorder_ = static_cast<RunRecorder&>(log_.AddSink(std::make_unique<RunRecorder>()));
  std::vector<const Told*> told_;
  RunRecord record_;
};

class RecordedBuilds : public testing::TestWithParam<const char*> {};

TEST_P(RecordedBuilds, AreToldInEveryForm) {
  const std::string name = GetParam();
  const Build build(name);
  for (const auto& [file, text] : build.Forms()) {
    const std::string path = kFolder + name + "/" + file;
    if (ReadEnvironment("QX_WRITE_RECORDED")) ReplaceFile(path, text);
    EXPECT_EQ(text, ReadFile(path)) << path;
  }
}

INSTANTIATE_TEST_SUITE_P(Engines, RecordedBuilds,
                         testing::Values("devenv2003-passes", "devenv2003-fails", "devenv2005-passes",
                                         "devenv2005-fails", "msbuild-passes", "msbuild-fails",
                                         "xbuild-fails", "hostile-fails"));

}  // namespace
}  // namespace qx
