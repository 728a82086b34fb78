#include "Action.h"

#include "orivex/platform/ui/ScreenEdgePanGesture.h"

namespace orivex::testing {
namespace {

PickedMedia photo(World& world, const char* kind) {
  const auto path = "/photos/" + world.expectAnswer(kind);
  world.device.imageCodec().put(path, {"jpeg", {4, 3}});
  return {MediaType::image, Url::fromFilePath(path)};
}

PickedMedia video(World& world) {
  world.device.mediaProbe().put("/photos/v.mp4", {3, {4, 3}, "jpeg"});
  return {MediaType::video, Url::fromFilePath("/photos/v.mp4")};
}

bool pan(World& world, Choice choice, std::string& detail) {
  using State = ScreenEdgePanGesture::State;
  const auto* const page = world.page(choice.below(4));
  const auto chat = page ? world.chatOf(*page) : nullptr;
  if (!chat || chat->view()->gestures().empty() || !chat->view()->isShowing()) return false;
  const auto gesture = chat->view()->gestures().front();
  const double distance = choice.below(2) == 0 ? 300 : 20;
  const auto last = choice.below(3);
  detail = std::to_string(static_cast<int>(distance)) + (last == 0 ? "" : last == 1 ? " and loses it" : " and holds");
  gesture->report(State::began, 0);
  world.talker.reset();
  gesture->report(State::changed, distance);
  if (last < 2) gesture->report(last == 0 ? State::ended : State::cancelled, distance);
  return true;
}

/// Something that does not depend on choices.
Action plain(unsigned weight, const char* name, void (*act)(World&, VirtualDevice&)) {
  return {weight, name, [act](World& world, Choice, std::string&) {
            act(world, world.device);
            return true;
          }};
}

/// Something in a panel that is open.
template <class Panel>
Action inPanel(unsigned weight, const char* name, Panel& (VirtualDevice::*panel)(), bool (*isOpen)(const Panel&),
               void (*act)(World&, Panel&)) {
  return {weight, name, [=](World& world, Choice, std::string&) {
            auto& opened = (world.device.*panel)();
            if (!isOpen(opened)) return false;
            act(world, opened);
            return true;
          }};
}

Action inCamera(unsigned weight, const char* name, void (*act)(World&, VirtualCamera&)) {
  return inPanel<VirtualCamera>(
      weight, name, &VirtualDevice::camera, [](const auto& camera) { return camera.presented().has_value(); }, act);
}

Action inPhotos(unsigned weight, const char* name, void (*act)(World&, VirtualPhotoLibrary&)) {
  return inPanel<VirtualPhotoLibrary>(
      weight, name, &VirtualDevice::photoLibrary, [](const auto& photos) { return photos.shown().has_value(); }, act);
}

Action inDocuments(unsigned weight, const char* name, void (*act)(World&, VirtualDocumentPicker&)) {
  return inPanel<VirtualDocumentPicker>(
      weight, name, &VirtualDevice::documentPicker, [](const auto& picker) { return picker.presented().has_value(); },
      act);
}

Action inOverlay(unsigned weight, const char* name, bool (*isOpen)(const VirtualProgressOverlay&),
                 void (*act)(World&, VirtualProgressOverlay&)) {
  return inPanel<VirtualProgressOverlay>(weight, name, &VirtualDevice::progressOverlay, isOpen, act);
}

bool offers(const VirtualProgressOverlay& overlay) {
  return overlay.offered().has_value();
}

}  // namespace

std::vector<Action> visitorActions() {
  return {
      inCamera(3, "visitor takes a photo",
               [](World& world, auto& camera) {
                 const auto taken = photo(world, "capture");
                 world.captures.insert(*taken.file.filePath());
                 camera.finish(taken);
               }),
      inCamera(1, "visitor leaves the camera", [](World&, auto& camera) { camera.finish(CaptureCancelled{}); }),
      inCamera(1, "camera fails", [](World&, auto& camera) { camera.finish(CameraFailure::busy); }),
      inPhotos(3, "visitor selects two photos",
               [](World& world, auto& photos) {
                 photos.select({{photo(world, "photo"), photo(world, "photo")}});
               }),
      inPhotos(3, "visitor selects two videos",
               [](World& world, auto& photos) {
                 photos.select({{video(world), video(world)}});
               }),
      inPhotos(1, "visitor closes the photos", [](World&, auto& photos) { photos.close(); }),
      inDocuments(5, "visitor picks a document",
                  [](World& world, auto& picker) {
                    picker.pick({*world.device.componentBundle().pathForResource("skeleton", "html")});
                  }),
      inDocuments(1, "visitor picks a file that is gone", [](World&, auto& picker) { picker.pick({"/no/such/file"}); }),
      inDocuments(1, "visitor picks no document", [](World&, auto& picker) { picker.cancel(); }),
      inOverlay(
          2, "visitor cancels an upload", [](const auto& overlay) { return overlay.canBeCancelled(); },
          [](World& world, auto& overlay) {
            world.excuseAnswers();
            overlay.pressCancel();
          }),
      inOverlay(2, "visitor sends again", offers,
                [](World&, auto& overlay) { OverlayOffer(*overlay.offered()).retry(); }),
      inOverlay(1, "visitor drops what failed", offers,
                [](World&, auto& overlay) { OverlayOffer(*overlay.offered()).drop(); }),
      {3, "visitor pans", pan},
      plain(1, "visitor goes back", [](World&, auto& device) { device.application().window()->goBack(); }),
      plain(12, "visitor allows the microphone", [](World&, auto& device) { device.recordPermission().answer(true); }),
      plain(2, "visitor refuses the microphone", [](World&, auto& device) { device.recordPermission().answer(false); }),
      plain(1, "application becomes active", [](World&, auto& device) { device.application().becomeActive(); }),
      plain(2, "application resigns",
            [](World& world, auto& device) {
              device.application().resignActive();
              if (world.showing()) world.talker.reset();
            }),
      plain(1, "sound server goes away", [](World&, auto& device) { device.audioSession().interrupt(); }),
      plain(1, "disk is full", [](World&, auto& device) { device.audioSession().fillDisk(); }),
      plain(1, "disk has room", [](World&, auto& device) { device.audioSession().fillDisk(false); }),
      plain(1, "loads succeed", [](World& world, auto&) { world.loads = 0; }),
      plain(1, "loads hang, fail, or are led to http", [](World& world, auto&) { world.loads = world.loads % 3 + 1; }),
      plain(1, "page checks succeed", [](World& world, auto&) { world.checks = 0; }),
      plain(1, "page checks go wrong", [](World& world, auto&) { world.checks = world.checks % 3 + 1; }),
      plain(2, "uploads succeed", [](World& world, auto&) { world.uploads = 0; }),
      plain(2, "uploads go wrong", [](World& world, auto&) { world.uploads = world.uploads % 3 + 1; }),
      plain(1, "scripts fail, or run again", [](World& world, auto&) { world.scriptsFail = !world.scriptsFail; }),
  };
}

}  // namespace orivex::testing
