#include "orivex/platform/ui/UserContentController.h"

#include <algorithm>

namespace orivex {

void UserContentController::addScriptMessageHandler(std::weak_ptr<ScriptMessageHandler> handler, std::string name) {
  handlers_.push_back({std::move(name), std::move(handler)});
}

std::vector<std::string> UserContentController::handlerNames() const {
  std::vector<std::string> names;
  names.reserve(handlers_.size());
  for (const auto& registration : handlers_) names.push_back(registration.name);
  return names;
}

void UserContentController::deliver(const ScriptMessage& message) const {
  const auto found = std::find_if(handlers_.begin(), handlers_.end(),
                                  [&](const Registration& registration) { return registration.name == message.name; });
  if (found == handlers_.end()) return;
  if (const auto handler = found->handler.lock()) handler->didReceive(message);
}

}  // namespace orivex
