#pragma once

#include <functional>
#include <set>
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

  bool isAway() const { return !causes_.empty(); }

 private:
  void makeProxy(GBusType bus, const char* name, const char* path, const char* interface,
                 void (SessionWatch::*made)(GDBusProxy*));
  void managerMade(GDBusProxy* manager);
  void sessionMade(GDBusProxy* session);
  void screenSaverMade(GDBusProxy* saver);

  void followSignal(GDBusProxy* proxy, const std::string& signal);
  void setAway(GDBusProxy* cause, bool away);
  void logOnce(const std::string& failure);

  const std::function<void()> changed_;
  GRef<GCancellable> cancellable_;
  std::vector<GRef<GDBusProxy>> proxies_;
  std::set<GDBusProxy*> causes_;  // those of the proxies by which the visitor is away
  bool logged_ = false;
  SignalConnections signals_;
};

}  // namespace orivex::gtk
