#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Observers.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

class WindowScene;

enum class ApplicationEvent { didBecomeActive, willResignActive };

/// The host application as the desktop sees it. Main thread.
class Application : public Interface {
 public:
  /// The scenes that show windows now, the first connected first.
  virtual std::vector<std::shared_ptr<WindowScene>> connectedScenes() const = 0;

  /// Calls `handler` at each such event until the subscription ends.
  [[nodiscard]] virtual Subscription observe(ApplicationEvent event, std::function<void()> handler) = 0;

  /// Whether what the visitor sees of the application is laid out from right to left.
  virtual bool isRightToLeft() const = 0;

  /// Whether some application opens addresses of this scheme, and a page may hand it one.
  virtual bool canOpen(const Url& url) const = 0;

  /// Opens the address in that application. A failure is one log line. A real device opens one address a second at
  /// most; what comes sooner is dropped with one log line.
  virtual void open(const Url& url) = 0;
};

}  // namespace orivex
