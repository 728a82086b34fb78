#include "Reply.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "GHandles.h"

namespace orivex::devserver {

using nlohmann::json;

std::string toText(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

json fromText(GBytes* bytes) {
  constexpr int deepest = 64;
  gsize size = 0;
  const auto* text = static_cast<const char*>(g_bytes_get_data(bytes, &size));
  const auto keep = [](int depth, json::parse_event_t, json&) { return depth < deepest; };
  return json::parse(text, text + size, keep, false);
}

void reply(SoupServerMessage* message, unsigned status, const char* contentType, std::string_view body) {
  soup_server_message_set_status(message, status, nullptr);
  soup_server_message_set_response(message, contentType, SOUP_MEMORY_COPY, body.data(), body.size());
}

void replyJson(SoupServerMessage* message, unsigned status, const json& value) {
  reply(message, status, "application/json; charset=utf-8", toText(value));
}

void replyError(SoupServerMessage* message, unsigned status, std::string_view text) {
  replyJson(message, status, {{"msg", text}});
}

bool allowMethods(SoupServerMessage* message, std::string_view allowed) {
  const std::string method = soup_server_message_get_method(message);
  if ((", " + std::string(allowed) + ',').find(", " + method + ',') != std::string::npos) return true;
  soup_message_headers_replace(soup_server_message_get_response_headers(message), "Allow",
                               std::string(allowed).c_str());
  replyError(message, SOUP_STATUS_METHOD_NOT_ALLOWED, "method not allowed");
  return false;
}

const char* requestHeader(SoupServerMessage* message, const char* name) {
  return soup_message_headers_get_one(soup_server_message_get_request_headers(message), name);
}

std::string_view rawQuery(SoupServerMessage* message) {
  const char* query = g_uri_get_query(soup_server_message_get_uri(message));
  return query ? std::string_view(query) : std::string_view();
}

std::string baseAddress(SoupServerMessage* message) {
  GUri* address = soup_server_message_get_uri(message);
  const GUriPtr base(g_uri_build(G_URI_FLAGS_ENCODED, g_uri_get_scheme(address), nullptr, g_uri_get_host(address),
                                 g_uri_get_port(address), "", nullptr, nullptr));
  return GCharPtr(g_uri_to_string(base.get())).get();
}

std::optional<std::string> queryValue(std::string_view query, std::string_view name) {
  while (!query.empty()) {
    const auto end = std::min(query.find('&'), query.size());
    const auto pair = query.substr(0, end);
    query.remove_prefix(std::min(end + 1, query.size()));
    const auto equals = std::min(pair.find('='), pair.size());
    if (pair.substr(0, equals) != name) continue;
    const std::string raw(pair.substr(std::min(equals + 1, pair.size())));
    const GCharPtr decoded(g_uri_unescape_string(raw.c_str(), nullptr));
    return decoded ? std::string(decoded.get()) : raw;
  }
  return std::nullopt;
}

}  // namespace orivex::devserver
