#pragma once

#include <map>
#include <memory>
#include <vector>

#include "orivex/platform/ui/View.h"

namespace orivex::testing {

/// Gives every view below a root a mirror, for as long as it is there, so that it can be asked for a snapshot.
class ViewMirrorTree {
 public:
  explicit ViewMirrorTree(View& root);
  ViewMirrorTree(const ViewMirrorTree&) = delete;
  ViewMirrorTree& operator=(const ViewMirrorTree&) = delete;
  ~ViewMirrorTree();

  /// Until something has been drawn, snapshots are null.
  void setDrawn(bool drawn) { drawn_ = drawn; }

 private:
  class Mirror;

  void attach(View& view);
  void detach(View& view);

  std::map<View*, std::unique_ptr<Mirror>> mirrors_;
  bool drawn_ = true;
};

}  // namespace orivex::testing
