#include "tests/tinypackage/TinyAction.h"

#include <chrono>
#include <memory>
#include <thread>

#include "platform/files/Files.h"

namespace qx::tiny {

void TTinyAction::Create() {
  TQXAction::Create();
  text_ = "hello";
  seconds_ = 60;
  RegisterDynamicProperty("Count");
}

void TTinyAction::SetCount(std::int32_t value) {
  if (value < 0) throw Exception("Count cannot be negative");
  count_ = value;
}

void TTinyAction::SetFirstWord(const std::string& value) {
  const std::size_t blank = text_.find(' ');
  text_ = value + (blank == std::string::npos ? "" : text_.substr(blank));
}

std::string TTinyAction::GetPassword() { return DecryptString(sealed_, ""); }
void TTinyAction::SetPassword(const std::string& value) { sealed_ = EncryptString(value, ""); }

void TTinyAction::GetHiddenProperties(TStringList& names) const {
  TQXAction::GetHiddenProperties(names);
  names.Add("Seconds");
  names.Add("_Password");
}

void TTinyAction::SetVersions(const std::string& dotted) {
  if (dotted.find('.') == std::string::npos) throw Exception("\"" + dotted + "\" is no version");
  text_ = dotted;
}

void TTinyAction::BumpVersions(VersionPart part) {
  if (text_ == "full") throw Exception("Text is full");
  text_ += "+" + std::to_string(static_cast<int>(part));
}

std::string TTinyAction::WarnOfText(const std::string& property, const std::string& text) {
  return property == "Text" && text == "odd" ? "Text: even is meant" : "";
}

CheckReport TTinyAction::CheckRun() {
  CheckReport report;
  try {
    ExpandExpression(text_, true);
  } catch (const std::exception& error) {
    report.findings.push_back({CheckSeverity::Error, "Text", error.what(), "", "define it"});
  }
  if (text_ == "odd")
    report.findings.push_back({CheckSeverity::Warning, "Text", "It is odd", "tiny.txt", ""});
  report.projects.push_back({"Tiny", "tiny.txt", "Other", loud_, loud_ ? "" : "it is not loud"});
  for (const std::string& line : lines_.Items())
    report.stamps.push_back({line, "Tiny", "AssemblyInfo", "1.0.0.0", ""});
  return report;
}

bool TTinyAction::TakesFile(const std::string& file) { return file.ends_with(".tiny"); }

FromFileAnswer TTinyAction::SetUpFromFile(const FromFileRequest& request) {
  if (request.configuration == "none") throw Exception(request.file + " has no configuration \"none\"");
  text_ = request.file.substr(request.projectFolder.size());
  loud_ = request.stamps;
  lines_.Add(request.configuration);
  const bool hasLineFeeds = ReadFile(request.file).find('\n') != std::string::npos;
  return {{"Text: " + text_}, {"it is tiny"}, hasLineFeeds ? 1 : 0};
}

bool TTinyAction::Validate(IQXActionValidationError& errors) {
  if (verdict_ == TTinyVerdict::tvError) errors.AddError("Verdict", "The verdict is an error");
  if (verdict_ == TTinyVerdict::tvThrow) throw Exception("Validating threw");
  if (verdict_ == TTinyVerdict::tvHang) std::this_thread::sleep_for(std::chrono::seconds(seconds_));
  return verdict_ == TTinyVerdict::tvValid;
}

bool TTinyAction::Execute() {
  ++count_;
  SendMessage(ExpandExpression(text_, true));
  if (loud_) SendMessage("The password is " + GetPassword());
  if (lines_.Count() > 0) {
    const auto message = CreateStatusMessage();
    for (const std::string& line : lines_.Items()) message->AppendDetail(line);
    message->SetHeading("Lines");
    SendStatusMessage(message);
  }
  switch (deed_) {
    case TTinyDeed::tdSucceed:
      return true;
    case TTinyDeed::tdFail:
      return false;
    case TTinyDeed::tdThrow:
      throw Exception("The deed threw");
    case TTinyDeed::tdThrowNumber:
      throw 7;
    case TTinyDeed::tdSleep:
      if (!stop_.WaitFor(static_cast<unsigned>(seconds_) * 1000)) return true;
      SendMessage("Stopped");
      return false;
    case TTinyDeed::tdWrite:
      ReplaceFile("tiny.txt", text_ + "\n");
      return true;
    case TTinyDeed::tdRun:
      return RunProgram();
    case TTinyDeed::tdFlood:
      return Flood();
    case TTinyDeed::tdDeaf:
      std::this_thread::sleep_for(std::chrono::seconds(seconds_));
      return true;
  }
  return false;
}

// A thousand lines for each of the seconds, as fast as the log takes them.
bool TTinyAction::Flood() {
  for (int line = 1; line <= seconds_ * 1000; ++line) {
    if (stop_.WaitFor(0)) return false;
    SendMessage("Source/Folder/File.cs(" + std::to_string(line) + ",4): one more line of the flood");
  }
  return true;
}

// The items: the program, and its arguments as one string.
bool TTinyAction::RunProgram() {
  InterfacePtr<IQXProcess> process;
  CreateQXProcess(process);
  process->SetExecutable(lines_.Get(0));
  process->SetParameters(lines_.Get(1));
  process->SetRedirectOutput(true);
  process->SetHideWindow(true);
  process->SetStopEvent(&stop_);
  const int code = process->Execute();
  SendMessage("Exit code " + std::to_string(code));
  return code == 0;
}

void TTinyOptions::LoadOptions(IQXOptionsReader& reader) {
  TQXOptionsObject::LoadOptions(reader);
  greeting_ = reader.ReadString("Greeting", "hi");
  level_ = reader.ReadInteger("Level", 3);
}

void TTinyOptions::SaveOptions(IQXOptionsWriter& writer) {
  TQXOptionsObject::SaveOptions(writer);
  writer.WriteString("Greeting", greeting_);
  writer.WriteInteger("Level", level_);
}

void TTinyOptions::SetGreeting(const std::string& value) {
  if (greeting_ == value) return;
  greeting_ = value;
  SetModified();
}

void TTinyOptions::SetLevel(std::int32_t value) {
  if (level_ == value) return;
  level_ = value;
  SetModified();
}

const TQXActionClass& TinyActionClass() {
  using A = TTinyAction;
  static constexpr std::array properties{
      Property<&A::GetText, &A::SetText>("Text"),
      Property<&A::GetFirstWord, &A::SetFirstWord>("FirstWord", PropertyStorage::NotStored),
      Property<&A::GetCount, &A::SetCount>("Count"),
      Property<&A::GetSeconds, &A::SetSeconds>("Seconds"),
      Property<&A::GetDeed, &A::SetDeed>("Deed"),
      Property<&A::GetVerdict, &A::SetVerdict>("Verdict"),
      Property<&A::GetLoud, &A::SetLoud>("Loud"),
      Property<&A::GetLines, &A::SetLines>("Lines"),
      Property<&A::GetPassword, &A::SetPassword>("Password", PropertyStorage::Secret),
      Property<&A::GetSealedPassword, &A::SetSealedPassword>("_Password"),
  };
  static constexpr TQXActionClass tiny{"TTinyAction", [] { return std::string("Tiny Task"); }, properties,
                                       []() -> std::unique_ptr<TQXAction> { return std::make_unique<A>(); }};
  return tiny;
}

const TQXOptionsClass& TinyOptionsClass() {
  using O = TTinyOptions;
  static constexpr std::array properties{
      Property<&O::GetGreeting, &O::SetGreeting>("Greeting"),
      Property<&O::GetLevel, &O::SetLevel>("Level"),
  };
  static constexpr TQXOptionsClass tiny{
      "TTinyOptions",
      [] { return std::string("Tiny"); },
      [] { return std::string("Testing"); },
      [] { return std::string("TinyOptions"); },
      properties,
      []() -> std::unique_ptr<TQXOptionsObject> { return std::make_unique<O>(TinyOptionsClass()); }};
  return tiny;
}

}  // namespace qx::tiny
