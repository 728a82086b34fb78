#include <cstdio>
#include <vector>

#include "Bench.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/ui/Window.h"
#include "orivex/sdk/OrivexSDK.h"
#include "orivex/testing/VirtualDevice.h"

// 1,000 screens opened, revealed and closed on the virtual device: what they leave behind, and how long our own code
// holds the main thread at most when the ports cost nothing.
int main() {
  using namespace orivex;
  constexpr int count = 1000;
  log::setEnabled(false);
  testing::VirtualDevice device;
  const auto root = std::make_shared<ViewController>();
  device.application().window()->setRootViewController(root);
  std::vector<double> holds;
  holds.reserve(count * 8);
  const auto timed = [&](auto&& call) {
    const double started = bench::milliseconds();
    call();
    holds.push_back(bench::milliseconds() - started);
  };
  double early = 0;
  for (int index = 0; index < count; ++index) {
    auto chat = std::make_shared<OVKFApi>();
    timed([&] { chat->startSession("https://chat.example", "E", "K", std::make_shared<UserMappingModel>()); });
    timed([&] { root->present(chat, false); });
    device.advance(1);
    for (auto* engine : std::vector(device.webEngines().engines())) timed([&] { engine->completeLoad(); });
    device.advance(5);
    timed([&] { chat->close(); });
    chat.reset();
    device.advance(15);
    device.httpClient().forgetRequests();
    if (index + 1 == count / 10) early = bench::heapKiB();
  }
  std::printf("%d screens on the virtual device\n", count);
  bench::print("  heap in use after the first tenth", early, "KiB");
  bench::print("  heap in use at the end", bench::heapKiB(), "KiB");
  bench::print("  engines left alive", static_cast<double>(device.webEngines().engines().size()), "");
  bench::print("  longest hold of the main thread by our code", bench::largest(holds), "ms");
  return 0;
}
