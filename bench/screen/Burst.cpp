#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "BareView.h"
#include "Bench.h"
#include "Host.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex::bench {
namespace {

constexpr int count = 10000;
constexpr int rounds = 3;

// Posts `count` messages of mixed kinds; each carries its number. The last one is an event.
const std::string burst = R"(
  function burst(count) {
    const posts = window.webkit.messageHandlers;
    const kinds = [
      (n) => posts.trackEvent.postMessage({ name: "n", attributes: { n: String(n) } }),
      (n) => posts.openUrl.postMessage(n),
      (n) => posts.recording.postMessage({ deviceId: String(n), action: "none" }),
      (n) => posts.openDocumentPicker.postMessage({ fileSize: n }),
      (n) => posts.initLoaded.postMessage(n),
    ];
    for (let n = 1; n < count; ++n) kinds[n % kinds.length](n);
    posts.trackEvent.postMessage({ name: "last", attributes: { n: String(count) } });
  })";

// The number in a "Received message" line; 0 in any other.
int numberIn(std::string_view line) {
  constexpr std::string_view prefix = "\"Received message from JavaScript: ";
  if (!line.starts_with(prefix)) return 0;
  const auto last = line.find_last_of("0123456789");
  if (last == std::string_view::npos) return 0;
  const auto before = line.substr(0, last).find_last_not_of("0123456789");
  return std::stoi(std::string(line.substr(before + 1, last - before)));
}

// What the log tells of one burst.
struct Received {
  int messages = 0;
  bool inOrder = true;

  void take(std::string_view line) {
    const int number = numberIn(line);
    if (number == 0) return;
    inOrder = inOrder && number == messages + 1;
    messages = number;
  }
};

}  // namespace

void measureBurst(const Host& host) {
  const gtk::SocketServer server(serve("<script>" + burst + post + "</script>"));
  int arrived = 0;
  Received received;
  const auto chat = host.makeChat(server.url(""), [&] { ++arrived; });
  host.screens->rootViewController()->present(chat, false);
  gtk::wait([&] { return arrived == 1; }, 20);
  gtk::pass(6);

  std::vector<double> times;
  std::vector<double> heaps;
  bool whole = true;
  for (int round = 0; round < rounds; ++round) {
    // In one round the log counts; it is off in the others, as it is for visitors.
    const bool counting = round == 0;
    received = {};
    log::setEnabled(counting);
    log::setSink([&](std::string_view line) { received.take(line); });
    arrived = 0;
    const double started = milliseconds();
    chat->webView()->evaluate("burst(" + std::to_string(count) + ")");
    gtk::wait([&] { return arrived == count / 5; }, 60);
    times.push_back(milliseconds() - started);
    gtk::pass(1);
    log::setEnabled(false);
    heaps.push_back(heapKiB());
    if (counting) whole = received.messages == count && received.inOrder;
  }
  log::setSink({});
  print("burst of 10,000 messages, all there and in order (1 = yes)", whole ? 1 : 0, "");
  print("burst, until the last event (median)", median(times), "ms");
  print("burst, heap after the second round", heaps[1], "KiB");
  print("burst, heap after the third round", heaps[2], "KiB");
  chat->close();
  gtk::pass(1);
}

}  // namespace orivex::bench
