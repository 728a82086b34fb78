#include "RequestLog.h"

#include <array>
#include <string_view>
#include <utility>

#include "Reply.h"

namespace orivex::devserver {
namespace {

using nlohmann::json;
using Entry = std::shared_ptr<json>;

constexpr std::size_t mostEntries = 500;
constexpr const char* entryKey = "orivex-log-entry";
constexpr std::array headersOfInterest{"accept",       "accept-language", "authorization", "content-length",
                                       "content-type", "expect",          "host",          "origin",
                                       "range",        "user-agent",      "x-device-id",   "x-entry"};

json describe(SoupServerMessage* message) {
  json headers = json::object();
  for (const char* name : headersOfInterest)
    if (const char* value = requestHeader(message, name)) headers[name] = value;
  return {{"method", soup_server_message_get_method(message)},
          {"path", g_uri_get_path(soup_server_message_get_uri(message))},
          {"query", rawQuery(message)},
          {"headers", std::move(headers)},
          {"status", 0}};
}

void noteStatus(SoupServerMessage* message, gpointer) {
  noteInLog(message, "status", soup_server_message_get_status(message));
}

}  // namespace

void RequestLog::watch(SoupServer* server) {
  static constexpr auto onHeaders = [](SoupServerMessage* message, gpointer self) {
    static_cast<RequestLog*>(self)->begin(message);
  };
  const auto onStarted = [](SoupServer*, SoupServerMessage* message, gpointer self) {
    g_signal_connect(message, "got-headers", G_CALLBACK(+onHeaders), self);
  };
  g_signal_connect(server, "request-started", G_CALLBACK(+onStarted), this);
}

void RequestLog::begin(SoupServerMessage* message) {
  if (std::string_view(g_uri_get_path(soup_server_message_get_uri(message))).starts_with("/_dev/")) return;
  auto entry = std::make_shared<json>(describe(message));
  (*entry)["id"] = nextId_++;
  entries_.push_back(entry);
  if (entries_.size() > mostEntries) entries_.pop_front();

  auto* kept = std::make_unique<Entry>(std::move(entry)).release();
  g_object_set_data_full(G_OBJECT(message), entryKey, kept,
                         [](gpointer data) { std::unique_ptr<Entry>(static_cast<Entry*>(data)); });
  g_signal_connect(message, "wrote-headers", G_CALLBACK(noteStatus), nullptr);
  g_signal_connect(message, "wrote-informational", G_CALLBACK(noteStatus), nullptr);
}

json RequestLog::entries() const {
  json list = json::array();
  for (const auto& entry : entries_) list.push_back(*entry);
  return list;
}

void noteInLog(SoupServerMessage* message, const char* key, json value) {
  if (auto* entry = static_cast<Entry*>(g_object_get_data(G_OBJECT(message), entryKey)))
    (**entry)[key] = std::move(value);
}

}  // namespace orivex::devserver
