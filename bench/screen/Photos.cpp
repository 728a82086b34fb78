#include <vector>

#include "Bench.h"
#include "Host.h"

#include "orivex/media/ChatManager.h"
#include "orivex/models/Codec.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex::bench {
namespace {

constexpr int rounds = 9;

// Nine photos as they are after the encoder: 1.3 MB of Base64 each.
std::vector<UploadFileInfoModel> ninePhotos() {
  UploadFileInfoModel photo;
  photo.name = "IMG_0001.jpg";
  photo.type = "Image";
  photo.base64Str = "data:image/jpeg;base64," + std::string(1300000, 'A');
  photo.width = 4000;
  photo.height = 3000;
  photo.suffix = "jpg";
  photo.size = 975000;
  photo.mimeType = "image/jpeg";
  return std::vector<UploadFileInfoModel>(9, photo);
}

}  // namespace

void measurePhotos(const Host& host) {
  const gtk::SocketServer server(serve("<script>function handleSelectedFiles(files) { if (files.length === 9) {" +
                                       post + "} } " + post + "</script>"));
  int arrived = 0;
  const auto chat = host.makeChat(server.url(""), [&] { ++arrived; });
  host.screens->rootViewController()->present(chat, false);
  gtk::wait([&] { return arrived == 1; }, 20);
  gtk::pass(6);

  auto& services = ChatManager::shared().services;
  const auto kept = services;
  const auto photos = ninePhotos();
  std::vector<UploadFileInfoModel> described;
  services.photoLibrary =
      [&](const PostMessageModel&, ViewController&,
          ChatManager::PickedFiles completion) {  // NOLINT(performance-unnecessary-value-param): called once
        std::move(completion)(std::move(described));
      };
  const auto until = [&](const std::function<void()>& act) {
    const int before = arrived;
    const double started = milliseconds();
    act();
    gtk::wait([&] { return arrived > before; }, 60);
    return milliseconds() - started;
  };
  std::vector<double> whole;
  std::vector<double> evaluation;
  for (int round = 0; round < rounds; ++round) {
    described = photos;
    whole.push_back(until([&] {
      chat->webView()->evaluate(
          "window.webkit.messageHandlers.openPhotoLibraryPicker.postMessage({deviceId: 'visitor'});");
    }));
    const auto script = "handleSelectedFiles(" + encode(photos) + ");";
    evaluation.push_back(until([&] { chat->webView()->evaluate(script); }));
  }
  services = kept;
  print("nine photos, from the picker's answer to the page (median)", median(whole), "ms");
  print("nine photos, the engine's own evaluation (median)", median(evaluation), "ms");
  print("nine photos, share of our code", 1 - median(evaluation) / median(whole), "");
  chat->close();
  gtk::pass(1);
}

}  // namespace orivex::bench
