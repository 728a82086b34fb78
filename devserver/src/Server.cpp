#include "Server.h"

#include "http/GHandles.h"

namespace orivex::devserver {
namespace {

[[noreturn]] void fail(const std::string& what, GError* error) {
  const GErrorPtr owned(error);
  throw StartError(what + ": " + owned->message);
}

}  // namespace

Server::Server(const Options& options)
    : server_(ObjectPtr<SoupServer>(soup_server_new("server-header", "orivex-devserver", nullptr))),
      tokens_(options.tokens),
      faults_(options.faults),
      files_(options.files),
      page_(tokens_, faults_, options.page),
      socket_(tokens_, faults_, options.agentDelay),
      uploads_(tokens_, faults_, files_, options.maxUpload),
      downloads_(files_),
      control_(faults_, log_, socket_) {
  log_.watch(server_.get());
  page_.addTo(server_.get());
  socket_.addTo(server_.get());
  uploads_.addTo(server_.get());
  downloads_.addTo(server_.get());
  control_.addTo(server_.get());
  listen(options);
}

Server::~Server() {
  soup_server_disconnect(server_.get());
}

void Server::listen(const Options& options) {
  GError* error = nullptr;
  auto flags = static_cast<SoupServerListenOptions>(0);
  if (!options.tlsCertificate.empty()) {
    const auto certificate = ObjectPtr<GTlsCertificate>(
        g_tls_certificate_new_from_files(options.tlsCertificate.c_str(), options.tlsKey.c_str(), &error));
    if (!certificate) fail("the certificate cannot be used", error);
    soup_server_set_tls_certificate(server_.get(), certificate.get());
    flags = SOUP_SERVER_LISTEN_HTTPS;
  }
  const auto address =
      ObjectPtr<GSocketAddress>(g_inet_socket_address_new_from_string(options.host.c_str(), options.port));
  if (!address) throw StartError("not an address to listen on: " + options.host);
  if (!soup_server_listen(server_.get(), address.get(), flags, &error))
    fail("cannot listen on " + options.host + ":" + std::to_string(options.port), error);
}

std::string Server::address() const {
  GSList* uris = soup_server_get_uris(server_.get());
  const GCharPtr text(g_uri_to_string(static_cast<GUri*>(uris->data)));
  g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
  std::string address = text.get();
  if (address.ends_with('/')) address.pop_back();
  return address;
}

}  // namespace orivex::devserver
