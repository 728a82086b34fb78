#include "Agent.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "../http/GHandles.h"

namespace orivex::devserver {
namespace {

using nlohmann::json;

int code(MessageType type) {
  return static_cast<int>(type);
}

/// A string in an object of unknown shape; empty when there is none.
std::string stringIn(const json& object, const char* key) {
  if (!object.is_object()) return {};
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

json menu(MenuType type, const char* title, std::string command) {
  return {
      {"type", static_cast<int>(type)}, {"title", title}, {"command", std::move(command)}, {"visible", {"visitor"}}};
}

json field(const char* key, const char* value) {
  return {{"key", key}, {"value", value}};
}

json shortcut(const char* title, const char* command) {
  return {{"title", title}, {"shortcutType", 1}, {"command", command}};
}

/// Whether any of the words is in the text, whose letters are lower-case already.
bool mentions(const std::string& text, std::initializer_list<std::string_view> words) {
  return std::ranges::any_of(words, [&](auto word) { return text.find(word) != std::string::npos; });
}

}  // namespace

Language languageOf(std::string_view tag) {
  return tag.starts_with("zh") || tag.starts_with("ZH") ? Language::Chinese : Language::English;
}

const char* Agent::say(const char* chinese, const char* english) const {
  return language_ == Language::Chinese ? chinese : english;
}

std::string Agent::page(std::string_view name) const {
  return base_ + "/chat-page/" + std::string(name);
}

json Agent::profile() const {
  return {{"name", say("小薇", "Vera")},
          {"title", say("在线客服 · 通常一分钟内回复", "Support · usually replies within a minute")}};
}

AgentAnswer Agent::text(std::string content) const {
  return {.messageBody = {{"msgType", code(MessageType::Text)}, {"content", std::move(content)}}};
}

std::vector<AgentAnswer> Agent::greeting() const {
  return {text(say("您好，我是客服小薇，很高兴为您服务。", "Hello, I'm Vera from support. Nice to meet you.")), help()};
}

AgentAnswer Agent::help() const {
  auto answer = text(say("请问您想了解什么？", "What can I help you with?"));
  answer.shortcuts = {shortcut(say("查询订单", "My order"), "order"), shortcut(say("退换货政策", "Returns"), "link"),
                      shortcut(say("催促发货", "Hurry it up"), "hurry"), shortcut(say("帮助", "Help"), "help")};
  return answer;
}

AgentAnswer Agent::link() const {
  return {.messageBody = {{"msgType", code(MessageType::Link)},
                          {"linkUrl", page("guide.html")},
                          {"title", say("七天无理由退换货", "Free returns within seven days")},
                          {"link_description",
                           say("三步完成：申请、寄回、退款到账。", "Three steps: ask, send it back, get your money.")},
                          {"imageUrl", page("parcel.svg")},
                          {"openMethod", 1}}};
}

json Agent::orderItems() const {
  json headphones{{"customCardName", say("云感降噪耳机", "Cloud headphones")},
                  {"customCardDesc", say("雾蓝 · 一年质保", "Mist blue · one-year warranty")},
                  {"customCardLink", page("guide.html#headphones")},
                  {"customCardThumbnail", page("headphones.svg")},
                  {"customCardAmountSymbol", say("¥", "€")},
                  {"customCardAmount", say("699.00", "89.00")},
                  {"customCardOriginalAmount", say("899.00", "119.00")},
                  {"customCardAmountName", say("到手价", "You pay")},
                  {"customFields", {field(say("数量", "Quantity"), "× 1")}}};
  json lamp{{"customCardName", say("晨光阅读灯", "Dawn reading lamp")},
            {"customCardDesc", say("暖白 · 三档调光", "Warm white · three levels")},
            {"customCardThumbnail", page("lamp.svg")},
            {"customCardAmountSymbol", say("¥", "€")},
            {"customCardAmount", say("159.00", "21.50")},
            {"customFields", {field(say("数量", "Quantity"), "× 2")}}};
  return {std::move(headphones), std::move(lamp)};
}

json Agent::orderMenus() const {
  return {menu(MenuType::Command, say("催促发货", "Hurry it up"), "hurry"),
          menu(MenuType::Command, say("修改地址", "Change address"), "address"),
          menu(MenuType::Link, say("退换货政策", "Returns"), page("guide.html"))};
}

AgentAnswer Agent::order() const {
  return {.messageBody = {{"msgType", code(MessageType::Card)},
                          {"cardType", 1},
                          {"title", say("订单 2024 0611 8842", "Order 2024 0611 8842")},
                          {"cardGuide", say("最近的一笔订单", "Your latest order")},
                          {"cardDesc", say("预计明天 18:00 前送达", "Arrives tomorrow before 18:00")},
                          {"cardLink", page("guide.html#order")},
                          {"button", say("查看订单详情", "See the order")},
                          {"customFields",
                           {field(say("状态", "Status"), say("运输中", "On its way")),
                            field(say("实付", "Paid"), say("¥1,017.00", "€132.00"))}},
                          {"customItems", orderItems()},
                          {"customMenus", orderMenus()}}};
}

std::vector<AgentAnswer> Agent::answerCommand(std::string_view command) const {
  if (command == "order") return {text(say("为您找到最近的订单：", "Here is your latest order:")), order()};
  if (command == "link") return {link()};
  if (command == "hurry") return {text(say("已为您加急，仓库会优先处理。", "Done. The warehouse will put it first."))};
  if (command == "address") return {text(say("请把新的收货地址发给我。", "Please send me the new address."))};
  if (command == "help") return {help()};
  return {};
}

std::vector<AgentAnswer> Agent::answerText(const std::string& content) const {
  const GCharPtr lowered(g_utf8_strdown(content.c_str(), -1));
  const std::string words = lowered.get();
  if (mentions(words, {"订单", "物流", "order", "parcel"})) return answerCommand("order");
  if (mentions(words, {"链接", "退货", "退换", "link", "return"})) return answerCommand("link");
  if (mentions(words, {"帮助", "help"})) return answerCommand("help");
  if (mentions(words, {"谢谢", "感谢", "thank"}))
    return {text(say("不客气，祝您生活愉快。", "You're welcome. Have a lovely day."))};
  return {text(say("您说的是：「", "You said: “") + content + say("」", "”"))};
}

std::vector<AgentAnswer> Agent::answer(const json& message) const {
  const auto body = message.is_object() ? message.value("messageBody", json::object()) : json::object();
  if (auto answers = answerCommand(stringIn(message, "optionSelected")); !answers.empty()) return answers;
  if (const auto content = stringIn(body, "content"); !content.empty()) return answerText(content);

  const auto type = body.is_object() && body.contains("msgType") && body["msgType"].is_number_integer()
                        ? static_cast<MessageType>(body["msgType"].get<int>())
                        : MessageType::Text;
  switch (type) {
    case MessageType::Image:
      return {text(say("图片收到了，看得很清楚。", "Got your picture, nice and clear."))};
    case MessageType::Voice:
      return {text(say("语音收到了，我听一下。", "Got your voice message, listening now."))};
    case MessageType::Video:
      return {text(say("视频收到了，稍等我看一下。", "Got your video, give me a moment."))};
    case MessageType::File:
      return {text(say("文件收到了：", "Got your file: ") + stringIn(body, "fileName"))};
    case MessageType::Card:
      return {text(say("收到您发来的卡片：", "Got your card: ") + stringIn(body, "title"))};
    default:
      return {text(say("收到。", "Got it."))};
  }
}

}  // namespace orivex::devserver
