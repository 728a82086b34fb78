#include "JpegRecoder.h"

#include <algorithm>
#include <span>

#include "PictureLimits.h"

namespace orivex::gtk {
namespace {

// Of a decompressor or a compressor.
template <class Info>
std::span<jpeg_component_info> componentsOf(const Info& info) {
  return {info.comp_info, static_cast<std::size_t>(info.num_components)};
}

// Rows of the picture that libjpeg takes or gives at once.
template <class Info>
unsigned groupLines(const Info& info) {
  return static_cast<unsigned>(info.max_v_samp_factor) * DCTSIZE;
}

template <class Info>
std::size_t groupsOf(const Info& info) {
  return (info.image_height + groupLines(info) - 1) / groupLines(info);
}

// The table of the usual two, for luma and for chroma, by which a component is quantised.
std::size_t tableOf(std::size_t component) {
  return component == 0 ? 0 : 1;
}

}  // namespace

std::optional<std::variant<JpegImage, Failure>> JpegRecoder::recode() {
  if (!errors_.run([this] { source_.readHeader(file_); })) return Failure{errors_.message()};
  turn_ = source_.turn();
  const auto& source = source_.info();
  if (isTooLarge(source.image_width, source.image_height, heldBytes())) return Failure{"too large to be decoded"};
  if (!takesColors()) return std::nullopt;
  return write();
}

bool JpegRecoder::takesColors() {
  const auto& source = source_.info();
  const bool known = (source.jpeg_color_space == JCS_YCbCr && source.num_components == 3) ||
                     (source.jpeg_color_space == JCS_GRAYSCALE && source.num_components == 1);
  int blocks = 0;
  for (const auto& component : componentsOf(source)) blocks += component.h_samp_factor * component.v_samp_factor;
  return known && blocks <= C_MAX_BLOCKS_IN_MCU;
}

std::uint64_t JpegRecoder::heldBytes() {
  const auto& source = source_.info();
  const auto turned = turn_.isNone() ? 0 : JpegPlanes::bytes(componentsOf(source), groupsOf(source));
  return source_.heldBytes() + turned;
}

std::variant<JpegImage, Failure> JpegRecoder::write() {
  const auto profile = source_.colorProfile(errors_);
  auto& source = source_.info();
  auto& target = target_.info();
  const bool started = errors_.run([&] {
    source.raw_data_out = TRUE;
    jpeg_start_decompress(&source);
    prepareTarget();
    target_.start(profile);
  });
  if (!started) return Failure{errors_.message()};

  JpegPlanes rows(componentsOf(target), 1);
  std::optional<JpegPlanes> picture;
  if (!turn_.isNone()) picture.emplace(componentsOf(source), groupsOf(source));
  const bool written = errors_.run([&] {
    if (picture) {
      readAll(*picture);
      writeTurned(*picture, rows);
    } else {
      stream(rows);
    }
    jpeg_finish_compress(&target);
  });
  if (!written) return Failure{errors_.message()};
  const auto [width, height] = turn_.upright<double>(source.image_width, source.image_height);
  return JpegImage{target_.takeBytes(), {width, height}};
}

void JpegRecoder::prepareTarget() {
  const auto& source = source_.info();
  auto& target = target_.info();
  const auto [width, height] = turn_.upright(source.image_width, source.image_height);
  target_.prepare(width, height, source.jpeg_color_space, quality_);
  target.raw_data_in = TRUE;
  for (int index = 0; index < source.num_components; ++index) {
    const auto& from = source.comp_info[index];
    const auto [across, down] = turn_.upright(from.h_samp_factor, from.v_samp_factor);
    target.comp_info[index].h_samp_factor = across;
    target.comp_info[index].v_samp_factor = down;
  }
  keepCoarserSteps();
}

void JpegRecoder::keepCoarserSteps() {
  constexpr UINT16 largestBaselineStep = 255;
  const auto components = componentsOf(source_.info());
  for (std::size_t place = 0; place < DCTSIZE2; ++place) {
    const auto stored = turn_.swapsAxes ? place % DCTSIZE * DCTSIZE + place / DCTSIZE : place;
    // Components that share a table may have had tables of their own: the finest of them counts.
    std::array<UINT16, 2> finest{largestBaselineStep, largestBaselineStep};
    for (std::size_t index = 0; index < components.size(); ++index) {
      const auto* const own = components[index].quant_table;
      auto& step = finest[tableOf(index)];
      step = std::min(step, own ? own->quantval[stored] : UINT16{1});
    }
    for (std::size_t index = 0; index < components.size(); ++index) {
      auto& step = target_.info().quant_tbl_ptrs[tableOf(index)]->quantval[place];
      step = std::max(step, finest[tableOf(index)]);
    }
  }
}

void JpegRecoder::stream(JpegPlanes& rows) {
  auto& source = source_.info();
  auto group = rows.group(0);
  while (source.output_scanline < source.output_height) {
    jpeg_read_raw_data(&source, group.data(), groupLines(source));
    jpeg_write_raw_data(&target_.info(), group.data(), groupLines(source));
  }
}

void JpegRecoder::readAll(JpegPlanes& picture) {
  auto& source = source_.info();
  for (std::size_t index = 0; index < picture.groups(); ++index) {
    auto group = picture.group(index);
    jpeg_read_raw_data(&source, group.data(), groupLines(source));
  }
}

void JpegRecoder::writeTurned(const JpegPlanes& picture, JpegPlanes& rows) {
  auto& target = target_.info();
  auto group = rows.group(0);
  for (std::size_t index = 0; index < groupsOf(target); ++index) {
    rows.turnGroup(index, picture, turn_);
    jpeg_write_raw_data(&target, group.data(), groupLines(target));
  }
}

}  // namespace orivex::gtk
