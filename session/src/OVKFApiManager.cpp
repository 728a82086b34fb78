#include "orivex/session/OVKFApiManager.h"

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
  // Never destroyed: late callbacks of worker threads may still read it while the process ends.
  static auto* const instance = new OVKFApiManager;
  return *instance;
}

}  // namespace orivex
