#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

namespace orivex::gtk {

/// Whether the visitor is away although a window may still have the focus: the session is locked, a screen saver covers
/// it, or the machine is about to sleep. Asks the login manager on the system bus and the screen savers on the session
/// bus; what is not there counts as "no", with one log line at most. Main thread.
///
/// A session's "Lock" signal is not followed: it asks a desktop to lock, and one that does not never unlocks either.
/// What a desktop has done stands in `LockedHint`.
class SessionWatch {
 public:
  /// `changed` is called when `isAway` has changed; not before the constructor returns.
  explicit SessionWatch(std::function<void()> changed);
  SessionWatch(const SessionWatch&) = delete;
  SessionWatch& operator=(const SessionWatch&) = delete;
  ~SessionWatch();

  bool isAway() const { return away_; }

 private:
  void makeProxy(GBusType bus, const char* name, const char* path, const char* interface,
                 void (SessionWatch::*use)(GRef<GDBusProxy>));
  void useManager(GRef<GDBusProxy> manager);
  void useSession(GRef<GDBusProxy> session);
  void useScreenSaver(GRef<GDBusProxy> saver);

  void readLockedHint();
  void coverBy(GDBusProxy* saver, bool covered);
  void settle();
  void tellOnce(const std::string& failure);

  const std::function<void()> changed_;
  GRef<GCancellable> cancellable_;
  GRef<GDBusProxy> manager_;
  GRef<GDBusProxy> session_;
  std::vector<GRef<GDBusProxy>> screenSavers_;
  std::vector<GDBusProxy*> covering_;  // of the screen savers
  bool sleeping_ = false;
  bool locked_ = false;
  bool away_ = false;
  bool told_ = false;
  SignalConnections signals_;
};

}  // namespace orivex::gtk
