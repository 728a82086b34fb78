#include <cstdio>
#include <vector>

#include "Bench.h"
#include "Library.h"
#include "LoopMeter.h"
#include "ShopWindow.h"
#include "device/photos/FakeMedia.h"
#include "photos/GtkPhotoLibrary.h"
#include "support/MainLoop.h"

#include "orivex/platform/Platform.h"

namespace orivex::bench {
namespace {

constexpr int rounds = 15;
constexpr std::size_t firstThumbnails = 10;

GtkWidget* cancelButton(GtkWidget* below) {
  if (GTK_IS_BUTTON(below) && g_strcmp0(gtk_button_get_label(GTK_BUTTON(below)), "取消") == 0) return below;
  for (auto* child = gtk_widget_get_first_child(below); child; child = gtk_widget_get_next_sibling(child)) {
    if (auto* const found = cancelButton(child)) return found;
  }
  return nullptr;
}

/// A phone's window, and the library that opens over it.
class Stage {
 public:
  Stage(GtkWindow* window, const std::shared_ptr<Window>& screens)
      : window_(window), screens_(screens), meter_(GTK_WIDGET(window)) {}

  struct Opening {
    double firstThumbnails = 0;  // milliseconds until they are on the screen
    double show = 0;             // milliseconds of the call
    LoopMeter::Turns holds;
  };

  Opening open(const Library& library) {
    current_ = std::make_unique<gtk::GtkPhotoLibrary>(
        Platform::current().mainQueue, dynamic_cast<gtk::GtkApplicationPort&>(Platform::current().application),
        std::ref(media_), [&library] { return library.sources(); });
    meter_.take();
    Opening opening;
    const double start = milliseconds();
    current_->show({}, *screens_->contentView(), nullptr);
    opening.show = milliseconds() - start;
    gtk::wait([&] { return current_->content()->grid().shownThumbnails() >= firstThumbnails; }, 30);
    waitForFrame();
    opening.firstThumbnails = milliseconds() - start;
    gtk::pass(1);
    opening.holds = meter_.take();
    return opening;
  }

  LoopMeter::Turns scroll() {
    auto* const scrolled = GTK_SCROLLED_WINDOW(current_->content()->grid().widget());
    auto* const adjustment = gtk_scrolled_window_get_vadjustment(scrolled);
    const double end = gtk_adjustment_get_upper(adjustment) - gtk_adjustment_get_page_size(adjustment);
    meter_.take();
    // A flick, then leaps of a dragged scroll bar.
    for (int step = 1; step <= 120; ++step) scrollTo(adjustment, step * 60.0);
    for (int step = 1; step <= 60; ++step) scrollTo(adjustment, end * ((step * 37) % 61) / 61);
    return meter_.take();
  }

  LoopMeter::Turns close() {
    meter_.take();
    g_signal_emit_by_name(cancelButton(GTK_WIDGET(window_)), "clicked");
    gtk::wait([&] { return !current_->content(); }, 10);
    gtk::pass(0.3);
    return meter_.take();
  }

 private:
  void scrollTo(GtkAdjustment* adjustment, double value) {
    gtk_adjustment_set_value(adjustment, value);
    waitForFrame();
  }

  void waitForFrame() {
    auto* const clock = gtk_widget_get_frame_clock(GTK_WIDGET(window_));
    gtk_widget_queue_draw(GTK_WIDGET(window_));
    const auto counted = gdk_frame_clock_get_frame_counter(clock);
    while (gdk_frame_clock_get_frame_counter(clock) <= counted) g_main_context_iteration(nullptr, TRUE);
  }

  const gtk::FakeMedia media_{};
  GtkWindow* const window_;
  const std::shared_ptr<Window> screens_;
  LoopMeter meter_;
  std::unique_ptr<gtk::GtkPhotoLibrary> current_;
};

void measure(Stage& stage, const Library& few, const Library& many) {
  std::vector<double> ofFew, ofMany, shows, outside, frames, fewOutside, scrollOutside, scrollFrames, closing;
  for (int round = 0; round <= rounds; ++round) {
    const auto one = stage.open(few);
    stage.close();
    const auto other = stage.open(many);
    const auto scrolling = stage.scroll();
    const auto closed = stage.close();
    if (round == 0) continue;  // the first brings styles, fonts and icons into memory
    ofFew.push_back(one.firstThumbnails);
    ofMany.push_back(other.firstThumbnails);
    shows.push_back(other.show);
    fewOutside.push_back(one.holds.longest);
    outside.push_back(other.holds.longest);
    frames.push_back(other.holds.longestFrame);
    scrollOutside.push_back(scrolling.longest);
    scrollFrames.push_back(scrolling.longestFrame);
    closing.push_back(closed.longest);
  }
  print("first ten thumbnails on the screen, 10 files (median)", median(ofFew), "ms");
  print("first ten thumbnails on the screen, 10,000 files (median)", median(ofMany), "ms");
  print("ratio", median(ofMany) / median(ofFew), "");
  print("the call that opens the sheet (median)", median(shows), "ms");
  print("longest hold while opening, 10 files (median)", median(fewOutside), "ms");
  print("longest hold while opening, 10,000 files (median)", median(outside), "ms");
  print("longest hold while opening, 10,000 files (largest)", largest(outside), "ms");
  print("longest layout and software painting while opening (median)", median(frames), "ms");
  print("longest hold while scrolling over 10,000 files (median)", median(scrollOutside), "ms");
  print("longest hold while scrolling over 10,000 files (largest)", largest(scrollOutside), "ms");
  print("longest hold while closing on 10,000 files (median)", median(closing), "ms");
  print("longest hold while closing on 10,000 files (largest)", largest(closing), "ms");
  print("longest layout and software painting while scrolling (median)", median(scrollFrames), "ms");
}

}  // namespace
}  // namespace orivex::bench

// photos-bench: needs a display.
int main() {
  using namespace orivex;
  const auto [window, screens] = bench::openShop(390, 844);
  const bench::Library few(10);
  const bench::Library many(10'000);
  std::puts("Both libraries are ready.");
  std::fflush(stdout);
  bench::Stage stage(window, screens);
  bench::measure(stage, few, many);
  return 0;
}
