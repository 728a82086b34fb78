#include "JpegPlanes.h"

#include <algorithm>

namespace orivex::gtk {
namespace {

// A turned row crosses all stored rows: within a tile, their samples are still in the cache for the next row.
constexpr std::size_t tileWidth = 32;

void copySamples(const JSAMPLE* sample, std::ptrdiff_t step, JSAMPLE* out, const JSAMPLE* end) {
  for (; out != end; ++out, sample += step) *out = *sample;
}

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
    const auto firstRow = index * plane.groupRows;
    const auto rows = std::min(plane.groupRows, plane.height - firstRow);
    for (std::size_t left = 0; left < plane.width; left += tileWidth) {
      const auto right = std::min(left + tileWidth, plane.width);
      for (std::size_t row = 0; row < rows; ++row) {
        copySamples(upright.at(left, firstRow + row), upright.right, plane.rows[row] + left, plane.rows[row] + right);
      }
    }
    padGroup(plane, rows);
  }
}

void JpegPlanes::padGroup(Plane& plane, std::size_t rows) {
  for (std::size_t row = 0; row < rows; ++row) {
    auto* const end = plane.rows[row] + plane.width;
    std::fill(end, plane.rows[row] + plane.rowBytes, end[-1]);
  }
  for (std::size_t row = rows; row < plane.groupRows; ++row) {
    std::copy_n(plane.rows[rows - 1], plane.rowBytes, plane.rows[row]);
  }
}

}  // namespace orivex::gtk
