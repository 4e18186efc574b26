// Published properties: one table a class says which settings the host saves, shows and edits, in which
// order and under which names. Persistence, `show`, `set`, the property grid and the tests all read the
// same table. Header-only; tables are made with the functions at the end.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "plugin/Qxstrings.h"

namespace qx {

enum class PropertyKind { Text, Integer, Boolean, Enumeration, TextList };

// How far the host may write a property down. A secret is never written, printed or logged in clear.
enum class PropertyStorage { Stored, NotStored, Secret };

// An enumeration's value by its ordinal; its name stands in the property's `valueNames`.
struct EnumerationValue {
  std::int32_t ordinal = 0;
  friend bool operator==(const EnumerationValue&, const EnumerationValue&) = default;
};

using PropertyValue = std::variant<std::string, std::int32_t, bool, EnumerationValue, TStringList>;

// Root of every class with published properties.
class QX_API TPersistent {
 public:
  virtual ~TPersistent() = default;
};

struct PublishedProperty {
  std::string_view name;                         // persisted exactly so
  PropertyKind kind;                             // which alternative of PropertyValue get gives and set takes
  PropertyStorage storage;                       //
  std::span<const std::string_view> valueNames;  // of an enumeration, by ordinal
  PropertyValue (*get)(TPersistent&);            // may have side effects: some getters rewrite a neighbour
  void (*set)(TPersistent&, const PropertyValue&);
};

using PropertyTable = std::span<const PublishedProperty>;

namespace detail {

template <class Member>
struct MemberOf;
template <class R, class C>
struct MemberOf<R (C::*)()> {
  using Class = C;
  using Result = std::remove_cvref_t<R>;
};
template <class R, class C>
struct MemberOf<R (C::*)() const> : MemberOf<R (C::*)()> {};

template <class Value>
constexpr PropertyKind KindOf() {
  if constexpr (std::is_same_v<Value, bool>)
    return PropertyKind::Boolean;
  else if constexpr (std::is_enum_v<Value>)
    return PropertyKind::Enumeration;
  else if constexpr (std::is_integral_v<Value>)
    return PropertyKind::Integer;
  else if constexpr (std::is_same_v<Value, TStringList>)
    return PropertyKind::TextList;
  else
    return PropertyKind::Text;
}

}  // namespace detail

// The names of an enumeration's values by ordinal. Specialise it beside the enumeration:
//   template <> inline constexpr std::array<std::string_view, 3> ValueNames<TVSDotNetVersion>{"vs2002", ...};
template <class Enumeration>
inline constexpr std::array<std::string_view, 0> ValueNames{};

// One row: Property<&TAction::GetSolution, &TAction::SetSolution>("Solution").
template <auto Getter, auto Setter>
constexpr PublishedProperty Property(std::string_view name,
                                     PropertyStorage storage = PropertyStorage::Stored) {
  using Class = typename detail::MemberOf<decltype(Getter)>::Class;
  using Value = typename detail::MemberOf<decltype(Getter)>::Result;
  PublishedProperty row{name, detail::KindOf<Value>(), storage, {}, nullptr, nullptr};
  if constexpr (std::is_enum_v<Value>) row.valueNames = ValueNames<Value>;
  row.get = [](TPersistent& object) -> PropertyValue {
    auto& self = dynamic_cast<Class&>(object);
    if constexpr (std::is_enum_v<Value>)
      return EnumerationValue{static_cast<std::int32_t>((self.*Getter)())};
    else
      return Value((self.*Getter)());
  };
  row.set = [](TPersistent& object, const PropertyValue& value) {
    auto& self = dynamic_cast<Class&>(object);
    if constexpr (std::is_enum_v<Value>)
      (self.*Setter)(static_cast<Value>(std::get<EnumerationValue>(value).ordinal));
    else
      (self.*Setter)(std::get<Value>(value));
  };
  return row;
}

}  // namespace qx
