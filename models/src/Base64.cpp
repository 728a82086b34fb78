#include "orivex/models/Base64.h"

#include <array>
#include <cstring>

namespace orivex {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The two characters of every 12-bit number: half as many steps as a character at a time.
constexpr auto pairs = [] {
  std::array<std::array<char, 2>, 4096> table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = {alphabet[i >> 6U], alphabet[i & 63U]};
  return table;
}();

constexpr std::uint32_t invalid = 1U << 24U;

/// What each character adds to the 24 bits of its group of four, by its place in the group. Anything outside the
/// alphabet adds the bit that no group can have.
constexpr auto groupBits = [] {
  std::array<std::array<std::uint32_t, 256>, 4> table{};
  for (auto& place : table) place.fill(invalid);
  for (std::uint32_t i = 0; i < alphabet.size(); ++i) {
    for (std::uint32_t place = 0; place < 4; ++place) {
      table[place][static_cast<unsigned char>(alphabet[i])] = i << (18U - 6U * place);
    }
  }
  return table;
}();

std::uint32_t groupOf(const char* text) {
  const auto at = [text](std::size_t place) { return groupBits[place][static_cast<unsigned char>(text[place])]; };
  return at(0) | at(1) | at(2) | at(3);
}

}  // namespace

std::string base64Encode(std::span<const std::uint8_t> bytes) {
  std::string text(base64Length(bytes.size()), '\0');
  base64Encode(bytes, text.data());
  return text;
}

void base64Encode(std::span<const std::uint8_t> bytes, char* out) {
  const auto write = [&out](std::uint32_t group) {
    std::memcpy(out, pairs[group >> 12U].data(), 2);
    std::memcpy(out + 2, pairs[group & 0xFFFU].data(), 2);
    out += 4;
  };
  const std::size_t whole = bytes.size() / 3 * 3;
  for (std::size_t i = 0; i < whole; i += 3) {
    write(std::uint32_t{bytes[i]} << 16U | std::uint32_t{bytes[i + 1]} << 8U | bytes[i + 2]);
  }
  const std::size_t rest = bytes.size() - whole;
  if (rest == 0) return;
  write(std::uint32_t{bytes[whole]} << 16U | (rest == 2 ? std::uint32_t{bytes[whole + 1]} << 8U : 0U));
  std::memset(out - (3 - rest), '=', 3 - rest);
}

std::optional<Bytes> base64Decode(std::string_view text) {
  if (text.empty()) return Bytes{};
  if (text.size() % 4 != 0) return std::nullopt;
  const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
  Bytes bytes(text.size() / 4 * 3 - padding);
  std::uint8_t* out = bytes.data();
  std::uint32_t seen = 0;
  const std::size_t whole = text.size() - (padding > 0 ? 4 : 0);
  for (std::size_t i = 0; i < whole; i += 4) {
    const std::uint32_t group = groupOf(text.data() + i);
    seen |= group;
    *out++ = static_cast<std::uint8_t>(group >> 16U);
    *out++ = static_cast<std::uint8_t>(group >> 8U);
    *out++ = static_cast<std::uint8_t>(group);
  }
  if (padding > 0) {
    std::array<char, 4> last{'A', 'A', 'A', 'A'};
    std::memcpy(last.data(), text.data() + whole, 4 - padding);
    const std::uint32_t group = groupOf(last.data());
    seen |= group;
    *out++ = static_cast<std::uint8_t>(group >> 16U);
    if (padding == 1) *out++ = static_cast<std::uint8_t>(group >> 8U);
    const std::uint32_t stray = group & (padding == 1 ? 0xFFU : 0xFFFFU);
    if (stray != 0) seen |= invalid;
  }
  if ((seen & invalid) != 0) return std::nullopt;
  return bytes;
}

}  // namespace orivex
