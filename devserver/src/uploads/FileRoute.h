#pragma once

#include <string>

#include <libsoup/soup.h>

#include "FileStore.h"

namespace orivex::devserver {

/// Serves stored files under /files/, whole or one byte range of them: media players seek by ranges.
class FileRoute {
 public:
  /// `files` must outlive the server's handlers.
  explicit FileRoute(const FileStore& files) : files_(files) {}
  FileRoute(const FileRoute&) = delete;
  FileRoute& operator=(const FileRoute&) = delete;

  void addTo(SoupServer* server);

 private:
  void serve(SoupServerMessage* message, const std::string& storedName) const;

  const FileStore& files_;
};

}  // namespace orivex::devserver
