#pragma once

#include <string>

namespace orivex {

struct UserMappingModel;

/// What goes into the chat page address, all of it as the host gave it.
struct ChatPageAddress {
  std::string host;
  std::string entryId;
  std::string appKey;
  const UserMappingModel& user;
  double statusBarHeight = 0;  ///< Points.
  double bottomInset = 0;      ///< Points.
  std::string payload;         ///< JSON of the queued message, or empty.

  /// The whole address by plain concatenation: only the payload is percent-encoded, a value that holds "&" or "="
  /// changes the query.
  std::string text() const;

  /// For the log, which of the values keeps the text from being an address.
  std::string fault() const;
};

}  // namespace orivex
