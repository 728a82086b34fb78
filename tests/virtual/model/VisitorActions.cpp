#include "Action.h"

#include "orivex/platform/ui/ScreenEdgePanGesture.h"

namespace orivex::testing {
namespace {

Url photo(World& world, const char* kind) {
  const auto path = "/photos/" + world.expectAnswer(kind);
  world.device.imageCodec().put(path, {"jpeg", {4, 3}});
  return Url::fromFilePath(path);
}

Url video(World& world) {
  world.device.mediaProbe().put("/photos/v.mp4", {3, {4, 3}, "jpeg"});
  return Url::fromFilePath("/photos/v.mp4");
}

std::string useCamera(World& world, Choice choice) {
  auto& camera = world.device.camera();
  if (!camera.presented()) return {};
  switch (choice.below(3)) {
    case 0: {
      const PickedMedia taken{MediaType::image, photo(world, "capture")};
      world.captures.insert(*taken.file.filePath());
      camera.finish(taken);
      return "visitor takes a photo";
    }
    case 1:
      camera.finish(CaptureCancelled{});
      return "visitor leaves the camera";
    default:
      camera.finish(CameraFailure::busy);
      return "camera fails";
  }
}

std::string selectPhotos(World& world, Choice choice) {
  auto& library = world.device.photoLibrary();
  if (!library.shown()) return {};
  switch (choice.below(3)) {
    case 0:
      library.select({{{MediaType::image, photo(world, "photo")}, {MediaType::image, photo(world, "photo")}}});
      return "visitor selects two photos";
    case 1:
      library.select({{{MediaType::video, video(world)}, {MediaType::video, video(world)}}});
      return "visitor selects two videos";
    default:
      library.close();
      return "visitor closes the photos";
  }
}

std::string pickDocument(World& world, Choice choice) {
  auto& picker = world.device.documentPicker();
  if (!picker.presented()) return {};
  switch (choice.below(3)) {
    case 0:
      picker.pick({world.device.componentBundle().pathForResource("skeleton", "html").value()});
      return "visitor picks a document";
    case 1:
      picker.pick({"/no/such/file"});
      return "visitor picks a file that is gone";
    default:
      picker.cancel();
      return "visitor picks no document";
  }
}

std::string answer(World& world, Choice choice) {
  const bool granted = choice.below(4) < 3;
  world.device.recordPermission().answer(granted);
  return granted ? "visitor allows the microphone" : "visitor refuses the microphone";
}

std::string pan(World& world, Choice choice) {
  using State = ScreenEdgePanGesture::State;
  const auto* const page = world.page(choice.below(4));
  const auto chat = page ? world.chatOf(*page) : nullptr;
  if (!chat || chat->view()->gestures().empty() || !chat->view()->isShowing()) return {};
  const auto gesture = chat->view()->gestures().front();
  const double distance = choice.below(2) == 0 ? 300 : 20;
  const auto last = choice.below(3);
  gesture->report(State::began, 0);
  world.talker.reset();
  gesture->report(State::changed, distance);
  if (last < 2) {
    ++world.disturbances;
    gesture->report(last == 0 ? State::ended : State::cancelled, distance);
  }
  return "visitor pans " + std::to_string(static_cast<int>(distance)) + " points" +
         (last == 0   ? ""
          : last == 1 ? " and loses it"
                      : " and holds");
}

std::string press(World& world, Choice choice) {
  const auto& overlay = world.device.progressOverlay();
  const auto what = choice.below(3);
  if (what == 0 && overlay.canBeCancelled()) {
    ++world.disturbances;
    overlay.pressCancel();
    return "visitor cancels an upload";
  }
  if (what > 0 && overlay.offered()) {
    const auto offer = *overlay.offered();
    what == 1 ? offer.retry() : offer.drop();
    return what == 1 ? "visitor sends again" : "visitor drops what failed";
  }
  if (what != 2) return {};
  ++world.disturbances;
  world.device.application().window()->goBack();
  return "visitor goes back";
}

std::string turnAway(World& world, Choice choice) {
  if (choice.below(2) == 1) {
    world.device.application().becomeActive();
    return "application becomes active";
  }
  world.device.application().resignActive();
  if (world.someChatShows()) world.talker.reset();
  return "application resigns";
}

std::string spoilSound(World& world, Choice choice) {
  switch (choice.below(3)) {
    case 0:
      world.device.audioSession().interrupt();
      return "sound server goes away";
    case 1:
      world.device.audioSession().fillDisk();
      return "disk is full";
    default:
      world.device.audioSession().fillDisk(false);
      return "disk has room again";
  }
}

}  // namespace

std::vector<Action> visitorActions() {
  return {{4, useCamera}, {5, selectPhotos}, {5, pickDocument}, {10, answer},
          {4, pan},       {4, press},        {3, turnAway},     {1, spoilSound}};
}

}  // namespace orivex::testing
