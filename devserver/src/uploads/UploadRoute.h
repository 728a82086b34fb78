#pragma once

#include <cstdint>

#include <libsoup/soup.h>

#include "../faults/Faults.h"
#include "../http/Tokens.h"
#include "FileStore.h"

namespace orivex::devserver {

/// Takes the component's file uploads: checks the six headers, puts the part named "file" into the store and answers
/// with its address. An upload is held in memory until all of it is there.
class UploadRoute {
 public:
  /// The references must outlive the server's handlers. `maxBytes` is the largest file taken.
  UploadRoute(const Tokens& tokens, Faults& faults, FileStore& files, std::int64_t maxBytes)
      : tokens_(tokens), faults_(faults), files_(files), maxBytes_(maxBytes) {}
  UploadRoute(const UploadRoute&) = delete;
  UploadRoute& operator=(const UploadRoute&) = delete;

  void addTo(SoupServer* server);

 private:
  void begin(SoupServerMessage* message);
  void finish(SoupServerMessage* message);
  void answer(SoupServerMessage* message);

  const Tokens& tokens_;
  Faults& faults_;
  FileStore& files_;
  const std::int64_t maxBytes_;
};

}  // namespace orivex::devserver
