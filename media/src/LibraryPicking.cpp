#include "LibraryPicking.h"

#include <utility>

#include "MediaDescriptions.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/PhotoLibrary.h"
#include "orivex/platform/ui/ViewController.h"

namespace orivex {
namespace {

constexpr double usualQuality = 0.7;
constexpr double originalQuality = 1.0;

constexpr PhotoLibraryOptions options{.allowSelectImage = true,
                                      .allowSelectVideo = true,
                                      .allowMixSelect = false,
                                      .allowTakePhotoInLibrary = false,
                                      .maxSelectCount = 9};

}  // namespace

void pickFromLibrary(const PostMessageModel& /*request*/, ViewController& screen, ChatManager::PickedFiles completion) {
  Platform::current().photoLibrary.show(
      options, *screen.view(),
      [screen = screen.weak_from_this(), completion = std::move(completion)](PhotoSelection selection) {
        describeMedia(std::move(selection.items), selection.isOriginal ? originalQuality : usualQuality, screen,
                      [completion](std::vector<UploadFileInfoModel> described) {
                        if (!described.empty()) completion(std::move(described));
                      });
      });
}

}  // namespace orivex
