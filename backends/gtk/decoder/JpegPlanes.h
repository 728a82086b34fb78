#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "JpegErrors.h"
#include "Turn.h"

namespace orivex::gtk {

/// Room for the samples of up to three colour components in the layout in which libjpeg takes and gives them raw: in
/// groups of rows, each component as many as its share, as wide as its DCT blocks.
class JpegPlanes {
 public:
  static constexpr std::size_t maximumComponents = 3;
  using RowGroup = std::array<JSAMPARRAY, maximumComponents>;

  JpegPlanes(std::span<const jpeg_component_info> components, std::size_t groups);

  /// Bytes that `groups` groups take.
  static std::uint64_t bytes(std::span<const jpeg_component_info> components, std::size_t groups);

  std::size_t groups() const { return groups_; }

  /// The rows of one group by component, for `jpeg_read_raw_data` and `jpeg_write_raw_data`.
  RowGroup group(std::size_t index);

  /// Fills the only group with group `index` of the upright picture of which `stored` holds all. Samples beyond the
  /// picture repeat its edge.
  void turnGroup(std::size_t index, const JpegPlanes& stored, const Turn& turn);

 private:
  struct Plane {
    std::size_t width;  // of the picture; rows are longer
    std::size_t height;
    std::size_t rowBytes;
    std::size_t groupRows;
    std::vector<JSAMPLE> samples;
    std::vector<JSAMPROW> rows;
  };

  static void padGroup(Plane& plane, std::size_t rows);

  std::vector<Plane> planes_;
  std::size_t groups_;
};

}  // namespace orivex::gtk
