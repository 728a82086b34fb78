#pragma once

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <string>

namespace orivex {

/// A file's bytes at any place. What lies beyond its end reads as nothing.
class FileBytes {
 public:
  explicit FileBytes(const std::string& path) : file_(path, std::ios::binary) {
    file_.seekg(0, std::ios::end);
    const auto end = static_cast<std::int64_t>(file_.tellg());
    size_ = std::max<std::int64_t>(end, 0);
  }

  std::int64_t size() const { return size_; }

  /// Up to `length` bytes at `at`; fewer at the end.
  std::string read(std::int64_t at, std::int64_t length) {
    if (at < 0 || at >= size_) return {};
    std::string bytes(static_cast<std::size_t>(std::clamp<std::int64_t>(length, 0, size_ - at)), '\0');
    file_.clear();
    file_.seekg(at);
    file_.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file_.gcount()));
    return bytes;
  }

  /// A number of up to eight bytes; 0 beyond the end.
  std::uint64_t number(std::int64_t at, int bytes) { return bigEndian(read(at, bytes)); }
  std::uint64_t littleNumber(std::int64_t at, int bytes) {
    auto text = read(at, bytes);
    std::reverse(text.begin(), text.end());
    return bigEndian(text);
  }

 private:
  static std::uint64_t bigEndian(const std::string& bytes) {
    std::uint64_t sum = 0;
    for (const char byte : bytes) sum = sum << 8U | static_cast<unsigned char>(byte);
    return sum;
  }

  std::ifstream file_;
  std::int64_t size_ = 0;
};

}  // namespace orivex
