#include "ColorProfile.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>
#include <vector>

namespace orivex::gtk {
namespace {

// Offsets and sizes of ICC.1:2010, which older and newer profiles share.
constexpr std::size_t headerBytes = 128;
constexpr std::size_t entryBytes = 12;
constexpr std::size_t signatureOffset = 36;
constexpr std::size_t colorSpaceOffset = 16;
constexpr std::size_t maximumTags = 100;

// A profile of a camera or display has a few kilobytes; those of printing presses are not for pictures to look at.
constexpr std::size_t maximumBytes = std::size_t{1} << 20U;

struct Field {
  std::ptrdiff_t offset;
  std::ptrdiff_t length;
};

// Header fields that say with what, when and for which device the profile was made, and what is reserved.
constexpr std::array<Field, 5> foreignFields{{{4, 4}, {24, 12}, {40, 4}, {48, 8}, {80, 48}}};

constexpr std::array<std::string_view, 17> colorTags{"rXYZ", "gXYZ", "bXYZ", "rTRC", "gTRC", "bTRC",
                                                     "kTRC", "wtpt", "bkpt", "chad", "A2B0", "A2B1",
                                                     "A2B2", "B2A0", "B2A1", "B2A2", "cicp"};

std::uint32_t number(std::span<const std::uint8_t> bytes, std::size_t offset) {
  return static_cast<std::uint32_t>(bytes[offset]) << 24U | static_cast<std::uint32_t>(bytes[offset + 1]) << 16U |
         static_cast<std::uint32_t>(bytes[offset + 2]) << 8U | bytes[offset + 3];
}

std::string_view text(std::span<const std::uint8_t> bytes, std::size_t offset, std::size_t length) {
  return {reinterpret_cast<const char*>(bytes.data()) + offset, length};
}

void append(std::string& out, std::size_t value) {
  for (const unsigned shift : {24U, 16U, 8U, 0U}) out.push_back(static_cast<char>(value >> shift & 0xFFU));
}

struct Tag {
  std::string_view signature;
  std::string_view data;
};

// The colour tags of the profile; nothing when its table does not fit into it.
std::vector<Tag> tagsOf(std::span<const std::uint8_t> profile) {
  const std::size_t count = number(profile, headerBytes);
  if (count > maximumTags || profile.size() < headerBytes + 4 + count * entryBytes) return {};
  std::vector<Tag> tags;
  for (std::size_t index = 0; index < count; ++index) {
    const auto entry = headerBytes + 4 + index * entryBytes;
    const std::size_t offset = number(profile, entry + 4);
    const std::size_t length = number(profile, entry + 8);
    if (offset > profile.size() || length > profile.size() - offset) return {};
    const auto signature = text(profile, entry, 4);
    if (std::find(colorTags.begin(), colorTags.end(), signature) == colorTags.end()) continue;
    tags.push_back({signature, text(profile, offset, length)});
  }
  return tags;
}

std::string plainHeader(std::span<const std::uint8_t> profile, std::size_t size) {
  std::string header;
  append(header, size);
  header += text(profile, 4, headerBytes - 4);
  for (const auto& field : foreignFields) std::fill_n(header.begin() + field.offset, field.length, '\0');
  return header;
}

}  // namespace

std::string colorsOfProfile(std::span<const std::uint8_t> profile, std::string_view colorSpace) {
  if (profile.size() < headerBytes + 4 || profile.size() > maximumBytes) return {};
  if (text(profile, signatureOffset, 4) != "acsp" || text(profile, colorSpaceOffset, 4) != colorSpace) return {};
  const auto tags = tagsOf(profile);
  if (tags.empty()) return {};

  std::string table;
  std::string data;
  std::map<std::pair<const char*, std::size_t>, std::size_t> written;  // tags may share their data
  append(table, tags.size());
  const auto dataOffset = headerBytes + 4 + tags.size() * entryBytes;
  for (const auto& tag : tags) {
    const auto [place, isNew] = written.try_emplace({tag.data.data(), tag.data.size()}, dataOffset + data.size());
    if (isNew) data.append(tag.data).append((4 - tag.data.size() % 4) % 4, '\0');
    table += tag.signature;
    append(table, place->second);
    append(table, tag.data.size());
    if (data.size() > maximumBytes) return {};
  }
  return plainHeader(profile, dataOffset + data.size()) + table + data;
}

}  // namespace orivex::gtk
