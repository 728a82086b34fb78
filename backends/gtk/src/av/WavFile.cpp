#include "WavFile.h"

#include <array>
#include <bit>
#include <cerrno>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace orivex::gtk {
namespace {

/// What a WAV file of linear PCM begins with (Multimedia Programming Interface and Data Specifications 1.0, 1991).
struct Header {
  std::array<char, 4> riff{'R', 'I', 'F', 'F'};
  std::uint32_t restBytes;  // behind this number
  std::array<char, 8> waveAndFormat{'W', 'A', 'V', 'E', 'f', 'm', 't', ' '};
  std::uint32_t formatBytes = 16;
  std::uint16_t linearPcm = 1;
  std::uint16_t channels;
  std::uint32_t rate;
  std::uint32_t bytesPerSecond;
  std::uint16_t frameBytes;
  std::uint16_t bits = 16;
  std::array<char, 4> data{'d', 'a', 't', 'a'};
  std::uint32_t dataBytes;
};
static_assert(sizeof(Header) == 44 && std::endian::native == std::endian::little);

// The sizes in the header have 32 bits.
constexpr std::uint64_t largestSize = std::numeric_limits<std::uint32_t>::max() - sizeof(Header);

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
  if (frames.size() > largestSize - size_) return errorOf(EFBIG);
  std::uint64_t written = 0;
  const auto error = writeAt(sizeof(Header) + size_, frames, written);
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
  const auto frameBytes = static_cast<std::uint16_t>(format_.frameSize());
  const auto dataBytes = static_cast<std::uint32_t>(size_);
  constexpr auto behindFirstNumber = static_cast<std::uint32_t>(sizeof(Header) - offsetof(Header, waveAndFormat));
  const Header header{.restBytes = behindFirstNumber + dataBytes,
                      .channels = static_cast<std::uint16_t>(format_.channels),
                      .rate = rate,
                      .bytesPerSecond = rate * frameBytes,
                      .frameBytes = frameBytes,
                      .dataBytes = dataBytes};
  std::uint64_t written = 0;
  return writeAt(0, std::as_bytes(std::span(&header, 1)), written);
}

}  // namespace orivex::gtk
