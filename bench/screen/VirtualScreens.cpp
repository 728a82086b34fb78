#include <cstdio>
#include <vector>

#include "Bench.h"

#include "orivex/platform/ui/Window.h"
#include "orivex/sdk/OrivexSDK.h"
#include "orivex/testing/VirtualDevice.h"

// 1,000 screens opened, revealed and closed on the virtual device: what they leave behind, and how long our own code
// holds the main thread at most when the ports cost nothing.
int main() {
  using namespace orivex;
  constexpr int count = 1000;
  testing::VirtualDevice device;
  std::vector<double> holds;
  const auto timed = [&](auto&& call) {
    const double started = bench::milliseconds();
    call();
    holds.push_back(bench::milliseconds() - started);
  };
  long early = 0;
  for (int index = 0; index < count; ++index) {
    auto chat = std::make_shared<OVKFApi>();
    timed([&] { chat->startSession("https://chat.example", "E", "K", std::make_shared<UserMappingModel>()); });
    timed([&] { device.application().window()->rootViewController()->present(chat, false); });
    device.advance(1);
    for (auto* engine : std::vector(device.webEngines().engines())) timed([&] { engine->completeLoad(); });
    device.advance(5);
    timed([&] { chat->close(); });
    chat.reset();
    device.advance(15);
    if (index + 1 == count / 10) early = bench::residentKiB();
  }
  std::printf("%d screens on the virtual device\n", count);
  bench::print("  resident memory after the first tenth", static_cast<double>(early), "KiB");
  bench::print("  resident memory at the end", static_cast<double>(bench::residentKiB()), "KiB");
  bench::print("  engines left alive", static_cast<double>(device.webEngines().engines().size()), "");
  bench::print("  longest hold of the main thread by our code", bench::largest(holds), "ms");
  return 0;
}
