// Stands in for MSTest.exe: the same switches, exit codes and results file. The "assembly" is a text file,
// one test a line: its name and how it ends ("Adds Passed", "Divides Failed"). Beside tests it may hold
// "wait" (the run takes for ever), and "damage" (the results file breaks off).
//   MSTest.exe /testcontainer:FILE [/resultsfile:FILE] [/runconfig:FILE]
// Exit codes: 0 every test that was run passed, 1 one did not, or the run could not begin. Like the real one
// it overwrites no results file, and finds relative names in the folder it was started in.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

struct Test {
  std::string name;
  std::string outcome;
};

struct Run {
  std::vector<Test> tests;
  bool waits = false;
  bool isDamaged = false;
};

int Complain(const std::string& text) {
  std::fprintf(stderr, "%s\n", text.c_str());
  return 1;
}

Run ReadContainer(std::istream& in) {
  Run run;
  for (std::string line; std::getline(in, line);) {
    std::istringstream words(line);
    Test test;
    words >> test.name >> test.outcome;
    if (test.name == "wait") run.waits = true;
    if (test.name == "damage") run.isDamaged = true;
    if (!test.outcome.empty()) run.tests.push_back(test);
  }
  return run;
}

std::string ResultsOf(const Run& run) {
  std::map<std::string, int> counts;
  std::string results;
  for (const Test& test : run.tests) {
    ++counts[test.outcome];
    results += "    <UnitTestResult executionId=\"e\" testId=\"t\" testName=\"" + test.name +
               "\" computerName=\"BUILDER\" duration=\"00:00:00.2500000\" "
               "startTime=\"2008-03-05T13:14:15.0000000+01:00\" "
               "endTime=\"2008-03-05T13:14:15.2500000+01:00\" outcome=\"" +
               test.outcome + "\" testListId=\"l\">\r\n    </UnitTestResult>\r\n";
  }
  const auto count = [&](const char* outcome) { return std::to_string(counts[outcome]); };
  const std::string outcome = counts["Failed"] > 0 ? "Failed" : "Completed";
  return "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
         "<TestRun id=\"5e1cf3f2-6b7f-4a4b-a3a5-6f9c54d0f9b5\" name=\"builder@BUILDER 2008-03-05 13:14:15\" "
         "runUser=\"BUILDER\\builder\" xmlns=\"http://microsoft.com/schemas/VisualStudio/TeamTest/2006\">\r\n"
         "  <ResultSummary outcome=\"" +
         outcome + "\">\r\n    <Counters total=\"" + std::to_string(run.tests.size()) + "\" passed=\"" +
         count("Passed") + "\" failed=\"" + count("Failed") + "\" notExecuted=\"" + count("NotExecuted") +
         "\" />\r\n  </ResultSummary>\r\n"
         "  <Times creation=\"2008-03-05T13:14:14.0000000+01:00\" "
         "queuing=\"2008-03-05T13:14:14.5000000+01:00\" "
         "start=\"2008-03-05T13:14:15.0000000+01:00\" finish=\"2008-03-05T13:14:16.5000000+01:00\" />\r\n"
         "  <Results>\r\n" +
         results + "  </Results>\r\n</TestRun>";
}

}  // namespace

int main(int argc, char** argv) {
  std::string container, results, configuration;
  const std::map<std::string, std::string*> switches{
      {"/testcontainer:", &container}, {"/resultsfile:", &results}, {"/runconfig:", &configuration}};
  std::printf("Microsoft (R) Test Execution Command Line Tool\n");
  std::printf("Folder: %s\n", std::filesystem::current_path().string().c_str());
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    const std::string name = argument.substr(0, argument.find(':') + 1);
    const auto known = switches.find(name);
    if (known == switches.end() || argument.size() == name.size())
      return Complain("Invalid switch \"" + argument + "\".");
    *known->second = argument.substr(name.size());
    std::printf("Argument: %s\n", argument.c_str());
  }
  std::ifstream in(container, std::ios::binary);
  if (!in) return Complain("File \"" + container + "\" not found");
  const Run run = ReadContainer(in);
  if (!configuration.empty() && !std::filesystem::exists(configuration)) {
    return Complain("Run configuration file \"" + configuration + "\" not found");
  }
  if (!results.empty() && std::filesystem::exists(results)) {
    return Complain("The results file \"" + results + "\" already exists.");
  }
  std::printf("Starting execution...\n");
  std::fflush(stdout);
  while (run.waits) std::this_thread::sleep_for(std::chrono::seconds(1));

  bool passed = true;
  for (const Test& test : run.tests) {
    std::printf("%-20s %s\n", test.outcome.c_str(), test.name.c_str());
    passed = passed && (test.outcome == "Passed" || test.outcome == "NotExecuted");
  }
  if (!results.empty()) {
    std::string text = ResultsOf(run);
    if (run.isDamaged) text.resize(text.size() / 2);
    std::ofstream(results, std::ios::binary) << text;
  }
  return passed ? 0 : 1;
}
