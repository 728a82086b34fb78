#include "HangWatch.h"

#include <memory>
#include <string_view>
#include <utility>

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

// WebKit itself takes three seconds to call a page unresponsive.
constexpr double patience = 7;

constexpr const char* waitAnswer = "wait";
constexpr const char* leaveAnswer = "leave";

}  // namespace

HangWatch::HangWatch(WebKitWebView* view, MainQueue& mainQueue, std::function<bool()> isCovered,
                     std::function<void()> leave)
    : view_(view),
      mainQueue_(mainQueue),
      isCovered_(std::move(isCovered)),
      leave_(std::move(leave)),
      changed_(SignalConnection::connect(view, "notify::is-web-process-responsive", [this] { changed(); })) {}

HangWatch::~HangWatch() {
  changed_.disconnect();
  dialog_ = nullptr;
  if (!webkit_web_view_get_is_web_process_responsive(view_)) webkit_web_view_terminate_web_process(view_);
}

void HangWatch::changed() {
  ++hang_;
  dialog_ = nullptr;
  if (webkit_web_view_get_is_web_process_responsive(view_)) return;
  log::warning("The page does not answer");
  askLater();
}

void HangWatch::postpone() {
  if (std::exchange(dialog_, nullptr)) askLater();
}

void HangWatch::askLater() {
  mainQueue_.asyncAfter(patience, alive_.guard([this, hang = hang_] {
    if (hang == hang_) ask();
  }));
}

void HangWatch::ask() {
  auto* const window = gtk_widget_get_root(GTK_WIDGET(view_));
  if (!GTK_IS_WINDOW(window)) return;
  if (isCovered_()) return askLater();
  dialog_ =
      std::make_unique<AlertDialog>(GTK_WINDOW(window), tr("页面没有响应"), tr("您可以再等一会儿，或者离开聊天。"));
  dialog_->addAnswer(waitAnswer, tr("继续等待"));
  dialog_->addAnswer(leaveAnswer, tr("离开"), ADW_RESPONSE_DESTRUCTIVE);
  dialog_->setDefaults(nullptr, waitAnswer);
  dialog_->present(true, [this](const char* answer) { answered(answer); });
}

// Without an answer the dialog went with its window.
void HangWatch::answered(const char* answer) {
  dialog_ = nullptr;
  if (!answer) return;
  if (std::string_view(answer) != leaveAnswer) return askLater();
  if (const auto leave = leave_) leave();
}

}  // namespace orivex::gtk
