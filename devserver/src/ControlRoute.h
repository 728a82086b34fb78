#pragma once

#include <libsoup/soup.h>

#include "conversation/ChatSocket.h"
#include "faults/Faults.h"
#include "http/RequestLog.h"

namespace orivex::devserver {

/// The developer's side of the server at run time: /_dev/faults, /_dev/log and /_dev/posts.
class ControlRoute {
 public:
  /// The references must outlive the server's handlers.
  ControlRoute(Faults& faults, RequestLog& log, ChatSocket& socket) : faults_(faults), log_(log), socket_(socket) {}
  ControlRoute(const ControlRoute&) = delete;
  ControlRoute& operator=(const ControlRoute&) = delete;

  void addTo(SoupServer* server);

 private:
  void serveFaults(SoupServerMessage* message);
  void serveLog(SoupServerMessage* message);
  /// Adds one fault or an array of them, all or none. False when they were refused and the reply says why.
  bool addFaults(SoupServerMessage* message);

  Faults& faults_;
  RequestLog& log_;
  ChatSocket& socket_;
};

}  // namespace orivex::devserver
