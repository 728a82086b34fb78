#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace orivex::devserver {

/// The language that the page asks for.
enum class Language { Chinese, English };

/// The language of a tag such as "zh-CN" or "en-GB"; anything that is not Chinese is answered in English.
[[nodiscard]] Language languageOf(std::string_view tag);

/// What a message holds; `msgType` and `mType` of the message record.
enum class MessageType { Text = 1, Image = 2, Voice = 3, Video = 4, File = 5, Link = 6, Card = 7 };

/// What a card's menu does; `type` of the menu record.
enum class MenuType { Command = 1, Link = 2 };

/// One answer: a message body, and the quick replies offered with it, each a shortcut record.
struct AgentAnswer {
  nlohmann::json messageBody;
  nlohmann::json shortcuts = nlohmann::json::array();
};

/// A simple support agent: greets, understands a few words in both languages and repeats the rest.
class Agent {
 public:
  /// `base` is the server's address as the visitor's page knows it; links and pictures lie under it.
  Agent(Language language, std::string base) : language_(language), base_(std::move(base)) {}

  /// The agent as the page shows it: `name` and `title`.
  [[nodiscard]] nlohmann::json profile() const;
  [[nodiscard]] std::vector<AgentAnswer> greeting() const;
  /// Answers a visitor's message, a message record of any shape.
  [[nodiscard]] std::vector<AgentAnswer> answer(const nlohmann::json& message) const;

 private:
  [[nodiscard]] const char* say(const char* chinese, const char* english) const;
  [[nodiscard]] std::string page(std::string_view name) const;
  [[nodiscard]] AgentAnswer text(std::string content) const;
  [[nodiscard]] AgentAnswer help() const;
  [[nodiscard]] AgentAnswer link() const;
  [[nodiscard]] AgentAnswer order() const;
  [[nodiscard]] nlohmann::json orderItems() const;
  [[nodiscard]] nlohmann::json orderMenus() const;
  [[nodiscard]] std::vector<AgentAnswer> answerCommand(std::string_view command) const;
  [[nodiscard]] std::vector<AgentAnswer> answerText(const std::string& content) const;

  const Language language_;
  const std::string base_;
};

}  // namespace orivex::devserver
