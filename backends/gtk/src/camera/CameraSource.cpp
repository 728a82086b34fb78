#include "CameraSource.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <sstream>
#include <tuple>

#include "../glib/GMemory.h"
#include "CameraPortal.h"

namespace orivex::gtk {
namespace {

// Words in the drivers' names of cameras that face away from the visitor.
constexpr std::array backWords{"back", "rear", "world"};

struct FreeObjectList {
  void operator()(GList* list) const { g_list_free_full(list, gst_object_unref); }
};

std::vector<CameraSource> sourcesOf(const char* fragments) {
  std::vector<CameraSource> sources;
  std::istringstream lines(fragments);
  for (std::string line; std::getline(lines, line);) {
    if (line.find_first_not_of(" \t") == std::string::npos) continue;
    sources.push_back({sources.empty() ? CameraFacing::back : CameraFacing::front, line});
  }
  return sources;
}

// Follows the cameras that come and go. It is never stopped: PipeWire's part of it (0.3.65) does so without the lock of
// its own thread, and now and then both free the same object.
GstDeviceMonitor* deviceMonitor() {
  static auto* const monitor = [] {
    auto* const started = GST_DEVICE_MONITOR(gst_object_ref_sink(gst_device_monitor_new()));
    gst_device_monitor_add_filter(started, "Video/Source", nullptr);
    gst_device_monitor_start(started);
    // Nobody takes its messages.
    const auto bus = GRef<GstBus>::adopt(gst_device_monitor_get_bus(started));
    gst_bus_set_flushing(bus.get(), TRUE);
    return started;
  }();
  return monitor;
}

std::string propertyOf(GstDevice& device, const char* key) {
  const std::unique_ptr<GstStructure, FreeWith<gst_structure_free>> properties(gst_device_get_properties(&device));
  const char* const value = properties ? gst_structure_get_string(properties.get(), key) : nullptr;
  return value ? value : "";
}

constexpr int wantedRate = 30;  // frames a second
constexpr double slowest = 5;   // below this a camera's format is for still pictures

// The larger, the better: whether it moves, how near its size comes, frames a second, and whether it is raw.
using Rank = std::tuple<bool, int, double, bool>;

// Fixates what the structure leaves open; nothing for a format that cannot be used.
std::optional<Rank> fixate(GstStructure& format, Size wanted) {
  const bool raw = gst_structure_has_name(&format, "video/x-raw");
  if (!raw && !gst_structure_has_name(&format, "image/jpeg")) return std::nullopt;
  const auto wantedWidth = static_cast<int>(wanted.width);
  const auto wantedHeight = static_cast<int>(wanted.height);
  gst_structure_fixate_field_nearest_int(&format, "width", wantedWidth);
  gst_structure_fixate_field_nearest_int(&format, "height", wantedHeight);
  gst_structure_fixate_field_nearest_fraction(&format, "framerate", wantedRate, 1);
  int width = 0;
  int height = 0;
  if (!gst_structure_get(&format, "width", G_TYPE_INT, &width, "height", G_TYPE_INT, &height, nullptr)) {
    return std::nullopt;
  }
  int frames = wantedRate;
  int seconds = 1;
  gst_structure_get_fraction(&format, "framerate", &frames, &seconds);
  const double rate = seconds > 0 ? static_cast<double>(frames) / seconds : 0;
  const int distance = std::abs(width - wantedWidth) + std::abs(height - wantedHeight);
  return Rank{rate >= slowest, -distance, std::min<double>(rate, wantedRate), raw};
}

// For a source that does not list its formats: `wanted` if it can, or else whatever it has.
GstCapsPtr preferredFormats(Size wanted) {
  const auto size = "width=" + std::to_string(static_cast<int>(wanted.width)) +
                    ",height=" + std::to_string(static_cast<int>(wanted.height));
  const auto rate = ",framerate=" + std::to_string(wantedRate) + "/1";
  const auto text = "video/x-raw," + size + rate + "; image/jpeg," + size + rate + "; video/x-raw," + size +
                    "; image/jpeg," + size + "; video/x-raw; image/jpeg";
  return GstCapsPtr(gst_caps_from_string(text.c_str()));
}

}  // namespace

CameraFacing facingOf(std::string_view location, std::string_view name) {
  if (location == "front") return CameraFacing::front;
  if (location == "back") return CameraFacing::back;
  const GCharPtr lower(g_ascii_strdown(name.data(), static_cast<gssize>(name.size())));
  const std::string_view words(lower.get());
  const bool back = std::any_of(backWords.begin(), backWords.end(),
                                [&](const char* word) { return words.find(word) != std::string_view::npos; });
  return back ? CameraFacing::back : CameraFacing::front;
}

std::vector<CameraSource> findCameras() {
  if (const char* const fragments = std::getenv(cameraSourceVariable); fragments && *fragments) {
    return sourcesOf(fragments);
  }
  const std::unique_ptr<GList, FreeObjectList> devices(gst_device_monitor_get_devices(deviceMonitor()));
  std::vector<CameraSource> cameras;
  for (auto* entry = devices.get(); entry; entry = entry->next) {
    auto* const device = GST_DEVICE(entry->data);
    const GCharPtr name(gst_device_get_display_name(device));
    const auto location = propertyOf(*device, "api.libcamera.location");
    cameras.push_back({facingOf(location, name.get()), GRef<GstDevice>::share(device)});
  }
  std::stable_partition(cameras.begin(), cameras.end(),
                        [](const CameraSource& camera) { return camera.facing == CameraFacing::back; });
  return cameras;
}

ElementOrError makeSource(const CameraSource& source) {
  if (const auto* const device = std::get_if<GRef<GstDevice>>(&source.origin)) {
    auto element = GRef<GstElement>::sink(gst_device_create_element(device->get(), nullptr));
    if (!element) return pipelineError("the device has no source");
    return element;
  }
  if (std::holds_alternative<CameraSource::Portal>(source.origin)) return CameraPortal::makeSource();
  return makeSourceBin(std::get<CameraSource::LaunchFragment>(source.origin));
}

GstCapsPtr formatFor(const CameraSource& source, Size captureSize) {
  if (const auto* const device = std::get_if<GRef<GstDevice>>(&source.origin)) {
    const GstCapsPtr offered(gst_device_get_caps(device->get()));
    if (auto best = offered ? bestFormat(*offered, captureSize) : nullptr) return best;
  }
  return preferredFormats(captureSize);
}

GstCapsPtr bestFormat(const GstCaps& offered, Size wanted) {
  const GstCapsPtr each(gst_caps_normalize(gst_caps_copy(&offered)));
  GstCapsPtr best;
  Rank bestRank;
  for (guint i = 0; i < gst_caps_get_size(each.get()); ++i) {
    const auto* const features = gst_caps_get_features(each.get(), i);
    if (!gst_caps_features_is_equal(features, GST_CAPS_FEATURES_MEMORY_SYSTEM_MEMORY)) continue;
    GstCapsPtr single(gst_caps_copy_nth(each.get(), i));
    const auto rank = fixate(*gst_caps_get_structure(single.get(), 0), wanted);
    if (!rank || (best && *rank <= bestRank)) continue;
    best = std::move(single);
    bestRank = *rank;
  }
  return best;
}

}  // namespace orivex::gtk
