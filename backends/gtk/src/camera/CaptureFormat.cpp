#include "CaptureFormat.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <tuple>

namespace orivex::gtk {
namespace {

constexpr int wantedRate = 30;  // frames a second
constexpr double slowest = 5;   // below this a camera's format is for still pictures

struct Candidate {
  int distance = 0;  // pixels of width and height that it is off
  double rate = 0;   // frames a second
  bool raw = false;

  auto worth() const { return std::tuple(rate >= slowest, -distance, std::min<double>(rate, wantedRate), raw); }
};

// Settles what the structure leaves open; nothing for a format that cannot be used.
std::optional<Candidate> settle(GstStructure& format, Size wanted) {
  const bool raw = gst_structure_has_name(&format, "video/x-raw");
  if (!raw && !gst_structure_has_name(&format, "image/jpeg")) return std::nullopt;
  const auto width = static_cast<int>(wanted.width);
  const auto height = static_cast<int>(wanted.height);
  gst_structure_fixate_field_nearest_int(&format, "width", width);
  gst_structure_fixate_field_nearest_int(&format, "height", height);
  gst_structure_fixate_field_nearest_fraction(&format, "framerate", wantedRate, 1);
  int offeredWidth = 0;
  int offeredHeight = 0;
  if (!gst_structure_get_int(&format, "width", &offeredWidth)) return std::nullopt;
  if (!gst_structure_get_int(&format, "height", &offeredHeight)) return std::nullopt;
  int frames = wantedRate;
  int seconds = 1;
  gst_structure_get_fraction(&format, "framerate", &frames, &seconds);
  return Candidate{std::abs(offeredWidth - width) + std::abs(offeredHeight - height),
                   seconds > 0 ? static_cast<double>(frames) / seconds : 0, raw};
}

}  // namespace

GstCapsPtr bestFormat(const GstCaps& offered, Size wanted) {
  const GstCapsPtr each(gst_caps_normalize(gst_caps_copy(&offered)));
  GstCapsPtr best;
  std::optional<Candidate> bestCandidate;
  for (guint i = 0; i < gst_caps_get_size(each.get()); ++i) {
    const auto* const features = gst_caps_get_features(each.get(), i);
    if (!gst_caps_features_is_equal(features, GST_CAPS_FEATURES_MEMORY_SYSTEM_MEMORY)) continue;
    GstCapsPtr single(gst_caps_copy_nth(each.get(), i));
    const auto candidate = settle(*gst_caps_get_structure(single.get(), 0), wanted);
    if (!candidate || (bestCandidate && bestCandidate->worth() >= candidate->worth())) continue;
    best = std::move(single);
    bestCandidate = candidate;
  }
  return best;
}

GstCapsPtr preferredFormats(Size wanted) {
  const auto size = "width=" + std::to_string(static_cast<int>(wanted.width)) +
                    ",height=" + std::to_string(static_cast<int>(wanted.height));
  const auto rate = ",framerate=" + std::to_string(wantedRate) + "/1";
  const auto text = "video/x-raw," + size + rate + "; image/jpeg," + size + rate + "; video/x-raw," + size +
                    "; image/jpeg," + size + "; video/x-raw; image/jpeg";
  return GstCapsPtr(gst_caps_from_string(text.c_str()));
}

}  // namespace orivex::gtk
