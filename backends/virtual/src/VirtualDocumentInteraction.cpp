#include "orivex/testing/VirtualDocumentInteraction.h"

#include "ThreadCheck.h"

#include "orivex/platform/ui/View.h"

namespace orivex::testing {

bool VirtualDocumentInteraction::presentOptionsMenu(const Url& file, const Rect& rect, View& view) {
  requireMainThread(queue_, "DocumentInteraction::presentOptionsMenu");
  if (!applications_) return false;
  menus_.push_back({file.absoluteString(), rect});
  open_ = true;
  leaves_ = view.observeLeaving([this] { open_ = false; });
  return true;
}

}  // namespace orivex::testing
