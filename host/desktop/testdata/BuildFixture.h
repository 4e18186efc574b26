// Builds beside the window: a project of tiny tasks, the thread that builds it, and what it left.
#pragma once

#include <chrono>
#include <thread>

#include "host/desktop/core/BuildThread.h"
#include "host/desktop/testdata/DesktopFixture.h"

namespace qx::desktop {

// Waits for what another thread or process does; false when it takes far too long.
template <class Condition>
bool Comes(Condition condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

inline std::string ReportOf(const BuildResult& result) { return TextOf(LinesOf(result.dryRun)); }

class BuildThreadTest : public DesktopTest {
 protected:
  BuildThreadTest() {
    build_.emplace(*host_, *log_, [this] { ++ended_; });
  }
  ~BuildThreadTest() override { build_.reset(); }

  // A saved project of tiny tasks, one for each list of assignments.
  void Project(const std::vector<std::vector<std::pair<std::string, std::string>>>& actions) {
    for (std::size_t i = 0; i < actions.size(); ++i) {
      const int index = static_cast<int>(i);
      Doc().Add("Tiny Task", index);
      for (const auto& [name, value] : actions[i]) Set(index, name, value);
    }
    Doc().SaveAs(folder_ / "p.xml");
  }
  BuildResult Build(BuildKind kind) {
    build_->Start(kind, Doc());
    return build_->Finish();
  }
  std::string States() const {
    const char letters[] = {'?', '-', 'r', 'S', 'F', 'T', 'I'};
    std::string states;
    for (int i = 0; i < document_->ActionCount(); ++i)
      states += letters[static_cast<std::size_t>(build_->StateOf(i))];
    return states;
  }
  std::string Log() const {
    std::string log;
    for (const std::string& line : memory_->Lines()) log += line + "\n";
    return log;
  }
  bool FileHas(const std::string& part) const {
    return folder_.Read("p.xml").find(part) != std::string::npos;
  }
  bool CountIsSaved(int count) const {
    return FileHas("<Property name=\"Count\">" + std::to_string(count) + "<");
  }

  std::atomic<int> ended_{0};
  std::optional<BuildThread> build_;
};

}  // namespace qx::desktop
