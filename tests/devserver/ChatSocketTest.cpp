#include <deque>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <libsoup/soup.h>

#include "ServerProcess.h"
#include "support/MainLoop.h"

namespace orivex::testing {
namespace {

using nlohmann::json;

constexpr double patience = 10;  // seconds

/// The chat page's end of the web socket.
class Visitor {
 public:
  explicit Visitor(const ServerProcess& server, const std::string& token = "K") : session_(soup_session_new()) {
    const auto address = "ws" + server.address().substr(4) + "/chat-socket?access_token=" + token;
    const ObjectPtr<SoupMessage> request(soup_message_new("GET", address.c_str()));
    soup_session_websocket_connect_async(session_.get(), request.get(), nullptr, nullptr, G_PRIORITY_DEFAULT, nullptr,
                                         onConnected, this);
    gtk::wait([this] { return answered_; }, patience);
  }
  Visitor(const Visitor&) = delete;
  Visitor& operator=(const Visitor&) = delete;
  ~Visitor() {
    if (connection_) g_signal_handlers_disconnect_by_data(connection_.get(), this);
  }

  [[nodiscard]] bool isConnected() const { return connection_ != nullptr; }

  void send(const std::string& text) { soup_websocket_connection_send_text(connection_.get(), text.c_str()); }
  void hello(const std::string& language, int after = 0, const std::string& session = "s") {
    send(json{{"type", "hello"}, {"session", session}, {"language", language}, {"after", after}}.dump());
  }
  void say(const std::string& content, const std::string& clientId) {
    const json body{{"msgType", 1}, {"content", content}};
    send(json{{"type", "message"}, {"message", {{"cMid", clientId}, {"messageBody", body}}}}.dump());
  }

  /// The next frame, or null when none comes.
  json next() {
    gtk::wait([this] { return !frames_.empty() || closed_; }, patience);
    if (frames_.empty()) return nullptr;
    auto frame = frames_.front();
    frames_.pop_front();
    return frame;
  }
  /// The next message of the agent's.
  json nextAnswer() {
    for (auto frame = next(); !frame.is_null(); frame = next())
      if (frame.at("type") == "message" && frame.at("message").at("memberType") == 2) return frame;
    return nullptr;
  }
  json nextHistory() {
    for (auto frame = next(); !frame.is_null(); frame = next())
      if (frame.at("type") == "history") return frame;
    return nullptr;
  }
  void close() { soup_websocket_connection_close(connection_.get(), SOUP_WEBSOCKET_CLOSE_NORMAL, nullptr); }
  void waitForClose() {
    EXPECT_TRUE(gtk::wait([this] { return closed_; }, patience));
  }

 private:
  static void onConnected(GObject* session, GAsyncResult* result, gpointer self) {
    auto& visitor = *static_cast<Visitor*>(self);
    visitor.answered_ = true;
    visitor.connection_.reset(soup_session_websocket_connect_finish(SOUP_SESSION(session), result, nullptr));
    if (!visitor.connection_) return;
    g_signal_connect(visitor.connection_.get(), "message", G_CALLBACK(onMessage), self);
    g_signal_connect(visitor.connection_.get(), "closed", G_CALLBACK(onClosed), self);
  }
  static void onMessage(SoupWebsocketConnection*, gint, GBytes* bytes, gpointer self) {
    gsize size = 0;
    const auto* text = static_cast<const char*>(g_bytes_get_data(bytes, &size));
    static_cast<Visitor*>(self)->frames_.push_back(json::parse(text, text + size));
  }
  static void onClosed(SoupWebsocketConnection*, gpointer self) { static_cast<Visitor*>(self)->closed_ = true; }

  ObjectPtr<SoupSession> session_;
  ObjectPtr<SoupWebsocketConnection> connection_;
  std::deque<json> frames_;
  bool answered_ = false;
  bool closed_ = false;
};

TEST(ChatSocket, IsOpenToValidTokensOnly) {
  const ServerProcess server;
  EXPECT_TRUE(Visitor(server).isConnected());
  EXPECT_FALSE(Visitor(server, "expired-1").isConnected());
  EXPECT_FALSE(Visitor(server, "").isConnected());
  server.addFaults({{"target", "socket"}, {"kind", "status"}, {"times", 1}});
  EXPECT_FALSE(Visitor(server).isConnected());
  EXPECT_TRUE(Visitor(server).isConnected());
}

TEST(ChatSocket, GreetsInThePagesLanguageAndTypesBeforeItSpeaks) {
  const ServerProcess server;
  for (const auto& [language, name, greeting] :
       {std::tuple{"zh-CN", "小薇", "您好"}, {"en-GB", "Vera", "Hello"}, {"fr", "Vera", "Hello"}}) {
    Visitor visitor(server);
    visitor.hello(language, 0, language);
    const auto profile = visitor.next();
    EXPECT_EQ(profile.at("type"), "agent");
    EXPECT_EQ(profile.at("name"), name);
    EXPECT_EQ(visitor.next(), json({{"type", "history"}, {"messages", json::array()}, {"lastId", 0}, {"unread", 0}}));
    EXPECT_EQ(visitor.next(), json({{"type", "typing"}, {"on", true}}));
    EXPECT_EQ(visitor.next(), json({{"type", "typing"}, {"on", false}}));
    const auto first = visitor.next();
    EXPECT_TRUE(first.at("message").at("messageBody").at("content").get<std::string>().starts_with(greeting)) << first;
    EXPECT_GE(visitor.nextAnswer().at("shortcuts").size(), 3U);
  }
}

TEST(ChatSocket, TellsAPageThatComesBackWhatItMissedAndAnswersNothingTwice) {
  const ServerProcess server;
  Visitor before(server);
  before.hello("zh");
  before.nextAnswer();
  const int lastSeen = before.nextAnswer().at("message").at("mId");
  before.say("第一句", "c1");
  before.nextAnswer();
  server.addFaults({{"target", "socket"}, {"kind", "drop"}});
  before.waitForClose();

  // The page did not see the confirmation, so it sends the sentence again.
  Visitor after(server);
  after.hello("zh", lastSeen);
  after.say("第一句", "c1");
  after.say("第二句", "c2");
  std::vector<std::string> heard;
  while (heard.size() < 4) {
    const auto frame = after.next();
    ASSERT_FALSE(frame.is_null());
    const auto messages = frame.at("type") == "history" ? frame.at("messages") : json::array({frame});
    for (const auto& message : messages)
      if (message.at("type") == "message") heard.push_back(message.at("message").at("messageBody").at("content"));
  }
  EXPECT_EQ(heard, (std::vector<std::string>{"第一句", "您说的是：「第一句」", "第二句", "您说的是：「第二句」"}));
}

TEST(ChatSocket, CountsWhatIsSaidWhileNoPageOfTheVisitorsIsThere) {
  ServerProcess server({"--agent-delay", "200"});
  Visitor first(server);
  first.hello("zh");
  first.nextAnswer();
  first.nextAnswer();
  Visitor second(server);
  second.hello("zh");
  EXPECT_EQ(second.nextHistory().at("messages").size(), 2U);
  second.say("一", "c1");
  EXPECT_EQ(first.nextAnswer(), second.nextAnswer()) << "each page of the visitor's is told";
  first.close();
  first.waitForClose();
  second.say("二", "c2");
  second.close();

  Visitor other(server);
  other.hello("zh", 0, "other");
  other.nextAnswer();  // as long as the agent takes for the answer that nobody hears
  Visitor third(server);
  third.hello("zh", 99);
  const auto history = third.nextHistory();
  EXPECT_EQ(history.at("messages").size(), 6U) << "the page knows another server's messages";
  EXPECT_EQ(history.at("lastId"), 6);
  EXPECT_EQ(history.at("unread"), 1);
  Visitor fourth(server);
  fourth.hello("zh", 6);
  EXPECT_EQ(fourth.nextHistory().at("unread"), 0);
  server.closeInput();
  EXPECT_EQ(server.restOfOutput(), "unread 1\n");
}

TEST(ChatSocket, IgnoresFramesThatItDoesNotUnderstand) {
  const ServerProcess server;
  Visitor visitor(server);
  for (const char* frame : {"", "nonsense", "[]", "null", "{}", R"({"type":7})", R"({"type":"message"})",
                            R"({"type":"message","message":7})", R"({"type":"hello","session":7,"after":"x"})",
                            R"({"type":"message","message":{"cMid":7,"messageBody":"x","optionSelected":[]}})"})
    visitor.send(frame);
  Visitor other(server);
  other.hello("en", 0, "other");
  EXPECT_EQ(other.next().at("name"), "Vera");
}

}  // namespace
}  // namespace orivex::testing
