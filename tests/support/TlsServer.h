#pragma once

#include <filesystem>
#include <string>

#include <gio/gio.h>

#include "glib/GRef.h"

namespace orivex::gtk {

/// A web server over TLS whose certificate nobody has signed but itself. The certificate is made on the spot.
class TlsServer {
 public:
  TlsServer();
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;
  ~TlsServer();

  std::string url() const { return "https://localhost:" + port_ + "/"; }

 private:
  std::filesystem::path folder_;
  GRef<GSubprocess> process_;
  std::string port_;
};

}  // namespace orivex::gtk
