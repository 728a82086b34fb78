#include "KeptUploads.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "orivex/platform/Platform.h"
#include "orivex/platform/base/ProcessState.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/ProgressOverlay.h"
#include "orivex/platform/ui/Window.h"

namespace orivex {

KeptUploads& KeptUploads::shared() {
  return ProcessState::current().get<KeptUploads>();
}

Window* KeptUploads::Kept::window() const {
  const auto shown = view.lock();
  return shown ? shown->window() : nullptr;
}

void KeptUploads::keep(View& view, std::string cause, Task sendAgain) {
  const auto leave = [this, leaver = &view] {
    take([&](const Kept& kept) { return kept.view.lock().get() == leaver; });
    offer();
  };
  kept_.push_back({view.weak_from_this(), view.observeLeaving(leave), std::move(cause), std::move(sendAgain)});
  offer();
}

std::vector<KeptUploads::Kept> KeptUploads::take(const std::function<bool(const Kept&)>& wanted) {
  const auto first = std::stable_partition(kept_.begin(), kept_.end(), std::not_fn(wanted));
  std::vector<Kept> taken(std::make_move_iterator(first), std::make_move_iterator(kept_.end()));
  kept_.erase(first, kept_.end());
  return taken;
}

// Of the window in which something failed last.
void KeptUploads::offer() {
  take([](const Kept& kept) { return !kept.window(); });
  auto& overlay = Platform::current().progressOverlay;
  if (kept_.empty()) return overlay.offer(std::nullopt);
  auto* const window = kept_.back().window();
  const auto isThere = [window](const Kept& kept) { return kept.window() == window; };
  const auto end = [this, isThere] {
    auto ended = take(isThere);
    offer();
    return ended;
  };
  const auto count = std::count_if(kept_.begin(), kept_.end(), isThere);
  auto status = trNumber("%1 项未发送", static_cast<unsigned long>(count));
  if (const auto& cause = kept_.back().cause; !cause.empty()) status = tr("%1:%2", {status, cause});
  overlay.offer(OverlayOffer{.window = window->weak_from_this(),
                             .status = std::move(status),
                             .retry =
                                 [end, &overlay] {
                                   for (auto& kept : end()) {
                                     overlay.bringTo(*kept.view.lock());
                                     std::move(kept.sendAgain)();
                                   }
                                 },
                             .drop = [end] { end(); }});
}

}  // namespace orivex
