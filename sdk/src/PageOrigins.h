#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orivex {

/// "scheme://host:port" of an address, in lower case, without a user's name and the scheme's usual port; empty for an
/// address that has none, such as "about:blank".
std::string originOf(const std::optional<std::string>& url);

/// Knows which documents in the place of the chat page are the chat's: those of the server that the host named, of
/// where that server's redirects lead, and of origins that the host lists. Others came there by a link or a script.
class PageOrigins {
 public:
  /// The address of the chat server as the host gave it.
  void setServer(const std::string& address) { server_ = originOf(address); }

  /// The document at `url` has come, or its load has ended; the first of each is part of opening the chat. The latter
  /// says whether it was the first.
  void committed(const std::optional<std::string>& url);
  bool finished(const std::optional<std::string>& url);

  /// The chat's origins, with those of the addresses `listed`.
  std::vector<std::string> all(const std::vector<std::string>& listed) const;

  /// Whether the document at `url` is the chat's; `listed` are the host's further addresses or origins. Before the
  /// first document, when only the component's own scripts run, everything is.
  bool trusts(const std::optional<std::string>& url, const std::vector<std::string>& listed) const;

 private:
  std::string server_;
  std::optional<std::string> firstCommitted_;
  std::optional<std::string> firstFinished_;
};

}  // namespace orivex
