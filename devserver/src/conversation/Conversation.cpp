#include "Conversation.h"

#include <utility>

#include <glib.h>

namespace orivex::devserver {
namespace {

using nlohmann::json;

/// A page that comes back draws them all.
constexpr std::size_t mostFrames = 200;
/// `memberType` of the message record.
constexpr int visitor = 1;
constexpr int agent = 2;
/// `msgStatus` of a message that the server has.
constexpr int delivered = 1;

}  // namespace

json Conversation::keep(json message, json shortcuts) {
  message["mId"] = ++lastId_;
  message["createTime"] = g_get_real_time() / 1000;
  message["sessionId"] = sessionId_;
  message["msgStatus"] = delivered;
  json frame{{"type", "message"}, {"message", std::move(message)}};
  if (!shortcuts.empty()) frame["shortcuts"] = std::move(shortcuts);
  history_.push_back(frame);
  if (history_.size() > mostFrames) history_.pop_front();
  return frame;
}

json Conversation::addVisitorMessage(json message) {
  const auto clientId = message.find("cMid");
  if (clientId != message.end() && clientId->is_string() && !clientIds_.insert(clientId->get<std::string>()).second)
    return nullptr;
  message["memberType"] = visitor;
  return keep(std::move(message), json::array());
}

json Conversation::addAgentMessage(json messageBody, json shortcuts) {
  json message{{"mType", messageBody.at("msgType")},
               {"memberType", agent},
               {"sUserId", "agent"},
               {"messageBody", std::move(messageBody)}};
  return keep(std::move(message), std::move(shortcuts));
}

std::vector<json> Conversation::framesAfter(std::int64_t after) const {
  std::vector<json> frames;
  for (const auto& frame : history_)
    if (frame.at("message").at("mId") > after) frames.push_back(frame);
  return frames;
}

}  // namespace orivex::devserver
