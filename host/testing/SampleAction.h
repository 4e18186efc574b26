// An action with one property of every kind, for tests of what carries properties about.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "plugin/Qxaction.h"

namespace qx {

enum class SampleColour { clGreen, clRed };
template <>
inline constexpr std::array<std::string_view, 2> ValueNames<SampleColour>{"clGreen", "clRed"};

class SampleAction : public TQXAction {
 public:
  std::string title;
  std::int32_t number = 0;
  bool wanted = false;
  SampleColour colour = SampleColour::clRed;
  std::string secret;
  TStringList parts;

  std::string GetTitle() const { return title; }
  void SetTitle(const std::string& value) { title = value; }
  std::int32_t GetNumber() const { return number; }
  void SetNumber(std::int32_t value) { number = value; }
  bool GetWanted() const { return wanted; }
  void SetWanted(bool value) { wanted = value; }
  SampleColour GetColour() const { return colour; }
  void SetColour(SampleColour value) { colour = value; }
  std::string GetDerived() const { return title + "!"; }
  void SetDerived(const std::string&) {}
  std::string GetSecret() const { return secret; }
  void SetSecret(const std::string& value) { secret = value; }
  TStringList GetParts() const { return parts; }
  void SetParts(const TStringList& value) { parts = value; }
};

inline const TQXActionClass& SampleActionClass() {
  using A = SampleAction;
  static constexpr std::array properties{
      Property<&A::GetTitle, &A::SetTitle>("Title"),
      Property<&A::GetNumber, &A::SetNumber>("Number"),
      Property<&A::GetWanted, &A::SetWanted>("Wanted"),
      Property<&A::GetColour, &A::SetColour>("Colour"),
      Property<&A::GetDerived, &A::SetDerived>("Derived", PropertyStorage::NotStored),
      Property<&A::GetSecret, &A::SetSecret>("Secret", PropertyStorage::Secret),
      Property<&A::GetParts, &A::SetParts>("Parts"),
  };
  static constexpr TQXActionClass sample{
      "TSampleAction", [] { return std::string("Sample"); }, properties,
      []() -> std::unique_ptr<TQXAction> { return std::make_unique<A>(); }};
  return sample;
}

}  // namespace qx
