#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace orivex {

/// Whether a field of this type can be absent.
template <class Member>
inline constexpr bool canBeAbsent = false;
template <class Value>
inline constexpr bool canBeAbsent<std::optional<Value>> = true;
template <class Value>
inline constexpr bool canBeAbsent<std::shared_ptr<Value>> = true;

/// One line of a record's table: a key and the member that holds its value. Without a key whose member cannot be
/// absent there is no record.
template <class Record, class Member>
struct Field {
  std::string_view key;
  Member Record::*member;
  static constexpr bool isRequired = !canBeAbsent<Member>;
};

template <class Record, class Member>
consteval Field<Record, Member> field(std::string_view key, Member Record::*member) {
  return {key, member};
}

/// The table of a record: a tuple of `Field`, in the order in which the keys are written. Tables.h has them all.
template <class Record>
inline constexpr std::tuple<> fieldsOf{};

template <class Record>
inline constexpr std::size_t fieldCount = std::tuple_size_v<std::remove_cvref_t<decltype(fieldsOf<Record>)>>;

template <class Type>
concept HasFields = (fieldCount<Type> != 0);

/// Calls `visit` with every field of the record, in table order.
template <HasFields Record, class Visit>
constexpr void forEachField(Visit&& visit) {
  std::apply([&](const auto&... fields) { (visit(fields), ...); }, fieldsOf<Record>);
}

}  // namespace orivex
