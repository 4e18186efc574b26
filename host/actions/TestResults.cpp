#include "host/actions/TestResults.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <map>
#include <pugixml.hpp>
#include <system_error>
#include <unordered_map>

#include "platform/Texts.h"
#include "platform/files/Files.h"
#include "platform/files/Paths.h"

namespace qx {
namespace {

// By their numbers in the format of 2005. An outcome that is not written is the first one.
constexpr std::array<std::string_view, 14> kOutcomes{
    "Error",       "Failed",       "Timeout", "Aborted", "Inconclusive", "PassedButRunAborted", "NotRunnable",
    "NotExecuted", "Disconnected", "Warning", "Passed",  "Completed",    "InProgress",          "Pending"};
constexpr std::array<std::string_view, 3> kNotRun{"NotExecuted", "NotRunnable", "Pending"};

// The name without the prefix of its namespace.
std::string_view LocalName(pugi::xml_node node) {
  const std::string_view name = node.name();
  return name.substr(name.find(':') + 1);
}

pugi::xml_node Child(pugi::xml_node parent, std::string_view name) {
  return parent.find_child([&](pugi::xml_node node) { return LocalName(node) == name; });
}

// Counts outcomes in the order in which they first come; a file may name as many as it likes.
class Tally {
 public:
  explicit Tally(TestResults& results) : results_(results) {}
  void Add(std::string outcome, std::int64_t count) {
    std::erase_if(outcome, [](char c) { return static_cast<unsigned char>(c) < ' '; });
    const auto [place, isNew] = places_.try_emplace(outcome, results_.outcomes.size());
    if (isNew) results_.outcomes.emplace_back(std::move(outcome), 0);
    results_.outcomes[place->second].second += count;
  }

 private:
  TestResults& results_;
  std::unordered_map<std::string, std::size_t> places_;
};

// Reads a number of one part of a text and drops it with the mark behind it.
bool TakeNumber(std::string_view& text, double& number) {
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, std::chars_format::fixed);
  if (error != std::errc() || !std::isfinite(number)) return false;
  text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
  return true;
}

bool TakeMark(std::string_view& text, char mark) {
  if (text.empty() || text[0] != mark) return false;
  text.remove_prefix(1);
  return true;
}

// "13:14:15.25", "2.13:14:15.25" (with days in front).
std::optional<double> ReadClock(std::string_view text) {
  double days = 0, hours = 0, minutes = 0, seconds = 0;
  const std::size_t point = text.find('.');
  if (point < text.find(':')) {
    const std::string_view whole = text.substr(0, point);
    if (std::from_chars(whole.data(), whole.data() + whole.size(), days).ec != std::errc() ||
        !std::isfinite(days)) {
      return std::nullopt;
    }
    text.remove_prefix(point + 1);
  }
  if (!TakeNumber(text, hours) || !TakeMark(text, ':') || !TakeNumber(text, minutes) ||
      !TakeMark(text, ':') || !TakeNumber(text, seconds)) {
    return std::nullopt;
  }
  return ((days * 24 + hours) * 60 + minutes) * 60 + seconds;
}

// "2008-03-05T13:14:15.25+01:00" in seconds since some day.
std::optional<double> ReadTime(std::string_view text) {
  const std::size_t mark = text.find('T');
  if (mark != 10) return std::nullopt;
  int year = 0;
  unsigned month = 0, day = 0;
  const char* const data = text.data();
  if (std::from_chars(data, data + 4, year).ptr != data + 4 ||
      std::from_chars(data + 5, data + 7, month).ptr != data + 7 ||
      std::from_chars(data + 8, data + 10, day).ptr != data + 10) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                         std::chrono::day(day)};
  if (!date.ok()) return std::nullopt;
  const std::string_view clock = text.substr(mark + 1);
  const std::size_t zone = clock.find_first_of("+-Z");
  const auto time = ReadClock(clock.substr(0, zone));
  if (!time) return std::nullopt;
  double offset = 0;
  if (zone != std::string_view::npos && clock[zone] != 'Z') {
    const auto shift = ReadClock(std::string(clock.substr(zone + 1)) + ":0");
    if (!shift) return std::nullopt;
    offset = clock[zone] == '-' ? -*shift : *shift;
  }
  return static_cast<double>(std::chrono::sys_days(date).time_since_epoch().count()) * 86400 + *time - offset;
}

// One test's duration joins those of the tests before it.
void AddDuration(TestResults& results, std::string_view text) {
  if (const auto seconds = ReadClock(text)) results.seconds = results.seconds.value_or(0) + *seconds;
}

constexpr std::size_t kMostTests = 100'000;

// Both formats have the same elements for it: <ErrorInfo> with <Message> and <StackTrace>, once in lower case.
void AddTest(TestResults& results, TestCase test, pugi::xml_node errorInfo) {
  if (results.tests.size() >= kMostTests) return;
  for (const pugi::xml_node part : errorInfo.children()) {
    const std::string_view name = LocalName(part);
    if (SameText(name, "Message")) test.message = part.child_value();
    if (SameText(name, "StackTrace")) test.trace = part.child_value();
  }
  results.tests.push_back(std::move(test));
}

// The format of 2005: <Tests> holds every result as an element of its own, outcomes by their numbers.
TestResults ReadOldFormat(pugi::xml_node root) {
  TestResults results;
  Tally tally(results);
  for (const pugi::xml_node result : root.children()) {
    const pugi::xml_node number = Child(Child(result, "outcome"), "value__");
    if (!LocalName(result).ends_with("Result") || !number) continue;
    const auto index = ToInteger(Trim(number.child_value()));
    const bool isKnown = index && *index >= 0 && *index < static_cast<int>(kOutcomes.size());
    const std::string outcome =
        isKnown ? std::string(kOutcomes[static_cast<std::size_t>(*index)]) : number.child_value();
    tally.Add(outcome, 1);
    const std::string duration = Trim(Child(result, "duration").child_value());
    AddDuration(results, duration);
    AddTest(results,
            {Child(result, "testName").child_value(), "", outcome, ReadClock(duration).value_or(0), "", ""},
            Child(result, "errorInfo"));
  }
  return results;
}

// The counters of a run whose tests are not listed.
void ReadCounters(pugi::xml_node counters, TestResults& results) {
  Tally tally(results);
  for (const pugi::xml_attribute counter : counters.attributes()) {
    std::string name = counter.name();
    const auto count = ToInteger(counter.value());
    if (name.empty() || name == "total" || name == "executed" || !count || *count == 0) continue;
    name[0] = UpperCase(name.substr(0, 1))[0];
    tally.Add(name, *count);
  }
}

// The class of each test, by the test's identifier: "Shop.Tests.Prices" of "Shop.Tests.Prices, Tests, Version=...".
std::map<std::string_view, std::string> ClassesOf(pugi::xml_node root) {
  std::map<std::string_view, std::string> classes;
  for (const pugi::xml_node test : Child(root, "TestDefinitions").children()) {
    const std::string_view name = Child(test, "TestMethod").attribute("className").value();
    classes.emplace(test.attribute("id").value(), Trim(name.substr(0, name.find(','))));
  }
  return classes;
}

TestResults ReadFormat(pugi::xml_node root) {
  TestResults results;
  Tally tally(results);
  const std::map<std::string_view, std::string> classes = ClassesOf(root);
  for (const pugi::xml_node result : Child(root, "Results").children()) {
    if (result.type() != pugi::node_element) continue;
    tally.Add(result.attribute("outcome").as_string(kOutcomes[0].data()), 1);
    AddDuration(results, result.attribute("duration").value());
    const auto found = classes.find(result.attribute("testId").value());
    AddTest(results,
            {result.attribute("testName").value(), found == classes.end() ? "" : found->second,
             result.attribute("outcome").as_string(kOutcomes[0].data()),
             ReadClock(result.attribute("duration").value()).value_or(0), "", ""},
            Child(Child(result, "Output"), "ErrorInfo"));
  }
  if (results.outcomes.empty()) ReadCounters(Child(Child(root, "ResultSummary"), "Counters"), results);
  const pugi::xml_node times = Child(root, "Times");
  const auto start = ReadTime(times.attribute("start").value());
  const auto finish = ReadTime(times.attribute("finish").value());
  if (start && finish && *finish >= *start) results.seconds = *finish - *start;
  return results;
}

bool IsRunning(std::string_view outcome) {
  for (const std::string_view other : kNotRun) {
    if (outcome == other) return false;
  }
  return true;
}

bool IsResults(pugi::xml_node root) { return LocalName(root) == "TestRun" || LocalName(root) == "Tests"; }

// Time and size of the file, empty when there is none.
std::string StateOf(const std::string& path) {
  const std::string existing = FindExisting(path);
  if (existing.empty()) return {};
  const std::filesystem::path file(ToUtf16(existing));
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  const auto time = std::filesystem::last_write_time(file, error);
  return std::to_string(time.time_since_epoch().count()) + " " + std::to_string(size);
}

// The expanded name of the results file, empty when the action names none.
std::string ResultsFileOf(TQXAction& action) {
  if (action.GetActionClass() == nullptr) return {};
  for (const PublishedProperty& property : action.GetActionClass()->properties) {
    if (property.name != "OutputFileName" || property.kind != PropertyKind::Text) continue;
    try {
      return action.ExpandExpression(std::get<std::string>(property.get(action)), false);
    } catch (const Exception&) {
      return {};  // the action itself will say so
    }
  }
  return {};
}

}  // namespace

std::int64_t TestResults::Count(std::string_view outcome) const {
  for (const auto& [name, count] : outcomes) {
    if (name == outcome) return count;
  }
  return 0;
}

TestResults ParseTestResults(std::string_view text) {
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_buffer(text.data(), text.size());
  if (!parsed) throw Exception(parsed.description());
  const pugi::xml_node root = document.document_element();
  if (!IsResults(root)) throw Exception("It holds no test run");
  return LocalName(root) == "Tests" ? ReadOldFormat(root) : ReadFormat(root);
}

std::string SummaryOf(const TestResults& results) {
  std::int64_t run = 0;
  std::string others;
  for (const auto& [name, count] : results.outcomes) {
    if (IsRunning(name)) run += count;
    if (name != "Passed" && name != "Failed") others += ", " + std::to_string(count) + " " + name;
  }
  if (run == 0) return "Test results: no test was executed" + others;
  std::string line = "Test results: " + std::to_string(results.Count("Passed")) + " passed, " +
                     std::to_string(results.Count("Failed")) + " failed" + others;
  if (results.seconds) {
    // Not printf: that writes a comma where the program's locale does.
    char text[400];  // the largest number has 309 digits before the point
    const auto end = std::to_chars(text, std::end(text), *results.seconds, std::chars_format::fixed, 3).ptr;
    line += " in " + std::string(text, end) + " s";
  }
  return line;
}

ResultsFileWatch::ResultsFileWatch(TQXAction& action, const std::string& startingFolder) {
  const std::string name = ResultsFileOf(action);
  if (name.empty()) return;
  path_ = ExpandPath(startingFolder, name);
  state_ = StateOf(path_);
}

ResultsFileWatch::Written ResultsFileWatch::Report() const {
  if (path_.empty()) return {};
  const std::string state = StateOf(path_);
  if (state.empty() || state == state_) return {};
  try {
    TestResults results = ParseTestResults(ReadFile(path_));
    return {SummaryOf(results), std::move(results.tests)};
  } catch (const Exception& failure) {
    if (!SameText(ExtensionOf(path_), ".trx")) return {};
    return {"Test results: " + path_ + " cannot be read: " + failure.Message(), {}};
  }
}

}  // namespace qx
