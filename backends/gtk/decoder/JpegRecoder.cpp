#include "JpegRecoder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <glib.h>

#include "ColorProfile.h"
#include "JpegMetadata.h"
#include "PictureLimits.h"
#include "TurboJpeg.h"
#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

using MappedFile = std::unique_ptr<GMappedFile, FreeWith<g_mapped_file_unref>>;

/// How a stored picture is turned to be seen upright: the axes are swapped first, then each may run backwards, in terms
/// of the stored picture.
struct Turn {
  Turn() = default;
  /// Of the tag "Orientation" of Exif; any value but 2 to 8 is no turn.
  explicit Turn(int orientation) {
    const auto isOneOf = [=](auto... values) { return ((orientation == values) || ...); };
    swapsAxes = isOneOf(5, 6, 7, 8);
    mirrorsX = isOneOf(2, 3, 7, 8);
    mirrorsY = isOneOf(3, 4, 6, 7);
  }

  bool isNone() const { return !swapsAxes && !mirrorsX && !mirrorsY; }

  bool swapsAxes = false;
  bool mirrorsX = false;
  bool mirrorsY = false;
};

/// What a picture's planes are laid out by.
struct Layout {
  int width;
  int height;
  int subsampling;

  int planes() const { return subsampling == TJSAMP_GRAY ? 1 : 3; }

  std::uint64_t bytes() const {
    std::uint64_t all = 0;
    for (int plane = 0; plane < planes(); ++plane) all += tjPlaneSizeYUV(plane, width, 0, height, subsampling);
    return all;
  }

  /// That of the picture turned upright; without a subsampling when there is none for it.
  Layout upright(const Turn& turn) const {
    if (!turn.swapsAxes) return *this;
    switch (subsampling) {
      case TJSAMP_422:
        return {height, width, TJSAMP_440};
      case TJSAMP_440:
        return {height, width, TJSAMP_422};
      case TJSAMP_411:
        return {height, width, -1};
      default:
        return {height, width, subsampling};
    }
  }
};

/// The samples of one colour component.
struct Plane {
  Plane(const Layout& layout, int component)
      : width(component == 0 ? layout.width : tjPlaneWidth(component, layout.width, layout.subsampling)),
        height(component == 0 ? layout.height : tjPlaneHeight(component, layout.height, layout.subsampling)),
        rowBytes(tjPlaneWidth(component, layout.width, layout.subsampling)),
        rows(tjPlaneHeight(component, layout.height, layout.subsampling)),
        samples(std::make_unique_for_overwrite<std::uint8_t[]>(static_cast<std::size_t>(rowBytes) *
                                                               static_cast<std::size_t>(rows))) {}

  // Of a file that was cut off in its first blocks; libjpeg leaves the rest grey.
  bool isBlank() const {
    constexpr int tallestBlock = 16;
    const auto* const rest = at(0, std::min(tallestBlock, rows - 1));
    return std::all_of<const std::uint8_t*>(rest, at(0, rows), [rest](std::uint8_t sample) { return sample == *rest; });
  }

  std::uint8_t* at(int x, int y) const { return samples.get() + std::ptrdiff_t{rowBytes} * y + x; }

  int width;
  int height;
  int rowBytes;  // one more than the width where colours of an odd picture are subsampled; so are the rows
  int rows;
  std::unique_ptr<std::uint8_t[]> samples;
};

// Fills `upright`. A turned row crosses all stored rows: within a tile, their samples are still in the cache for the
// next row.
void turnPlane(const Plane& stored, const Turn& turn, const Plane& upright) {
  constexpr int tileWidth = 32;
  const std::ptrdiff_t alongX = turn.mirrorsX ? -1 : 1;
  const std::ptrdiff_t alongY = std::ptrdiff_t{stored.rowBytes} * (turn.mirrorsY ? -1 : 1);
  const auto right = turn.swapsAxes ? alongY : alongX;
  const auto down = turn.swapsAxes ? alongX : alongY;
  const auto* const origin = stored.at(turn.mirrorsX ? stored.width - 1 : 0, turn.mirrorsY ? stored.height - 1 : 0);
  for (int left = 0; left < upright.width; left += tileWidth) {
    for (int y = 0; y < upright.height; ++y) {
      const auto* from = origin + left * right + y * down;
      auto* const end = upright.at(std::min(left + tileWidth, upright.width), y);
      for (auto* to = upright.at(left, y); to != end; ++to, from += right) *to = *from;
    }
  }
  for (int y = 0; y < upright.height; ++y) {
    std::fill(upright.at(upright.width, y), upright.at(upright.rowBytes, y), *upright.at(upright.width - 1, y));
  }
  for (int y = upright.height; y < upright.rows; ++y) {
    std::copy_n(upright.at(0, upright.height - 1), upright.rowBytes, upright.at(0, y));
  }
}

/// A JPEG file on its way through libturbojpeg.
class JpegRecoder {
 public:
  /// False when the picture cannot be encoded anew sample by sample.
  bool open(std::FILE* file) {
    content_.reset(g_mapped_file_new_from_fd(fileno(file), FALSE, nullptr));
    if (!content_) return false;
    int colors = 0;
    if (tjDecompressHeader3(decompressor_.get(), bytes(), length(), &stored_.width, &stored_.height,
                            &stored_.subsampling, &colors) != 0) {
      return false;
    }
    metadata_ = JpegMetadata::of({g_mapped_file_get_contents(content_.get()), length()});
    turn_ = Turn(metadata_.orientation);
    upright_ = stored_.upright(turn_);
    return (colors == TJCS_YCbCr || colors == TJCS_GRAY) && upright_.subsampling >= 0;
  }

  bool isTooLarge() const {
    const auto width = static_cast<std::uint64_t>(stored_.width);
    const auto height = static_cast<std::uint64_t>(stored_.height);
    const auto turnedBytes = turn_.isNone() ? 0 : width * height;  // of the largest plane: they are turned by turns
    return gtk::isTooLarge(width, height, stored_.bytes() + turnedBytes);
  }

  /// False when nothing of the picture is there.
  bool decode() {
    for (int component = 0; component < stored_.planes(); ++component) planes_.emplace_back(stored_, component);
    const int result = tjDecompressToYUVPlanes(decompressor_.get(), bytes(), length(), pointers().data(), stored_.width,
                                               nullptr, stored_.height, TJFLAG_ACCURATEDCT | TJFLAG_LIMITSCANS);
    if (result == 0) return true;
    // What can be decoded of damaged data is shown, as viewers do.
    return tjGetErrorCode(decompressor_.get()) == TJERR_WARNING && !planes_[0].isBlank();
  }

  Failure failure() const { return Failure{tjGetErrorStr2(decompressor_.get())}; }

  void turn() {
    if (turn_.isNone()) return;
    for (int component = 0; component < stored_.planes(); ++component) {
      auto& plane = planes_[static_cast<std::size_t>(component)];
      Plane upright(upright_, component);
      turnPlane(plane, turn_, upright);
      plane = std::move(upright);
    }
  }

  /// Once; takes the picture.
  std::variant<JpegImage, Failure> encode(double quality) {
    const TurboJpeg compressor(tjInitCompress());
    TurboBuffer jpeg(upright_.width, upright_.height, upright_.subsampling);
    const auto planes = pointers();
    std::array<const std::uint8_t*, 3> samples{planes[0], planes[1], planes[2]};
    if (tjCompressFromYUVPlanes(compressor.get(), samples.data(), upright_.width, nullptr, upright_.height,
                                upright_.subsampling, &jpeg.bytes, &jpeg.length, turboQuality(quality),
                                TJFLAG_ACCURATEDCT) != 0) {
      return Failure{tjGetErrorStr2(compressor.get())};
    }
    planes_.clear();  // the JPEG is copied next
    const auto profile = plainProfile(metadata_.profile, stored_.planes() == 1 ? cmsSigGrayData : cmsSigRgbData);
    return JpegImage{jpeg.withProfile(profile),
                     {static_cast<double>(upright_.width), static_cast<double>(upright_.height)}};
  }

 private:
  const unsigned char* bytes() const {
    return reinterpret_cast<const unsigned char*>(g_mapped_file_get_contents(content_.get()));
  }
  unsigned long length() const { return g_mapped_file_get_length(content_.get()); }

  std::array<std::uint8_t*, 3> pointers() const {
    std::array<std::uint8_t*, 3> pointers{};
    for (std::size_t index = 0; index < planes_.size(); ++index) pointers[index] = planes_[index].samples.get();
    return pointers;
  }

  MappedFile content_;
  JpegMetadata metadata_;
  TurboJpeg decompressor_{tjInitDecompress()};
  Layout stored_{};
  Layout upright_{};
  Turn turn_;
  std::vector<Plane> planes_;
};

}  // namespace

std::optional<std::variant<JpegImage, Failure>> recodeJpeg(std::FILE* file, double quality) {
  JpegRecoder recoder;
  if (!recoder.open(file)) return std::nullopt;
  if (recoder.isTooLarge()) return Failure{"too large to be decoded"};
  if (!recoder.decode()) return recoder.failure();
  recoder.turn();
  return recoder.encode(quality);
}

}  // namespace orivex::gtk
