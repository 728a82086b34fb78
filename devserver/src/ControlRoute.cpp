#include "ControlRoute.h"

#include <iostream>
#include <string_view>
#include <vector>

#include "http/GHandles.h"
#include "http/Reply.h"

namespace orivex::devserver {
namespace {

using nlohmann::json;

json bodyOf(SoupServerMessage* message) {
  const GBytesPtr body(soup_message_body_flatten(soup_server_message_get_request_body(message)));
  return fromText(body.get());
}

/// One fault or an array of them. Throws FaultError when one of them is wrong.
std::vector<Fault> faultsIn(const json& body) {
  if (!body.is_array()) return {faultFromJson(body)};
  std::vector<Fault> faults;
  for (const auto& object : body) faults.push_back(faultFromJson(object));
  return faults;
}

bool isMethod(SoupServerMessage* message, std::string_view method) {
  return soup_server_message_get_method(message) == method;
}

/// One line with the name and the body of what a developer's own page posted.
void printPost(SoupServerMessage* message) {
  if (!allowMethods(message, "POST")) return;
  const auto post = bodyOf(message);
  const auto name = post.is_object() ? post.value("name", json()) : json();
  if (!name.is_string()) return replyError(message, SOUP_STATUS_BAD_REQUEST, "expected an object with a name");
  const auto quoted = toText(name);  // escapes line ends
  std::cout << quoted.substr(1, quoted.size() - 2) << ' ' << toText(post.value("body", json())) << std::endl;
  replyJson(message, SOUP_STATUS_OK, nullptr);
}

}  // namespace

void ControlRoute::addTo(SoupServer* server) {
  const auto faults = [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer self) {
    static_cast<ControlRoute*>(self)->serveFaults(message);
  };
  const auto log = [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer self) {
    static_cast<ControlRoute*>(self)->serveLog(message);
  };
  const auto posts = [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer) {
    printPost(message);
  };
  soup_server_add_handler(server, "/_dev/posts", posts, nullptr, nullptr);
  soup_server_add_handler(server, "/_dev/faults", faults, this, nullptr);
  soup_server_add_handler(server, "/_dev/log", log, this, nullptr);
}

void ControlRoute::serveFaults(SoupServerMessage* message) {
  if (!allowMethods(message, "GET, POST, DELETE")) return;
  if (isMethod(message, "DELETE")) faults_.clear();
  if (isMethod(message, "POST") && !addFaults(message)) return;
  json list = json::array();
  for (const auto& fault : faults_.current()) list.push_back(toJson(fault));
  replyJson(message, SOUP_STATUS_OK, list);
}

bool ControlRoute::addFaults(SoupServerMessage* message) {
  std::vector<Fault> faults;
  try {
    faults = faultsIn(bodyOf(message));
  } catch (const FaultError& error) {
    replyError(message, SOUP_STATUS_BAD_REQUEST, error.what());
    return false;
  }
  for (auto& fault : faults) {
    if (fault.kind == FaultKind::Drop)
      socket_.dropAll();
    else
      faults_.add(std::move(fault));
  }
  return true;
}

void ControlRoute::serveLog(SoupServerMessage* message) {
  if (!allowMethods(message, "GET, DELETE")) return;
  if (isMethod(message, "DELETE")) log_.clear();
  replyJson(message, SOUP_STATUS_OK, log_.entries());
}

}  // namespace orivex::devserver
