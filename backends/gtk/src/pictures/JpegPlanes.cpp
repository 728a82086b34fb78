#include "pictures/JpegPlanes.h"

#include <algorithm>

namespace orivex::gtk {
namespace {

std::size_t rowBytesOf(const jpeg_component_info& component) {
  return std::size_t{component.width_in_blocks} * DCTSIZE;
}

std::size_t groupRowsOf(const jpeg_component_info& component) {
  return static_cast<std::size_t>(component.v_samp_factor) * DCTSIZE;
}

}  // namespace

JpegPlanes::JpegPlanes(std::span<const jpeg_component_info> components, std::size_t groups) : groups_(groups) {
  for (const auto& component : components) {
    Plane plane{component.downsampled_width,
                component.downsampled_height,
                rowBytesOf(component),
                groupRowsOf(component),
                {},
                {}};
    plane.rows.resize(groups * plane.groupRows);
    plane.samples.resize(plane.rows.size() * plane.rowBytes);
    auto* start = plane.samples.data();
    for (auto& row : plane.rows) {
      row = start;
      start += plane.rowBytes;
    }
    planes_.push_back(std::move(plane));
  }
}

std::uint64_t JpegPlanes::bytes(std::span<const jpeg_component_info> components, std::size_t groups) {
  std::uint64_t bytes = 0;
  for (const auto& component : components) {
    bytes += std::uint64_t{groups} * groupRowsOf(component) * rowBytesOf(component);
  }
  return bytes;
}

JpegPlanes::RowGroup JpegPlanes::group(std::size_t index) {
  RowGroup group{};
  for (std::size_t plane = 0; plane < planes_.size(); ++plane) {
    group[plane] = planes_[plane].rows.data() + index * planes_[plane].groupRows;
  }
  return group;
}

void JpegPlanes::turnGroup(std::size_t index, const JpegPlanes& stored, const Turn& turn) {
  for (std::size_t number = 0; number < planes_.size(); ++number) {
    auto& plane = planes_[number];
    const auto& from = stored.planes_[number];
    const auto upright = UprightSamples::of(from.samples.data(), from.width, from.height, 1, from.rowBytes, turn);
    for (std::size_t row = 0; row < plane.groupRows; ++row) {
      const auto* sample = upright.row(std::min(index * plane.groupRows + row, plane.height - 1));
      auto* const out = plane.rows[row];
      for (std::size_t x = 0; x < plane.width; ++x, sample += upright.right) out[x] = *sample;
      std::fill(out + plane.width, out + plane.rowBytes, out[plane.width - 1]);
    }
  }
}

}  // namespace orivex::gtk
