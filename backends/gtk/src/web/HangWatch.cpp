#include "HangWatch.h"

#include <string_view>
#include <utility>

#include "../ui/StyleSheet.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// WebKit itself takes three seconds to call a page unresponsive.
constexpr double patience = 7;

constexpr const char* wait = "wait";
constexpr const char* leave = "leave";

}  // namespace

HangWatch::HangWatch(WebKitWebView* view, MainQueue& mainQueue, std::function<void()> leave)
    : view_(view),
      mainQueue_(mainQueue),
      leave_(std::move(leave)),
      changed_(SignalConnection::connect<&HangWatch::changed>(view, "notify::is-web-process-responsive", this)) {}

HangWatch::~HangWatch() {
  changed_.disconnect();
  dismiss();
  if (!webkit_web_view_get_is_web_process_responsive(view_)) webkit_web_view_terminate_web_process(view_);
}

void HangWatch::changed(WebKitWebView* /*view*/, GParamSpec* /*property*/) {
  ++hang_;
  dismiss();
  if (webkit_web_view_get_is_web_process_responsive(view_)) return;
  log::print("The page does not answer");
  askLater();
}

void HangWatch::askLater() {
  mainQueue_.asyncAfter(patience, alive_.guard([this, hang = hang_] {
    if (hang == hang_) ask();
  }));
}

void HangWatch::ask() {
  auto* const window = gtk_widget_get_root(GTK_WIDGET(view_));
  if (!GTK_IS_WINDOW(window)) return;
  auto* const dialog = ADW_MESSAGE_DIALOG(
      adw_message_dialog_new(GTK_WINDOW(window), "页面没有响应", "您可以再等一会儿，或者离开聊天。"));
  dialog_ = GTK_WINDOW(dialog);
  makeLight(GTK_WIDGET(dialog));
  adw_message_dialog_add_response(dialog, wait, "继续等待");
  adw_message_dialog_add_response(dialog, leave, "离开");
  adw_message_dialog_set_response_appearance(dialog, leave, ADW_RESPONSE_DESTRUCTIVE);
  adw_message_dialog_set_close_response(dialog, wait);
  response_ = SignalConnection::connect<&HangWatch::responded>(dialog, "response", this);
  destroyed_ = SignalConnection::connect<&HangWatch::dialogDestroyed>(dialog, "destroy", this);
  gtk_window_present(dialog_);
}

void HangWatch::responded(AdwMessageDialog* /*dialog*/, const char* response) {
  const bool leaves = std::string_view(response) == leave;
  dismiss();
  if (!leaves) return askLater();
  const auto leavePage = leave_;
  leavePage();
}

void HangWatch::dialogDestroyed(GtkWidget* /*dialog*/) {
  response_.disconnect();
  destroyed_.disconnect();
  dialog_ = nullptr;
}

void HangWatch::dismiss() {
  response_.disconnect();
  destroyed_.disconnect();
  if (auto* const dialog = std::exchange(dialog_, nullptr)) gtk_window_destroy(dialog);
}

}  // namespace orivex::gtk
