// A host with the tiny package and an action class of the tests' own, a folder, and the real qxhost beside it.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/actions/PropertyText.h"
#include "host/desktop/core/Document.h"
#include "host/system/HostProgram.h"
#include "host/testing/TestFolder.h"
#include "platform/files/Paths.h"
#include "plugin/Qxrunplaces.h"
#include "plugin/Qxrunreport.h"
#include "tests/support/RunProgram.h"

namespace qx::desktop {

// An action whose setters meddle with their neighbours, and which does what the test says.
class Probe : public AnswersUncounted<IQXRunPlaces, IQXRunReport>, public TQXAction {
 public:
  std::vector<std::string> GetWorkFolders() override { return folders; }
  std::vector<std::string> GetInputFiles() override { return {}; }
  RunReport ReportRun(bool) override { return report; }

  const std::string& GetName() const { return name_; }
  void SetName(const std::string& value) {
    name_ = value;
    length_ = static_cast<std::int32_t>(value.size());
    if (value == "half") throw Exception("No half names");
  }
  std::int32_t GetLength() const { return length_; }
  void SetLength(std::int32_t value) { length_ = value; }
  std::int32_t GetUpdates() const { return updates_; }
  void SetUpdates(std::int32_t value) { updates_ = value; }
  void Updated() override { ++updates_; }
  bool Validate(IQXActionValidationError&) override { return validate ? validate(*this) : true; }
  bool Execute() override { return execute ? execute(*this) : true; }
  void TerminateAction() override {
    wasStopped_ = true;
    ++terminated;
  }
  bool WasStopped() const { return wasStopped_; }

  static inline std::function<bool(Probe&)> validate;
  static inline std::function<bool(Probe&)> execute;
  static inline std::atomic<int> terminated{0};
  static inline std::vector<std::string> folders;
  static inline RunReport report;

 private:
  std::string name_;
  std::int32_t length_ = 0;
  std::int32_t updates_ = 0;
  std::atomic<bool> wasStopped_{false};
};

inline const TQXActionClass& ProbeClass() {
  static constexpr std::array properties{Property<&Probe::GetName, &Probe::SetName>("Name"),
                                         Property<&Probe::GetLength, &Probe::SetLength>("Length"),
                                         Property<&Probe::GetUpdates, &Probe::SetUpdates>("Updates")};
  static constexpr TQXActionClass probe{
      "TProbe", [] { return std::string("Probe"); }, properties,
      []() -> std::unique_ptr<TQXAction> { return std::make_unique<Probe>(); }};
  return probe;
}

class DesktopTest : public testing::Test {
 protected:
  using Words = std::vector<std::string>;

  explicit DesktopTest(const std::string& package = "testpackages/tiny")
      : package_(std::string(QX_BINARY_DIR) + "/" + package + QX_LIBRARY_ENDING),
        before_(std::filesystem::current_path()) {
    Host::Settings settings;
    settings.packageFiles = {package_};
    settings.optionsFile = folder_ / "options.xml";
    host_.emplace(std::move(settings));
    host_->Packages().RegisterAction(ProbeClass(), "Probe", "Testing", "");
    auto memory = std::make_unique<MemorySink>();
    memory_ = memory.get();
    log_.emplace();
    log_->AddSink(std::move(memory));
    document_.emplace(*host_, *log_);
  }
  ~DesktopTest() override {
    document_.reset();
    Probe::validate = nullptr;
    Probe::execute = nullptr;
    Probe::terminated = 0;
    std::filesystem::current_path(before_);  // its folder can go then
  }

  Document& Doc() { return *document_; }
  std::string Text() { return document_->Project().TextToSave(); }
  void Set(int index, const std::string& name, const std::string& value) {
    const PublishedProperty& property =
        NeedProperty(document_->Action(index)->GetActionClass()->properties, name);
    document_->SetProperty(index, property, PropertyFromText(property, value));
  }
  std::string Get(int index, const std::string& name) {
    TQXAction& action = *document_->Action(index);
    const PublishedProperty& property = NeedProperty(action.GetActionClass()->properties, name);
    return PropertyToText(property, property.get(action));
  }
  std::string Types() const {
    std::string types;
    for (int i = 0; i < document_->ActionCount(); ++i)
      types += (i == 0 ? "" : ",") + document_->ActionType(i);
    return types;
  }
  // The real qxhost with these words and the same package.
  void QxHost(Words words) const {
    words.insert(words.begin(), {"--package", package_, "--options", folder_ / "options.xml"});
    const test::ProgramResult result =
        test::RunProgram(std::string(QX_BINARY_DIR) + "/qxhost" + QX_PROGRAM_ENDING, words, folder_.Path());
    ASSERT_EQ(result.code, 0) << result.err;
  }

  TestFolder folder_;
  std::string package_;
  std::filesystem::path before_;
  std::optional<Host> host_;
  std::optional<ActionLog> log_;
  MemorySink* memory_ = nullptr;
  std::optional<Document> document_;
};

}  // namespace qx::desktop
