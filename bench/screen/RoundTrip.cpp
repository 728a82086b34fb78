#include <functional>
#include <vector>

#include "BareView.h"
#include "Bench.h"
#include "Host.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::bench {
namespace {

constexpr int batches = 20;
constexpr int tripsPerBatch = 250;

// One batch: evaluate, wait for the event that the script raises, evaluate again.
class Trips {
 public:
  explicit Trips(std::function<void()> evaluate) : evaluate_(std::move(evaluate)) {}

  void run() {
    left_ = tripsPerBatch;
    next();
    gtk::wait([&] { return left_ == 0; }, 60);
  }

  void arrived() {
    if (left_ == 0) return;
    microseconds.push_back((milliseconds() - sent_) * 1000);
    if (--left_ > 0) next();
  }

  std::vector<double> microseconds;

 private:
  void next() {
    sent_ = milliseconds();
    evaluate_();
  }

  std::function<void()> evaluate_;
  int left_ = 0;
  double sent_ = 0;
};

}  // namespace

void measureRoundTrip(const Host& host) {
  const gtk::SocketServer server(serve("<script>function ping() {" + post + "} ping();</script>"));
  std::shared_ptr<OVKFApi> chat;
  std::unique_ptr<BareView> bare;
  int ready = 0;
  Trips ours([&] { chat->webView()->evaluate("ping()"); });
  Trips yardstick([&] { bare->evaluate("ping()"); });
  chat = host.makeChat(server.url(""), [&] { ++ready, ours.arrived(); });
  host.screens->rootViewController()->present(chat, false);
  bare = std::make_unique<BareView>([&] { ++ready, yardstick.arrived(); });
  gtk_window_set_child(host.yardstick, bare->widget());
  bare->load(server.url("/"));
  gtk::wait([&] { return ready == 2; }, 20);
  gtk::pass(6);  // both pages have settled, the chat is revealed

  for (int batch = 0; batch < batches; ++batch) {
    // Whoever goes first changes, so that what the machine does meanwhile hits both alike.
    (batch % 2 == 0 ? ours : yardstick).run();
    (batch % 2 == 0 ? yardstick : ours).run();
  }
  const double mine = median(ours.microseconds);
  const double bareTrip = median(yardstick.microseconds);
  print("round trip, chat screen (median)", mine, "us");
  print("round trip, bare web view (median)", bareTrip, "us");
  print("round trip, ratio", mine / bareTrip, "");
  chat->close();
  gtk_window_set_child(host.yardstick, nullptr);
  gtk::pass(1);
}

}  // namespace orivex::bench
