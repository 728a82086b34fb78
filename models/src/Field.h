#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace orivex {

/// What a key means to its record: it may be left out, it must be there, or the field is no part of the JSON at all.
enum class Presence { optional, required, never };

/// One line of a record's table: a key, the field that holds its value, and whether the key must be there.
template <class Record, class Member>
struct Field {
  std::string_view key;
  Member Record::*member;
  Presence presence;
};

/// Whether a field of this type can be absent.
template <class Member>
inline constexpr bool canBeAbsent = false;
template <class Value>
inline constexpr bool canBeAbsent<std::optional<Value>> = true;
template <class Value>
inline constexpr bool canBeAbsent<std::shared_ptr<Value>> = true;

/// A key that may be left out.
template <class Record, class Member>
consteval Field<Record, Member> field(std::string_view key, Member Record::*member) {
  static_assert(canBeAbsent<Member>);
  return {key, member, Presence::optional};
}

/// A key without which there is no record.
template <class Record, class Member>
consteval Field<Record, Member> required(std::string_view key, Member Record::*member) {
  static_assert(!canBeAbsent<Member>);
  return {key, member, Presence::required};
}

/// A field that is neither read from JSON nor written to it.
template <class Record, class Member>
consteval Field<Record, Member> never(std::string_view key, Member Record::*member) {
  return {key, member, Presence::never};
}

/// The table of a record: a tuple of `Field`, in the order in which the keys are written. Tables.h has them all.
template <class Record>
inline constexpr std::tuple<> fieldsOf{};

template <class Record>
inline constexpr std::size_t fieldCount = std::tuple_size_v<std::remove_cvref_t<decltype(fieldsOf<Record>)>>;

template <class Type>
concept HasFields = fieldCount<Type> >
0;

/// Calls `visit` with the position of every field of the record that JSON holds, in table order, as
/// `std::integral_constant`: the field itself is `std::get<position>(fieldsOf<Record>)`.
template <class Record, class Visit>
constexpr void forEachField(Visit&& visit) {
  [&]<std::size_t... positions>(std::index_sequence<positions...>) {
    const auto visitOne = [&]<std::size_t position>(std::integral_constant<std::size_t, position> at) {
      if constexpr (std::get<position>(fieldsOf<Record>).presence != Presence::never) visit(at);
    };
    (visitOne(std::integral_constant<std::size_t, positions>{}), ...);
  }
  (std::make_index_sequence<fieldCount<Record>>{});
}

}  // namespace orivex
