#include "EventRecorder.h"

namespace orivex::demo {

void EventRecorder::unReadMessageCountEvent(std::int64_t count) {
  receiver_({unreadEvent, {{"count", std::to_string(count)}}});
}

void EventRecorder::shortCutEvent(const ShortcutsModel& model) {
  receiver_({"shortCut", {{"title", model.title.value_or("")}, {"command", model.command.value_or("")}}});
}

void EventRecorder::messageEvent(const std::shared_ptr<MessageModel>& model) {
  receiver_({"message", {{"content", model->messageBody ? model->messageBody->content.value_or("") : ""}}});
}

void EventRecorder::trackEvent(const std::string& name, const std::map<std::string, std::string>& attributes) {
  receiver_({name, attributes});
}

}  // namespace orivex::demo
