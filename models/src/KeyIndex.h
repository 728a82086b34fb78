#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "Field.h"

namespace orivex {

/// Finds the position of a key in a record's table with one hash and one comparison. The hash looks at the key's length
/// and five of its characters; the multiplier that sends every key of the record to a slot of its own is searched for
/// while compiling.
template <class Record>
class KeyIndex {
 public:
  static constexpr std::size_t notFound = 0xFF;
  static_assert(fieldCount<Record> < notFound);

  consteval KeyIndex() {
    for (std::uint64_t seed = 1; !place(seed); ++seed) {
      if (seed > 1'000) throw std::logic_error("two keys of the record look alike to the hash");
    }
  }

  /// The key's position, or `notFound` for a key that the record does not know.
  constexpr std::size_t find(std::string_view key) const {
    if (key.empty()) return notFound;
    const std::size_t at = slots[slotOf(key)];
    return at != notFound && keys[at] == key ? at : notFound;
  }

 private:
  constexpr std::size_t slotOf(std::string_view key) const {
    const auto byte = [&](std::size_t at) { return static_cast<std::uint64_t>(static_cast<unsigned char>(key[at])); };
    const std::size_t size = key.size();
    const std::uint64_t mixed = size + (byte(0) << 8) + (byte(size / 8) << 16) + (byte(size / 2) << 24) +
                                (byte(size * 3 / 4) << 32) + (byte(size - 1) << 40);
    return static_cast<std::size_t>((mixed * multiplier) >> 56);
  }

  consteval bool place(std::uint64_t seed) {
    multiplier = seed * 0x9E3779B97F4A7C15U | 1U;
    slots.fill(notFound);
    bool distinct = true;
    forEachField<Record>([&](auto at) {
      keys[at] = std::get<at>(fieldsOf<Record>).key;
      std::uint8_t& slot = slots[slotOf(keys[at])];
      distinct = distinct && slot == notFound;
      slot = static_cast<std::uint8_t>(at);
    });
    return distinct;
  }

  std::uint64_t multiplier = 0;
  std::array<std::uint8_t, 256> slots{};
  std::array<std::string_view, fieldCount<Record>> keys{};
};

}  // namespace orivex
