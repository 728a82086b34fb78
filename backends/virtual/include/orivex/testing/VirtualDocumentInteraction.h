#pragma once

#include <string>
#include <vector>

#include "orivex/platform/base/Subscription.h"
#include "orivex/platform/ports/DocumentInteraction.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::testing {

/// Remembers the menus that it was asked for.
class VirtualDocumentInteraction final : public DocumentInteraction {
 public:
  struct Menu {
    std::string file;  ///< its address
    Rect rect;
    bool operator==(const Menu&) const = default;
  };

  explicit VirtualDocumentInteraction(const MainQueue& queue) : queue_(queue) {}

  bool presentOptionsMenu(const Url& file, const Rect& rect, View& view) override;

  /// At first there are applications for every file.
  void setApplications(bool any) { applications_ = any; }

  /// The menus that were shown.
  const std::vector<Menu>& menus() const { return menus_; }
  void forgetMenus() { menus_.clear(); }

  /// Whether the last of them is still open: it closes with the screen of its view.
  bool isOpen() const { return open_; }

 private:
  const MainQueue& queue_;
  bool applications_ = true;
  bool open_ = false;
  std::vector<Menu> menus_;
  Subscription leaves_;
};

}  // namespace orivex::testing
