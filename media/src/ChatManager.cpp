#include "orivex/media/ChatManager.h"

#include "CameraPicking.h"
#include "DocumentPicking.h"
#include "LibraryPicking.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/ProcessState.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex {
namespace {

// The same field of the request means another limit here than for documents: each picker guards its own kind of file.
void storeMediaRequest(const PostMessageModel& request) {
  auto& store = OVKFApiManager::shared();
  store.guestId = request.deviceId;
  store.videoSize = request.fileSize.value_or(OVKFApiManager::defaultVideoSize);
}

void storeDocumentRequest(const PostMessageModel& request) {
  auto& store = OVKFApiManager::shared();
  store.guestId = request.deviceId;
  store.fileSize = request.fileSize.value_or(OVKFApiManager::defaultFileSize);
}

template <class Service, class... Args>
void serve(const Service& service, std::string_view name, Args&&... args) {
  if (service) {
    service(std::forward<Args>(args)...);
  } else {
    log::print("This build has no " + std::string(name));
  }
}

}  // namespace

ChatManager::ChatManager()
    : instanceURL(OVKFApiManager::shared().instanceURL),
      services{takeWithCamera, pickFromLibrary, pickDocument, openFileElsewhere} {}

ChatManager& ChatManager::shared() {
  return ProcessState::current().get<ChatManager>();
}

void ChatManager::openCamera(const PostMessageModel& request, ViewController& screen, PickedFiles completion) {
  storeMediaRequest(request);
  serve(services.camera, "camera", request, screen, std::move(completion));
}

void ChatManager::openPhotoLibrary(const PostMessageModel& request, ViewController& screen, PickedFiles completion) {
  storeMediaRequest(request);
  serve(services.photoLibrary, "photo library", request, screen, std::move(completion));
}

void ChatManager::openDocumentPicker(const PostMessageModel& request, ViewController& screen, PickedFiles completion) {
  storeDocumentRequest(request);
  serve(services.documents, "document picker", request, screen, std::move(completion));
}

void ChatManager::openFile(const Url& file, ViewController& screen) {
  serve(services.openFile, "open-with menu", file, screen);
}

}  // namespace orivex
