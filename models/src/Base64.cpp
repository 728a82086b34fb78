#include "orivex/models/Base64.h"

#include <array>
#include <cstddef>

namespace orivex {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t invalid = 64;

/// The six bits that each character stands for. Padding stands for zeros.
constexpr auto sextets = [] {
  std::array<std::uint8_t, 256> table{};
  table.fill(invalid);
  std::uint8_t next = 0;
  for (const char c : alphabet) table[static_cast<unsigned char>(c)] = next++;
  table['='] = 0;
  return table;
}();

}  // namespace

void appendBase64(std::string& text, std::span<const std::uint8_t> bytes) {
  const std::size_t start = text.size();
  text.resize(start + (bytes.size() + 2) / 3 * 4, '=');
  char* out = text.data() + start;
  const auto write = [&out](std::uint32_t group, unsigned characters) {
    for (unsigned i = 0; i < characters; ++i) *out++ = alphabet[group >> (18 - 6 * i) & 63U];
  };
  const std::size_t whole = bytes.size() / 3 * 3;
  for (std::size_t i = 0; i < whole; i += 3) {
    write(std::uint32_t{bytes[i]} << 16U | std::uint32_t{bytes[i + 1]} << 8U | bytes[i + 2], 4);
  }
  const auto rest = bytes.subspan(whole);
  if (rest.size() == 1) write(std::uint32_t{rest[0]} << 16U, 2);
  if (rest.size() == 2) write(std::uint32_t{rest[0]} << 16U | std::uint32_t{rest[1]} << 8U, 3);
}

std::string base64Encode(std::span<const std::uint8_t> bytes) {
  std::string text;
  appendBase64(text, bytes);
  return text;
}

std::optional<Bytes> base64Decode(std::string_view text) {
  const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
  if (text.size() % 4 != 0 || text.find('=') < text.size() - padding) return std::nullopt;
  Bytes bytes(text.size() / 4 * 3);
  std::uint8_t* out = bytes.data();
  std::uint32_t seen = 0;
  for (std::size_t i = 0; i < text.size(); i += 4) {
    std::uint32_t group = 0;
    for (const char c : text.substr(i, 4)) {
      const std::uint32_t sextet = sextets[static_cast<unsigned char>(c)];
      group = group << 6U | sextet;
      seen |= sextet;
    }
    *out++ = static_cast<std::uint8_t>(group >> 16U);
    *out++ = static_cast<std::uint8_t>(group >> 8U);
    *out++ = static_cast<std::uint8_t>(group);
  }
  if ((seen & invalid) != 0) return std::nullopt;
  for (std::size_t i = 0; i < padding; ++i) {
    if (bytes.back() != 0) return std::nullopt;  // stray bits before the padding
    bytes.pop_back();
  }
  return bytes;
}

}  // namespace orivex
