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
/// the page sends {"type":"hello","session":VISITOR,"language":TAG,"after":LAST_ID} first and then
/// {"type":"message","message":RECORD}; the server answers the first with {"type":"agent",...} and
/// {"type":"history","messages":[...],"lastId":ID,"unread":COUNT}, and sends {"type":"typing","on":BOOL} and
/// {"type":"message","message":RECORD,"shortcuts":[...]}, the visitor's own messages included. The history holds such
/// message frames from after LAST_ID on, or all of them when this server never gave that identifier; `unread` is how
/// many answers came while no page of the visitor's was connected.
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
    Language language = Language::Chinese;
    /// Answers that the agent has yet to type.
    std::deque<AgentAnswer> pending;
    guint typing = 0;
    /// Answers that came while no page was connected.
    unsigned unread = 0;
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
  /// Sends to every page of the visitor's; whether there was one.
  bool tell(const Visit& visit, const nlohmann::json& frame) const;
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
