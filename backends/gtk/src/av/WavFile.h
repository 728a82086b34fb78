#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <system_error>
#include <variant>

namespace orivex::gtk {

/// Linear PCM, signed, little-endian and of 16 bits.
struct PcmFormat {
  int rate = 16000;  ///< frames per second
  int channels = 1;

  /// Bytes.
  int frameSize() const { return channels * 2; }
};

/// A WAV file that grows. Its header is right after every call: whenever the process ends, what was recorded until
/// then can be played. Any thread, one at a time.
class WavFile {
 public:
  /// Makes a file that only its owner can read; a failure when there is one already.
  static std::variant<WavFile, std::error_code> create(const std::string& path, const PcmFormat& format);

  WavFile(WavFile&& other) noexcept;
  WavFile& operator=(WavFile&&) = delete;
  WavFile(const WavFile&) = delete;
  WavFile& operator=(const WavFile&) = delete;
  ~WavFile() { close(); }

  /// Adds whole frames. No error on success, else why not all of them are in the file.
  std::error_code append(std::span<const std::byte> frames);

  /// Nothing can be added after this.
  void close();

 private:
  WavFile(int descriptor, const PcmFormat& format) : descriptor_(descriptor), format_(format) {}

  std::error_code writeAt(std::uint64_t position, std::span<const std::byte> bytes, std::uint64_t& written) const;
  std::error_code writeHeader() const;

  int descriptor_;
  PcmFormat format_;
  std::uint64_t size_ = 0;  // of the frames, in bytes
};

}  // namespace orivex::gtk
