#include "ChatPage.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "../faults/FaultyReply.h"
#include "../http/GHandles.h"
#include "../http/Reply.h"

namespace orivex::devserver {
namespace {

constexpr std::string_view pagePath = "/api/oauth2/ciphertext/app/client_chat";
constexpr std::string_view assetPath = "/chat-page/";
constexpr std::string_view resourceRoot = "/orivex/devserver/page/";

/// Scripts only from files of ours. Styles inline as well: consoles that a host injects bring theirs that way.
constexpr const char* contentSecurityPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self' 'unsafe-inline'; font-src 'self' data:; "
    "img-src 'self' http: https: data: blob:; media-src 'self' http: https: data: blob:; "
    "connect-src 'self' ws: wss: data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

const char* contentTypeOf(std::string_view name) {
  if (name.ends_with(".html")) return "text/html; charset=utf-8";
  if (name.ends_with(".css")) return "text/css; charset=utf-8";
  if (name.ends_with(".js")) return "text/javascript; charset=utf-8";
  return "image/svg+xml";
}

void serveResource(SoupServerMessage* message, std::string_view name) {
  const auto path = std::string(resourceRoot).append(name);
  const GBytesPtr bytes(g_resources_lookup_data(path.c_str(), G_RESOURCE_LOOKUP_FLAGS_NONE, nullptr));
  if (!bytes) return replyError(message, SOUP_STATUS_NOT_FOUND, "no such file");
  auto* headers = soup_server_message_get_response_headers(message);
  soup_message_headers_replace(headers, "Cache-Control", "no-cache");
  soup_message_headers_replace(headers, "Content-Security-Policy", contentSecurityPolicy);
  soup_message_headers_replace(headers, "X-Content-Type-Options", "nosniff");
  soup_message_headers_replace(headers, "Referrer-Policy", "no-referrer");
  gsize size = 0;
  const auto* data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
  reply(message, SOUP_STATUS_OK, contentTypeOf(name), {data, size});
}

void serveAsset(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, gpointer) {
  const std::string_view whole = path;
  if (allowMethods(message, "GET, HEAD"))
    serveResource(message, whole.substr(std::min(assetPath.size(), whole.size())));
}

}  // namespace

void ChatPage::addTo(SoupServer* server) {
  const auto page = [](SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, gpointer self) {
    if (path != pagePath) return replyError(message, SOUP_STATUS_NOT_FOUND, "no such address");
    static_cast<ChatPage*>(self)->servePage(message);
  };
  const auto root = [](SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, gpointer self) {
    static_cast<ChatPage*>(self)->serveRoot(message, path);
  };
  soup_server_add_handler(server, "/", root, this, nullptr);
  soup_server_add_handler(server, std::string(pagePath).c_str(), page, this, nullptr);
  if (!own_) soup_server_add_handler(server, std::string(assetPath).c_str(), serveAsset, nullptr, nullptr);
}

void ChatPage::serveRoot(SoupServerMessage* message, std::string_view path) const {
  if (path == "/") {  // for a developer's browser, opened at the address that the server printed
    const auto token = GCharPtr(g_uri_escape_string(tokens_.example().c_str(), nullptr, FALSE));
    const auto target = std::string(pagePath) + "?access_token=" + token.get() + "&x-entry=browser";
    return soup_server_message_set_redirect(message, SOUP_STATUS_FOUND, target.c_str());
  }
  if (!own_) return replyError(message, SOUP_STATUS_NOT_FOUND, "no such address");
  const auto besidePage = pagePath.substr(0, pagePath.rfind('/'));
  if (path.starts_with(besidePage)) path.remove_prefix(besidePage.size());
  if (allowMethods(message, "GET, HEAD")) own_->serve(message, path);
}

void ChatPage::servePage(SoupServerMessage* message) {
  if (!allowMethods(message, "GET, HEAD")) return;
  auto plan = faults_.take(FaultTarget::Page);
  if (plan.fault && plan.fault->kind == FaultKind::Redirect && queryValue(rawQuery(message), "redirected"))
    plan.fault.reset();
  answerWithPlan(message, plan, [this, message] { answerPage(message); });
}

void ChatPage::answerPage(SoupServerMessage* message) const {
  const auto refusal = tokens_.refusal(queryValue(rawQuery(message), "access_token").value_or(""));
  if (!refusal.empty()) return replyError(message, SOUP_STATUS_UNAUTHORIZED, refusal);
  own_ ? own_->serveIndex(message) : serveResource(message, "chat.html");
}

}  // namespace orivex::devserver
