#include "WavFile.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace orivex::gtk {
namespace {

// RIFF header, format chunk and the head of the data chunk (Multimedia Programming Interface and Data Specifications
// 1.0, 1991).
constexpr std::size_t headerSize = 44;
constexpr std::size_t riffHeadSize = 8;
constexpr std::uint32_t formatChunkSize = 16;
constexpr std::uint16_t linearPcm = 1;

// The sizes in the header have 32 bits.
constexpr std::uint64_t largestSize = std::numeric_limits<std::uint32_t>::max() - headerSize;

class HeaderWriter {
 public:
  HeaderWriter& text(const char (&code)[5]) { return copy(code, 4); }
  template <class Integer>
  HeaderWriter& number(Integer value) {
    static_assert(std::endian::native == std::endian::little);
    return copy(&value, sizeof value);
  }
  const std::array<std::byte, headerSize>& bytes() const { return bytes_; }

 private:
  HeaderWriter& copy(const void* data, std::size_t size) {
    std::memcpy(bytes_.data() + end_, data, size);
    end_ += size;
    return *this;
  }

  std::array<std::byte, headerSize> bytes_{};
  std::size_t end_ = 0;
};

std::error_code errorOf(int error) {
  return {error, std::generic_category()};
}

}  // namespace

std::variant<WavFile, std::error_code> WavFile::create(const std::string& path, const PcmFormat& format) {
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (descriptor < 0) return errorOf(errno);
  WavFile file(descriptor, format);
  if (const auto error = file.writeHeader()) {
    ::unlink(path.c_str());
    return error;
  }
  return file;
}

WavFile::WavFile(WavFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), format_(other.format_), size_(other.size_) {}

std::error_code WavFile::append(std::span<const std::byte> frames) {
  if (descriptor_ < 0) return errorOf(EBADF);
  if (frames.size() > largestSize - size_) return errorOf(EFBIG);
  std::uint64_t written = 0;
  const auto error = writeAt(headerSize + size_, frames, written);
  size_ += written - written % static_cast<std::uint64_t>(format_.frameSize());
  // The samples come first: a header that is behind hides the last of them, one that is ahead promises what is not.
  const auto headerError = writeHeader();
  return error ? error : headerError;
}

void WavFile::close() {
  if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
}

std::error_code WavFile::writeAt(std::uint64_t position, std::span<const std::byte> bytes,
                                 std::uint64_t& written) const {
  while (written < bytes.size()) {
    const auto rest = bytes.subspan(written);
    const auto count = ::pwrite(descriptor_, rest.data(), rest.size(), static_cast<off_t>(position + written));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return errorOf(count < 0 ? errno : ENOSPC);
    written += static_cast<std::uint64_t>(count);
  }
  return {};
}

std::error_code WavFile::writeHeader() const {
  const auto rate = static_cast<std::uint32_t>(format_.rate);
  const auto frameSize = static_cast<std::uint16_t>(format_.frameSize());
  const auto dataSize = static_cast<std::uint32_t>(size_);
  HeaderWriter header;
  header.text("RIFF").number(static_cast<std::uint32_t>(headerSize - riffHeadSize + dataSize)).text("WAVE");
  header.text("fmt ").number(formatChunkSize).number(linearPcm).number(static_cast<std::uint16_t>(format_.channels));
  header.number(rate).number(rate * frameSize).number(frameSize).number(static_cast<std::uint16_t>(format_.bits));
  header.text("data").number(dataSize);
  std::uint64_t written = 0;
  return writeAt(0, header.bytes(), written);
}

}  // namespace orivex::gtk
