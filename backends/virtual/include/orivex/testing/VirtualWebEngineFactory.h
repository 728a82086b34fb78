#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/WebEngine.h"
#include "orivex/testing/VirtualWebEngine.h"

namespace orivex::testing {

/// Makes web pages and knows those that live.
class VirtualWebEngineFactory final : public WebEngineFactory {
 public:
  using Loader = VirtualWebEngine::Loader;
  using ScriptRunner = VirtualWebEngine::ScriptRunner;

  explicit VirtualWebEngineFactory(MainQueue& queue) : queue_(queue) {}

  [[nodiscard]] std::unique_ptr<WebEngine> make(const WebEngineConfiguration& configuration,
                                                WebEngineHandlers handlers) override;

  /// Those alive, the oldest first. A pointer is good until its web view is destroyed.
  const std::vector<VirtualWebEngine*>& engines() const { return registry_->engines; }

  /// How many were ever made.
  std::size_t madeCount() const { return made_; }

  /// Plays every load and reload from now on, called from the queue: for example
  /// `[](VirtualWebEngine& engine) { engine.completeLoad(); }`. Without one nothing happens after a load until the test
  /// plays it.
  void setLoader(Loader loader) { registry_->loader = std::move(loader); }

  /// Runs every script from now on, called from the queue: for example to answer a call with `engine.post(...)`.
  void setScriptRunner(ScriptRunner runner) { registry_->scriptRunner = std::move(runner); }

 private:
  MainQueue& queue_;
  std::shared_ptr<VirtualWebEngine::Registry> registry_ = std::make_shared<VirtualWebEngine::Registry>();
  std::size_t made_ = 0;
};

}  // namespace orivex::testing
