#include <memory>
#include <vector>

#include "BareView.h"
#include "Bench.h"
#include "Host.h"

#include "orivex/media/ChatManager.h"
#include "orivex/media/OVKFApiHelper.h"

namespace orivex::bench {
namespace {

constexpr int rounds = 15;

// Milliseconds from showing the screen to the page's own load event.
struct Opened {
  double load = 0;
  double revealed = 0;  // since then the page can be seen
  double present = 0;   // how long the call held the main thread, the making of both web views included
};

Opened openChat(const Host& host, const std::string& server) {
  bool loaded = false;
  Opened opened;
  const auto chat = host.makeChat(server, [&] { loaded = true; });
  const double started = milliseconds();
  host.screens->rootViewController()->present(chat, false);
  opened.present = milliseconds() - started;
  gtk::wait([&] { return loaded; }, 20);
  opened.load = milliseconds() - started;
  gtk::wait([&] { return chat->isLoaded(); }, 20);
  opened.revealed = milliseconds() - started;
  gtk::pass(0.3);
  chat->close();
  gtk::pass(0.7);
  return opened;
}

// The same with a bare view; `hold` gets how long the making of two such views holds the main thread.
double openBare(const Host& host, const std::string& address, double& hold) {
  bool loaded = false;
  const double started = milliseconds();
  auto view = std::make_unique<BareView>([&] { loaded = true; });
  gtk_window_set_child(host.yardstick, view->widget());
  view->load(address);
  const double made = milliseconds();
  gtk::wait([&] { return loaded; }, 20);
  const double load = milliseconds() - started;
  hold = made - started;
  gtk::pass(0.3);
  gtk_window_set_child(host.yardstick, nullptr);
  view.reset();
  gtk::pass(0.7);
  return load;
}

double checkAlone() {
  bool done = false;
  const double started = milliseconds();
  OVKFApiHelper::checkPage(*ChatManager::shared().instanceURL, [&](const PageCheckOutcome&) { done = true; });
  gtk::wait([&] { return done; }, 10);
  return milliseconds() - started;
}

}  // namespace

void measureOpening(const Host& host) {
  const gtk::SocketServer server(serve("<script>addEventListener('load', () => {" + post +
                                       "webkit.messageHandlers.initLoaded?.postMessage(null)});</script>"));
  std::vector<double> ours, revealed, bare, checks, presents, bareHolds;
  for (int round = 0; round < rounds; ++round) {
    const auto opened = openChat(host, server.url(""));
    double hold = 0;
    const double yardstick = openBare(host, ChatManager::shared().instanceURL->absoluteString(), hold);
    const double check = checkAlone();
    if (round == 0) continue;  // the first starts the network process for both
    ours.push_back(opened.load);
    revealed.push_back(opened.revealed);
    bare.push_back(yardstick);
    checks.push_back(check);
    presents.push_back(opened.present);
    bareHolds.push_back(hold);
  }
  print("opening, chat screen until the load event (median)", median(ours), "ms");
  print("opening, bare web view until the load event (median)", median(bare), "ms");
  print("opening, the page check's own round trip (median)", median(checks), "ms");
  print("opening, ratio without the page check", (median(ours) - median(checks)) / median(bare), "");
  print("opening, revealed, ratio", median(revealed) / median(bare), "");
  print("main thread held by present, two web views made (largest)", largest(presents), "ms");
  print("main thread held by making one bare web view (median)", median(bareHolds), "ms");
}

}  // namespace orivex::bench
