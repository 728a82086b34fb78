#include "JpegTarget.h"

#include <algorithm>
#include <cmath>

namespace orivex::gtk {

void JpegTarget::prepare(unsigned width, unsigned height, J_COLOR_SPACE colorSpace, double quality) {
  jpeg_create_compress(&info_);
  destination_.owner = this;
  destination_.manager.init_destination = begin;
  destination_.manager.empty_output_buffer = flush;
  destination_.manager.term_destination = end;
  info_.dest = &destination_.manager;
  info_.image_width = width;
  info_.image_height = height;
  info_.in_color_space = colorSpace;
  info_.input_components = colorSpace == JCS_GRAYSCALE ? 1 : 3;
  jpeg_set_defaults(&info_);
  jpeg_set_quality(&info_, static_cast<int>(std::lround(std::clamp(quality, 0.0, 1.0) * 100)), TRUE);
}

void JpegTarget::start(std::string_view profile) {
  jpeg_start_compress(&info_, TRUE);
  if (profile.empty()) return;
  jpeg_write_icc_profile(&info_, reinterpret_cast<const JOCTET*>(profile.data()),
                         static_cast<unsigned>(profile.size()));
}

void JpegTarget::begin(j_compress_ptr info) {
  auto* const destination = reinterpret_cast<Destination*>(info->dest);
  destination->manager.next_output_byte = destination->owner->chunk_.data();
  destination->manager.free_in_buffer = destination->owner->chunk_.size();
}

boolean JpegTarget::flush(j_compress_ptr info) noexcept {
  auto* const owner = reinterpret_cast<Destination*>(info->dest)->owner;
  owner->append(owner->chunk_.size());
  begin(info);
  return TRUE;
}

void JpegTarget::end(j_compress_ptr info) noexcept {
  auto* const destination = reinterpret_cast<Destination*>(info->dest);
  auto* const owner = destination->owner;
  owner->append(owner->chunk_.size() - destination->manager.free_in_buffer);
}

void JpegTarget::append(std::size_t count) {
  bytes_.append(reinterpret_cast<const char*>(chunk_.data()), count);
}

}  // namespace orivex::gtk
