#include <vector>

#include "Bench.h"
#include "Host.h"
#include "LoopMeter.h"

#include "orivex/models/Codec.h"
#include "orivex/models/UploadModels.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/MediaReading.h"
#include "orivex/platform/ports/PhotoLibrary.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex::bench {
namespace {

constexpr int rounds = 9;
constexpr int photoCount = 12;

/// A visitor who chooses twelve photos at once.
class QuickLibrary final : public PhotoLibrary {
 public:
  void show(const PhotoLibraryOptions& /*options*/, View& /*view*/, Once<void(PhotoSelection)> selected) override {
    const PickedMedia photo{MediaType::image, Url::fromFilePath("/IMG_0001.jpg")};
    Platform::current().mainQueue.async([photo, selected = std::move(selected)]() mutable {
      std::move(selected)({std::vector(photoCount, photo), false});
    });
  }
};

/// An encoder that has its result ready: 1.3 MB of Base64.
class QuickCodec final : public ImageCodec {
 public:
  std::variant<JpegImage, Failure> jpeg(const std::string& /*path*/, double /*quality*/) const override {
    return JpegImage{std::string(975000, '\0'), {4000, 3000}};
  }
};

// What the page is told of them.
std::vector<UploadFileInfoModel> severalPhotos() {
  UploadFileInfoModel photo;
  photo.name = "IMG_0001.jpg";
  photo.type = "Image";
  photo.base64Str = "data:image/jpeg;base64," + std::string(1300000, 'A');
  photo.width = 4000;
  photo.height = 3000;
  photo.suffix = "jpg";
  photo.size = 975000;
  photo.mimeType = "image/jpeg";
  return std::vector<UploadFileInfoModel>(photoCount, photo);
}

/// The device of the host with another photo library and encoder, for as long as this lives.
class QuickPhotos {
 public:
  QuickPhotos() { Platform::install(&device_); }
  QuickPhotos(const QuickPhotos&) = delete;
  QuickPhotos& operator=(const QuickPhotos&) = delete;
  ~QuickPhotos() { Platform::install(&real_); }

 private:
  const Platform& real_ = Platform::current();
  QuickCodec codec_;
  QuickLibrary library_;
  const Platform device_{real_.mainQueue,
                         real_.application,
                         real_.webEngines,
                         real_.websiteDataStore,
                         real_.animator,
                         real_.progressOverlay,
                         real_.httpClient,
                         real_.mainBundle,
                         real_.componentBundle,
                         real_.userDefaults,
                         real_.device,
                         real_.fileManager,
                         real_.typeRegistry,
                         codec_,
                         real_.mediaProbe,
                         real_.documentPicker,
                         real_.documentInteraction,
                         library_,
                         real_.camera,
                         real_.audioSession,
                         real_.recordPermission};
};

}  // namespace

void measurePhotos(const Host& host) {
  const gtk::SocketServer server(serve("<script>function handleSelectedFiles(files) { if (files.length === 12) {" +
                                       post + "} } " + post + "</script>"));
  int arrived = 0;
  const auto chat = host.makeChat(server.url(""), [&] { ++arrived; });
  host.screens->rootViewController()->present(chat, false);
  gtk::wait([&] { return arrived == 1; }, 20);
  gtk::pass(6);

  const QuickPhotos device;
  const auto photos = severalPhotos();
  const auto until = [&](const std::function<void()>& act) {
    const int before = arrived;
    const double started = milliseconds();
    act();
    gtk::wait([&] { return arrived > before; }, 60);
    return milliseconds() - started;
  };
  std::vector<double> whole;
  std::vector<double> writing;
  std::vector<double> evaluation;
  LoopMeter meter;
  double longestTurn = 0;
  for (int round = 0; round < rounds; ++round) {
    meter.take();
    whole.push_back(until([&] {
      chat->webView()->evaluate(
          "window.webkit.messageHandlers.openPhotoLibraryPicker.postMessage({deviceId: 'visitor'});");
    }));
    longestTurn = std::max(longestTurn, meter.take().longest);
    const double started = milliseconds();
    const auto script = encode(photos, "handleSelectedFiles(", ");");
    writing.push_back(milliseconds() - started);
    evaluation.push_back(until([&] { chat->webView()->evaluate(script); }));
  }
  print("twelve photos, from the selection to the page (median)", median(whole), "ms");
  print("twelve photos, the engine's own evaluation (median)", median(evaluation), "ms");
  print("twelve photos, writing the script, of the engine's own evaluation", median(writing) / median(evaluation), "");
  print("twelve photos, longest hold of the main thread from the selection to the page", longestTurn, "ms");
  print("twelve photos, share of our code", 1 - median(evaluation) / median(whole), "");
  chat->close();
  gtk::pass(1);
}

}  // namespace orivex::bench
