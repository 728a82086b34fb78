#pragma once

#include <memory>

#include "orivex/platform/ui/View.h"

namespace orivex::testing {

/// What `View::snapshotView` gives on the virtual device: a view of the same frame that remembers whose picture it is.
class VirtualSnapshot final : public View {
 public:
  explicit VirtualSnapshot(View& original) : View(original.frame()), original_(original.weak_from_this()) {}

  /// Null once that view is gone.
  std::shared_ptr<View> original() const { return original_.lock(); }

 private:
  std::weak_ptr<View> original_;
};

}  // namespace orivex::testing
