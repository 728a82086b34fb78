#include "ChatSocket.h"

#include <iostream>
#include <string_view>
#include <utility>
#include <vector>

#include "../faults/FaultyReply.h"
#include "../http/Reply.h"

namespace orivex::devserver {
namespace {

using nlohmann::json;

constexpr const char* socketPath = "/chat-socket";
constexpr const char* socketKey = "orivex-socket";
/// A visitor's message is text or a description; more than this is a mistake.
constexpr guint64 mostFrameBytes = 256U << 10U;

/// Whether the connection was still open for it.
bool send(SoupWebsocketConnection* connection, const json& frame) {
  if (soup_websocket_connection_get_state(connection) != SOUP_WEBSOCKET_STATE_OPEN) return false;
  soup_websocket_connection_send_text(connection, toText(frame).c_str());
  return true;
}

std::string stringOr(const json& object, const char* key, const char* otherwise) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : otherwise;
}

}  // namespace

ChatSocket::~ChatSocket() {
  for (const auto& [connection, client] : clients_) g_signal_handlers_disconnect_by_data(connection, this);
  for (const auto& [session, visit] : visits_)
    if (visit->typing) g_source_remove(visit->typing);
}

void ChatSocket::addTo(SoupServer* server) {
  const auto check = [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer self) {
    static_cast<ChatSocket*>(self)->checkHandshake(message);
  };
  const auto opened = [](SoupServer*, SoupServerMessage* message, const char*, SoupWebsocketConnection* connection,
                         gpointer self) { static_cast<ChatSocket*>(self)->accept(message, connection); };
  soup_server_add_handler(server, socketPath, check, this, nullptr);
  soup_server_add_websocket_handler(server, socketPath, nullptr, nullptr, opened, this, nullptr);
}

/// Leaves a request that may go on without a status: the server then completes the handshake.
void ChatSocket::checkHandshake(SoupServerMessage* message) {
  if (const auto plan = faults_.take(FaultTarget::Socket); plan.fault) return answerWithPlan(message, plan, [] {});
  const auto refusal = tokens_.refusal(queryValue(rawQuery(message), "access_token").value_or(""));
  if (!refusal.empty()) return replyError(message, SOUP_STATUS_UNAUTHORIZED, refusal);
  // The handshake's end hides the socket behind streams; it is wanted for breaking off.
  auto* socket = G_OBJECT(soup_server_message_get_socket(message));
  g_object_set_data_full(G_OBJECT(message), socketKey, g_object_ref(socket), g_object_unref);
}

void ChatSocket::accept(SoupServerMessage* message, SoupWebsocketConnection* connection) {
  soup_websocket_connection_set_max_incoming_payload_size(connection, mostFrameBytes);
  const auto onMessage = [](SoupWebsocketConnection* from, gint kind, GBytes* bytes, gpointer self) {
    if (kind == SOUP_WEBSOCKET_DATA_TEXT) static_cast<ChatSocket*>(self)->receive(from, bytes);
  };
  const auto onClosed = [](SoupWebsocketConnection* from, gpointer self) {
    static_cast<ChatSocket*>(self)->forget(from);
  };
  g_signal_connect(connection, "message", G_CALLBACK(+onMessage), this);
  g_signal_connect(connection, "closed", G_CALLBACK(+onClosed), this);
  clients_[connection] = {share(connection), share(G_SOCKET(g_object_get_data(G_OBJECT(message), socketKey))),
                          baseAddress(message), nullptr};
}

void ChatSocket::forget(SoupWebsocketConnection* connection) {
  clients_.erase(connection);
}

bool ChatSocket::tell(const Visit& visit, const json& frame) const {
  bool reached = false;
  for (const auto& [connection, client] : clients_)
    if (client.visit == &visit) reached |= send(connection, frame);
  return reached;
}

void ChatSocket::dropAll() {
  for (const auto& [connection, client] : clients_) g_socket_shutdown(client.socket.get(), TRUE, TRUE, nullptr);
}

void ChatSocket::receive(SoupWebsocketConnection* connection, GBytes* bytes) {
  const auto frame = fromText(bytes);
  const auto client = clients_.find(connection);
  if (!frame.is_object() || client == clients_.end()) return;
  const auto type = stringOr(frame, "type", "");
  if (type == "hello")
    greet(client->second, frame);
  else if (type == "message" && client->second.visit)
    takeMessage(client->second, frame);
}

void ChatSocket::greet(Client& client, const json& hello) {
  const auto session = stringOr(hello, "session", "");
  auto& visit = visits_[session];
  if (!visit) visit = std::make_unique<Visit>(session);
  client.visit = visit.get();
  auto* const connection = client.connection.get();
  visit->language = languageOf(stringOr(hello, "language", "zh"));

  const Agent agent(visit->language, client.base);
  auto profile = agent.profile();
  profile["type"] = "agent";
  send(connection, profile);
  const auto after = hello.find("after");
  const auto seen = after != hello.end() && after->is_number_integer() ? after->get<std::int64_t>() : 0;
  const auto last = visit->conversation.lastId();
  send(connection, {{"type", "history"},
                    {"messages", visit->conversation.framesAfter(seen > last ? 0 : seen)},
                    {"lastId", last},
                    {"unread", std::exchange(visit->unread, 0)}});
  if (visit->typing) send(connection, {{"type", "typing"}, {"on", true}});
  if (visit->conversation.isEmpty() && visit->pending.empty()) say(*visit, agent.greeting());
}

void ChatSocket::takeMessage(Client& client, const json& frame) {
  const auto message = frame.find("message");
  if (message == frame.end() || !message->is_object()) return;
  auto& visit = *client.visit;
  const auto kept = visit.conversation.addVisitorMessage(*message);
  if (kept.is_null()) return;
  tell(visit, kept);
  say(visit, Agent(visit.language, client.base).answer(*message));
}

void ChatSocket::say(Visit& visit, std::vector<AgentAnswer> answers) {
  for (auto& answer : answers) visit.pending.push_back(std::move(answer));
  if (!visit.typing && !visit.pending.empty()) type(visit);
}

void ChatSocket::type(Visit& visit) {
  struct Typing {
    ChatSocket* self;
    Visit* visit;
  };
  const GSourceFunc done = [](gpointer data) -> gboolean {
    const auto& typing = *static_cast<Typing*>(data);
    typing.self->finishTyping(*typing.visit);
    return G_SOURCE_REMOVE;
  };
  const GDestroyNotify release = [](gpointer data) { std::unique_ptr<Typing>(static_cast<Typing*>(data)); };
  tell(visit, {{"type", "typing"}, {"on", true}});
  auto typing = std::make_unique<Typing>(Typing{this, &visit});
  visit.typing = g_timeout_add_full(G_PRIORITY_DEFAULT, agentDelay_, done, typing.release(), release);
}

void ChatSocket::finishTyping(Visit& visit) {
  visit.typing = 0;
  auto answer = std::move(visit.pending.front());
  visit.pending.pop_front();
  tell(visit, {{"type", "typing"}, {"on", false}});
  const auto said = visit.conversation.addAgentMessage(std::move(answer.messageBody), std::move(answer.shortcuts));
  if (!tell(visit, said)) std::cout << "unread " << ++visit.unread << std::endl;
  if (!visit.pending.empty()) type(visit);
}

}  // namespace orivex::devserver
