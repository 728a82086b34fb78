#pragma once

#include <deque>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include <libsoup/soup.h>

#include "../faults/Faults.h"
#include "../http/GHandles.h"
#include "../http/Tokens.h"
#include "Agent.h"
#include "Conversation.h"

namespace orivex::devserver {

/// The web socket between the chat page and the agent, at /chat-socket?access_token=TOKEN. Text frames of JSON:
/// the page sends {"type":"hello","session":ID,"language":TAG,"after":LAST_ID} first and then
/// {"type":"message","message":RECORD}; the server sends {"type":"agent",...}, {"type":"typing","on":BOOL} and
/// {"type":"message","message":RECORD,"shortcuts":[...]}, the visitor's own messages included.
class ChatSocket {
 public:
  /// The references must outlive the server's handlers. `agentDelay` is how long the agent types, in milliseconds.
  ChatSocket(const Tokens& tokens, Faults& faults, unsigned agentDelay)
      : tokens_(tokens), faults_(faults), agentDelay_(agentDelay) {}
  ChatSocket(const ChatSocket&) = delete;
  ChatSocket& operator=(const ChatSocket&) = delete;
  ~ChatSocket();

  void addTo(SoupServer* server);

  /// Breaks all open connections off, as a network that goes away does.
  void dropAll();

 private:
  /// A conversation with what is going on in it now.
  struct Visit {
    explicit Visit(const std::string& sessionId) : conversation(sessionId) {}
    Conversation conversation;
    /// The page's present connection; null while it is away.
    SoupWebsocketConnection* connection = nullptr;
    Language language = Language::Chinese;
    /// Answers that the agent has yet to type.
    std::deque<AgentAnswer> pending;
    guint typing = 0;
  };

  struct Client {
    ObjectPtr<SoupWebsocketConnection> connection;
    ObjectPtr<GSocket> socket;
    std::string base;
    Visit* visit = nullptr;
  };

  void checkHandshake(SoupServerMessage* message);
  void accept(SoupServerMessage* message, SoupWebsocketConnection* connection);
  void receive(SoupWebsocketConnection* connection, GBytes* bytes);
  void forget(SoupWebsocketConnection* connection);
  void greet(Client& client, const nlohmann::json& hello);
  void takeMessage(Client& client, const nlohmann::json& frame);
  void say(Visit& visit, std::vector<AgentAnswer> answers);
  void type(Visit& visit);
  void finishTyping(Visit& visit);

  const Tokens& tokens_;
  Faults& faults_;
  const unsigned agentDelay_;
  std::map<std::string, std::unique_ptr<Visit>> visits_;
  std::map<SoupWebsocketConnection*, Client> clients_;
};

}  // namespace orivex::devserver
