#pragma once

#include <memory>
#include <vector>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "../ui/Sheet.h"

#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/Documents.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/TypeRegistry.h"

namespace orivex::gtk {

class GtkApplicationPort;

/// A sheet over the window that asks, which lists the applications for a file. A second menu replaces one that is open.
class OpenWithMenu final : public DocumentInteraction {
 public:
  OpenWithMenu(MainQueue& mainQueue, const GtkApplicationPort& application, const TypeRegistry& types);
  ~OpenWithMenu() override;

  /// `rect` does not matter: the sheet comes from the window's bottom. False for a view in no window, too.
  bool presentOptionsMenu(const Url& file, const Rect& rect, View& view) override;

 private:
  struct Menu;

  MainQueue& mainQueue_;
  const GtkApplicationPort& application_;
  const TypeRegistry& types_;
  std::unique_ptr<Menu> menu_;  // null while none is open
  Subscription leaves_;
};

}  // namespace orivex::gtk
