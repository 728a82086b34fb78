#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orivex/Export.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

struct MessageBody;
struct UserMappingModel;

/// The configuration that the whole component reads. One per process, made on first use (thread-safe) and never
/// replaced; its properties are plain storage for the main thread.
class OVKFApiManager {
 public:
  ORIVEX_API static OVKFApiManager& shared();

  /// Limits of the pickers until a request of the page brings its own, in bytes: 30 MiB and 50 MiB.
  static constexpr std::int64_t defaultFileSize = 31457280;
  static constexpr std::int64_t defaultVideoSize = 52428800;

  /// The visitor of the session; null before the first `startSession`.
  std::shared_ptr<UserMappingModel> user;

  /// Address of the chat server, without a trailing slash; at first where a host's developer is sent who gives none.
  std::string host = "https://dev-chat.example";

  std::string entryId;
  std::string appKey;

  /// The visitor identifier that the page uses, from its last picker or recording request.
  std::optional<std::string> guestId;

  /// Size limit of a document, in bytes; both too-large messages quote it.
  std::int64_t fileSize = defaultFileSize;

  /// Size limit of a video, in bytes.
  std::int64_t videoSize = defaultVideoSize;

  /// What the host wants placed in the chat page when it opens.
  std::vector<std::shared_ptr<MessageBody>> elements;

  /// The chat page address of the session; absent before the first session whose address parsed.
  std::optional<Url> instanceURL;

  OVKFApiManager(const OVKFApiManager&) = delete;
  OVKFApiManager& operator=(const OVKFApiManager&) = delete;

 private:
  friend class ProcessState;
  OVKFApiManager() = default;
  ~OVKFApiManager() = default;
};

}  // namespace orivex
