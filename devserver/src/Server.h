#pragma once

#include <stdexcept>
#include <string>

#include <libsoup/soup.h>

#include "ChatPage.h"
#include "ChatSocket.h"
#include "ControlRoute.h"
#include "Faults.h"
#include "FileRoute.h"
#include "FileStore.h"
#include "GHandles.h"
#include "Options.h"
#include "RequestLog.h"
#include "Tokens.h"
#include "UploadRoute.h"

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
