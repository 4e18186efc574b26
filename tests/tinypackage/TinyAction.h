// A second, tiny package: one action with a property of every kind and one options object. It proves that the
// host knows no names of the first, and lets tests log, fail, throw, sleep, write and run at will.
#pragma once

#include <array>
#include <string>

#include "plugin/Qxaction.h"
#include "plugin/Qxcheck.h"
#include "plugin/Qxfromfile.h"
#include "plugin/Qxoptions.h"
#include "plugin/Qxprocess.h"
#include "plugin/Qxversions.h"

namespace qx::tiny {

// What Execute does after it has logged the text and raised the count.
enum class TTinyDeed { tdSucceed, tdFail, tdThrow, tdThrowNumber, tdSleep, tdWrite, tdRun, tdFlood, tdDeaf };
enum class TTinyVerdict { tvValid, tvError, tvSilent, tvThrow, tvHang };

class TTinyAction : public AnswersUncounted<IQXVersions, IQXCheck, IQXFromFile>, public TQXAction {
 public:
  // One version, the text; the text "odd" is warned of, and "full" cannot be raised.
  std::vector<ActionVersion> GetVersions() override { return {{"Text", text_}}; }
  void SetVersions(const std::string& dotted) override;
  void BumpVersions(VersionPart part) override;
  std::string WarnOfText(const std::string& property, const std::string& text) override;
  // An error when the text cannot be expanded, a warning of "odd"; each of the lines is a file to be stamped.
  CheckReport CheckRun() override;
  // Works on any file.tiny: its name becomes the text, the configuration a line.
  bool TakesFile(const std::string& file) override;
  FromFileAnswer SetUpFromFile(const FromFileRequest& request) override;

  void Create() override;
  bool Execute() override;
  bool Validate(IQXActionValidationError& errors) override;
  void TerminateAction() override { stop_.SetEvent(); }
  bool CanTerminate() const override { return true; }
  void GetHiddenProperties(TStringList& names) const override;

  const std::string& GetText() const { return text_; }
  void SetText(const std::string& value) { text_ = value; }
  std::int32_t GetCount() const { return count_; }
  void SetCount(std::int32_t value);  // raises for a negative one
  std::int32_t GetSeconds() const { return seconds_; }
  void SetSeconds(std::int32_t value) { seconds_ = value; }
  TTinyDeed GetDeed() const { return deed_; }
  void SetDeed(TTinyDeed value) { deed_ = value; }
  TTinyVerdict GetVerdict() const { return verdict_; }
  void SetVerdict(TTinyVerdict value) { verdict_ = value; }
  bool GetLoud() const { return loud_; }
  void SetLoud(bool value) { loud_ = value; }
  const TStringList& GetLines() const { return lines_; }
  void SetLines(const TStringList& value) { lines_ = value; }
  // A view of the text, as some properties are views of others.
  std::string GetFirstWord() const { return text_.substr(0, text_.find(' ')); }
  void SetFirstWord(const std::string& value);
  // The clear form of what is kept encrypted.
  std::string GetPassword();
  void SetPassword(const std::string& value);
  const std::string& GetSealedPassword() const { return sealed_; }
  void SetSealedPassword(const std::string& value) { sealed_ = value; }

 private:
  bool RunProgram();
  bool Flood();

  std::string text_;
  std::int32_t count_ = 0;
  std::int32_t seconds_ = 0;
  TTinyDeed deed_ = TTinyDeed::tdSucceed;
  TTinyVerdict verdict_ = TTinyVerdict::tvValid;
  bool loud_ = false;
  TStringList lines_;
  std::string sealed_;
  TEvent stop_;
};

class TTinyOptions : public TQXOptionsObject {
 public:
  using TQXOptionsObject::TQXOptionsObject;
  void LoadOptions(IQXOptionsReader& reader) override;
  void SaveOptions(IQXOptionsWriter& writer) override;

  const std::string& GetGreeting() const { return greeting_; }
  void SetGreeting(const std::string& value);
  std::int32_t GetLevel() const { return level_; }
  void SetLevel(std::int32_t value);

 private:
  std::string greeting_;
  std::int32_t level_ = 0;
};

const TQXActionClass& TinyActionClass();
const TQXOptionsClass& TinyOptionsClass();

}  // namespace qx::tiny

namespace qx {
template <>
inline constexpr std::array<std::string_view, 9> ValueNames<tiny::TTinyDeed>{
    "tdSucceed", "tdFail", "tdThrow", "tdThrowNumber", "tdSleep", "tdWrite", "tdRun", "tdFlood", "tdDeaf"};
template <>
inline constexpr std::array<std::string_view, 5> ValueNames<tiny::TTinyVerdict>{
    "tvValid", "tvError", "tvSilent", "tvThrow", "tvHang"};
}  // namespace qx
