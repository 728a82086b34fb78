#include "orivex/testing/VirtualDocumentInteraction.h"

#include "ThreadCheck.h"

namespace orivex::testing {

bool VirtualDocumentInteraction::presentOptionsMenu(const Url& file, const Rect& rect, View& /*view*/) {
  requireMainThread(queue_, "DocumentInteraction::presentOptionsMenu");
  if (applications_) menus_.push_back({file.absoluteString(), rect});
  return applications_;
}

}  // namespace orivex::testing
