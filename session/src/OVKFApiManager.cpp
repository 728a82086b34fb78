#include "orivex/session/OVKFApiManager.h"

#include "orivex/platform/base/ProcessState.h"

namespace orivex {
namespace {

// Where a host's developer is sent who gives no server.
constexpr const char* defaultHost = "https://dev-chat.example";

template <class Value>
Value empty() {
  return {};
}

}  // namespace

OVKFApiManager::OVKFApiManager()
    : user(empty),
      host([] { return std::string(defaultHost); }),
      entryId(empty),
      appKey(empty),
      guestId(empty),
      fileSize([] { return defaultFileSize; }),
      videoSize([] { return defaultVideoSize; }) {}

OVKFApiManager& OVKFApiManager::shared() {
  return ProcessState::current().get<OVKFApiManager>();
}

}  // namespace orivex
