#include "VisitorOverlay.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "orivex/platform/Platform.h"
#include "orivex/platform/base/ProcessState.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/ProgressOverlay.h"

namespace orivex {
namespace {

ProgressOverlay& overlay() {
  return Platform::current().progressOverlay;
}

// Seconds without news of an upload after which its visitor is told.
constexpr double patience = 10;

constexpr const char* waiting = trLater("正在等待服务器…");

double now() {
  return Platform::current().mainQueue.now();
}

std::string percentage(float fraction) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%.0f%%", static_cast<double>(fraction * 100));
  return text.data();
}

}  // namespace

VisitorOverlay& VisitorOverlay::shared() {
  return ProcessState::current().get<VisitorOverlay>();
}

void VisitorOverlay::showMessage(const std::string& text) {
  hasMessage_ = true;
  overlay().showInfo(text);
}

void VisitorOverlay::showNotice(const std::string& text) {
  hasMessage_ = true;
  overlay().showNotice(text);
}

void VisitorOverlay::endMessage() {
  hasMessage_ = false;
  if (uploads_.empty()) {
    overlay().dismiss();
  } else {
    uploads_.back()->show();
  }
}

void VisitorOverlay::hideUploads(const Window& window) {
  const auto isThere = [&](const Upload* upload) { return upload->window_.lock().get() == &window; };
  if (std::erase_if(uploads_, isThere) > 0 && !hasMessage_) endMessage();
}

// Of several uploads, the newest is shown.
void VisitorOverlay::cancel() const {
  if (uploads_.empty()) return;
  if (const auto act = uploads_.back()->onCancel_) act();
}

VisitorOverlay::Upload::Upload(std::string detail)
    : lastNews_(now()), detail_(std::move(detail)), window_(overlay().window()) {
  shared().uploads_.push_back(this);
  shared().hasMessage_ = false;
  show();
  watch(patience);
  if (shared().uploads_.size() == 1) overlay().announce(tr("正在上传"));
}

VisitorOverlay::Upload::~Upload() {
  std::erase(shared().uploads_, this);
}

void VisitorOverlay::Upload::progress(float fraction) {
  fraction_ = fraction < 1.0F ? std::optional(fraction) : std::nullopt;
  lastNews_ = now();
  if (std::exchange(isStanding_, false)) watch(patience);
  if (isSeen() && !shared().hasMessage_) show();
}

void VisitorOverlay::Upload::watch(double seconds) {
  Platform::current().mainQueue.asyncAfter(seconds, alive_.guard([this] {
    if (const double left = lastNews_ + patience - now(); left > 0) return watch(left);
    isStanding_ = true;
    if (!isSeen()) return;
    overlay().announce(tr(waiting));
    if (!shared().hasMessage_) show();
  }));
}

bool VisitorOverlay::Upload::isSeen() const {
  const auto& seen = shared().uploads_;
  return std::find(seen.begin(), seen.end(), this) != seen.end();
}

void VisitorOverlay::Upload::dismiss(bool isStored) {
  if (!isSeen()) return;
  std::erase(shared().uploads_, this);
  if (isStored && shared().uploads_.empty()) overlay().announce(tr("上传完成"));
  if (!shared().hasMessage_) shared().endMessage();
}

void VisitorOverlay::Upload::returnToWindow() const {
  overlay().setWindow(window_);
}

void VisitorOverlay::Upload::show() const {
  returnToWindow();
  overlay().setOnCancel([] { shared().cancel(); });
  overlay().setDetail(isStanding_ ? tr(waiting) : detail_);
  if (fraction_) {
    overlay().showProgress(*fraction_, percentage(*fraction_));
  } else {
    overlay().show();
  }
}

}  // namespace orivex
