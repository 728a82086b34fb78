#include "ChatEvents.h"

#include <cmath>
#include <utility>

#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/sdk/OVKFApi.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex {
namespace {

std::string words(ChatFailure::Cause cause) {
  switch (cause) {
    case ChatFailure::Cause::badAddress:
      return "its address does not parse";
    case ChatFailure::Cause::refused:
      return "the server refused";
    case ChatFailure::Cause::timedOut:
      return "no answer in time";
    case ChatFailure::Cause::unreachable:
      return "no answer";
    case ChatFailure::Cause::insecure:
      return "it was led from https to http";
    case ChatFailure::Cause::pageLost:
      return "the page lost its process too often";
  }
  return {};
}

}  // namespace

std::string ChatFailure::message() const {
  auto line = words(cause);
  if (status != 0) line += ", status " + std::to_string(status);
  if (!detail.empty()) line += ", " + detail;
  return line;
}

void ChatEvents::sessionStarted() {
  startedAt_ = Platform::current().mainQueue.now();
}

void ChatEvents::appeared() {
  if (std::exchange(isOpen_, true)) return;
  if (const auto delegate = screen_.conversionDelegate) delegate->opened();
}

void ChatEvents::revealed() {
  if (const auto delegate = screen_.conversionDelegate) delegate->revealed();
}

void ChatEvents::failed(ChatFailure::Cause cause, const std::string& detail, int status) {
  const ChatFailure failure{cause, status, Platform::current().mainQueue.now() - startedAt_, detail};
  log::print("The chat at " + OVKFApiManager::shared().host + " failed after " +
                 doubleText(std::round(failure.seconds * 10) / 10) + " s: " + failure.message(),
             log::Level::error);
  if (const auto delegate = screen_.conversionDelegate) delegate->failed(failure);
}

void ChatEvents::closed() {
  if (!std::exchange(isOpen_, false)) return;
  if (const auto delegate = screen_.conversionDelegate) delegate->closed();
}

}  // namespace orivex
