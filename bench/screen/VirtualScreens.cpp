#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include "Bench.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/ui/WebView.h"
#include "orivex/platform/ui/Window.h"
#include "orivex/sdk/OrivexSDK.h"
#include "orivex/testing/VirtualDevice.h"

namespace orivex::bench {
namespace {

/// How long each call holds the main thread.
class Holds {
 public:
  template <class Call>
  void time(const Call& call) {
    const double started = threadMilliseconds();
    call();
    longest_ = std::max(longest_, threadMilliseconds() - started);
  }
  double longest() const { return longest_; }

 private:
  double longest_ = 0;
};

std::shared_ptr<OVKFApi> open(testing::VirtualDevice& device, Holds& holds) {
  auto chat = std::make_shared<OVKFApi>();
  holds.time([&] { chat->startSession("https://chat.example", "E", "K", std::make_shared<UserMappingModel>()); });
  holds.time([&] { device.application().window()->rootViewController()->present(chat, false); });
  device.advance(1);
  for (auto* engine : std::vector(device.webEngines().engines())) holds.time([&] { engine->completeLoad(); });
  device.advance(5);
  return chat;
}

// Every service of the page once, each to its end.
void useEveryService(testing::VirtualDevice& device, OVKFApi& chat, const std::string& file, Holds& holds) {
  auto& engine = dynamic_cast<testing::VirtualWebEngine&>(chat.webView()->engine());
  const auto post = [&](const char* name, const std::string& body) {
    holds.time([&] {
      engine.post(name, body);
      device.runUntilIdle();
    });
  };
  const std::string request = R"({"deviceId":"visitor"})";
  const PickedMedia picture{MediaType::image, Url::fromFilePath("/picture.png")};
  post("trackEvent", R"({"name":"n","attributes":{"n":"1"}})");
  post("openUrl", R"("https://chat.example/help")");
  post("openFile", R"("https://chat.example/file.pdf")");
  post("openDocumentPicker", request);
  device.documentPicker().pick({file});
  device.advance(0.5);
  post("openPhotoLibraryPicker", request);
  device.photoLibrary().select({{picture}, false});
  device.advance(0.5);
  post("openCamera", request);
  device.camera().finish(picture);
  device.advance(0.5);
  post("recording", R"({"deviceId":"visitor","action":"start"})");
  device.advance(2.5);
  post("recording", R"({"deviceId":"visitor","action":"end"})");
  device.advance(0.5);
  post("initLoaded", "null");
}

void measureScreens(testing::VirtualDevice& device) {
  constexpr int count = 1000;
  const std::string file = std::filesystem::temp_directory_path() / "virtual-screen-bench.txt";
  std::ofstream(file) << "text";
  device.imageCodec().put("/picture.png", {std::string(1000, 'j'), {40, 30}});
  device.recordPermission().remember(true);
  Holds holds;
  double early = 0;
  for (int index = 0; index < count; ++index) {
    auto chat = open(device, holds);
    useEveryService(device, *chat, file, holds);
    holds.time([&] { chat->close(); });
    chat.reset();
    device.advance(15);
    device.forgetHistory();
    if (index + 1 == count / 10) early = heapKiB();
  }
  std::filesystem::remove(file);
  std::printf("%d screens on the virtual device, each with every service used once\n", count);
  print("  heap in use after the first tenth", early, "KiB");
  print("  heap in use at the end", heapKiB(), "KiB");
  print("  engines left alive", static_cast<double>(device.webEngines().engines().size()), "");
  print("  longest hold of the main thread by our code", holds.longest(), "ms");
}

void measureBurst(testing::VirtualDevice& device) {
  constexpr int count = 10000;
  Holds holds;
  const auto chat = open(device, holds);
  auto& engine = dynamic_cast<testing::VirtualWebEngine&>(chat->webView()->engine());
  const std::pair<const char*, const char*> kinds[] = {{"trackEvent", R"({"name":"n","attributes":{"n":"1"}})"},
                                                       {"openUrl", "1"},
                                                       {"recording", R"({"deviceId":"d","action":"none"})"},
                                                       {"openDocumentPicker", R"({"fileSize":1})"},
                                                       {"initLoaded", "null"}};
  Holds messages;
  for (int index = 0; index < count; ++index) {
    const auto& [name, body] = kinds[static_cast<std::size_t>(index) % std::size(kinds)];
    messages.time([&, name = name, body = body] {
      engine.post(name, body);
      device.runUntilIdle();
    });
  }
  print("a message of a burst of 10,000, longest hold of the main thread", messages.longest(), "ms");
  chat->close();
  device.advance(15);
}

}  // namespace
}  // namespace orivex::bench

// Screens and messages on the virtual device: what they leave behind, and how long our own code holds the main thread
// at most when the ports cost nothing.
int main() {
  using namespace orivex;
  log::setEnabled(false);
  testing::VirtualDevice device;
  device.application().window()->setRootViewController(std::make_shared<ViewController>());
  bench::measureScreens(device);
  bench::measureBurst(device);
  return 0;
}
