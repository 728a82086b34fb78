#pragma once

#include <stdexcept>
#include <string>

#include <libsoup/soup.h>

#include "ControlRoute.h"
#include "Options.h"
#include "conversation/ChatSocket.h"
#include "faults/Faults.h"
#include "http/GHandles.h"
#include "http/RequestLog.h"
#include "http/Tokens.h"
#include "page/ChatPage.h"
#include "uploads/FileRoute.h"
#include "uploads/FileStore.h"
#include "uploads/UploadRoute.h"

namespace orivex::devserver {

/// A server that cannot start; what() says why in one line.
class StartError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The whole chat server. Answers on the default main context from construction to destruction.
class Server {
 public:
  /// Throws StartError when the address, the certificate or the folder cannot be used.
  explicit Server(const Options& options);
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server();

  /// "http://127.0.0.1:8700", with the port that was really taken.
  [[nodiscard]] std::string address() const;

 private:
  void listen(const Options& options);

  ObjectPtr<SoupServer> server_;
  Tokens tokens_;
  Faults faults_;
  FileStore files_;
  RequestLog log_;
  ChatPage page_;
  ChatSocket socket_;
  UploadRoute uploads_;
  FileRoute downloads_;
  ControlRoute control_;
};

}  // namespace orivex::devserver
