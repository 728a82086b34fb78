#include "ScriptMessageBridge.h"

#include <algorithm>
#include <charconv>

#include "ChatWebViewHost.h"
#include "PageOrigins.h"
#include "ScreenGuard.h"

#include "orivex/media/ChatManager.h"
#include "orivex/media/OVKFApiHelper.h"
#include "orivex/models/Codec.h"
#include "orivex/models/MessageModel.h"
#include "orivex/models/PageModels.h"
#include "orivex/models/ShortcutsModel.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Url.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/ProgressOverlay.h"
#include "orivex/sdk/OVKFApi.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex {
namespace {

// Far beyond what a page has to say; larger ones would hold the main thread.
constexpr std::size_t longestBody = std::size_t{8} << 20U;

// Lets the page paint what it announced before the placeholder fades.
constexpr double initLoadedDelay = 0.1;

// How the log calls what a JSON text is.
std::string_view kindOf(std::string_view json) {
  switch (json.empty() ? '\0' : json.front()) {
    case '{':
      return "an object";
    case '[':
      return "an array";
    case '"':
      return "a string";
    case 't':
    case 'f':
      return "a boolean";
    case 'n':
      return "null";
    default:
      return "a number";
  }
}

// The record in the body of a message; nothing, with a log line, when it is another one.
template <class Record>
std::optional<Record> record(std::string_view body, const char* name) {
  try {
    return decode<Record>(body);
  } catch (const DecodingError& error) {
    log::print(std::string("Error decoding ") + name + ": " + error.what());
    return std::nullopt;
  }
}

// The call of a global function of the page with one argument, which is JSON and therefore a script expression. The
// JSON goes to the log first when `logged`; a value that JSON cannot hold is a log line and no script.
template <class Value>
std::optional<std::string> scriptCall(std::string_view function, const Value& argument, bool logged = false) {
  try {
    const std::string opening = std::string(function) + "(";
    constexpr std::string_view closing = ");";
    auto script = encode(argument, opening, closing);
    if (logged) {
      const auto length = script.size() - opening.size() - closing.size();
      log::debugPrint(std::string_view(script).substr(opening.size(), length), log::Level::trace);
    }
    return script;
  } catch (const EncodingError& error) {
    log::debugPrint(std::string("Error serializing JSON: ") + error.what(), log::Level::warning);
    return std::nullopt;
  }
}

}  // namespace

const ScriptMessageBridge::Service ScriptMessageBridge::services[12] = {
    {"trackEvent", &ScriptMessageBridge::trackEvent, Body::object},
    {"openUrl", &ScriptMessageBridge::openUrl, Body::string, true, true},
    {"openFile", &ScriptMessageBridge::openFile, Body::string, false, true},
    {"openCamera", &ScriptMessageBridge::pick<&ChatManager::openCamera>, Body::object, false, true},
    {"openPhotoLibraryPicker", &ScriptMessageBridge::pick<&ChatManager::openPhotoLibrary>, Body::object, false, true},
    {"openDocumentPicker", &ScriptMessageBridge::pick<&ChatManager::openDocumentPicker>, Body::object, false, true},
    {"initLoaded", &ScriptMessageBridge::initLoaded, Body::any, true},
    {"recording", &ScriptMessageBridge::recording, Body::object, false, true},
    {"goBack", &ScriptMessageBridge::goBack, Body::any, true},
    {"shortCut", &ScriptMessageBridge::shortCut, Body::object},
    {"message", &ScriptMessageBridge::message, Body::object},
    {"unreadCount", &ScriptMessageBridge::unreadCount},
};

std::vector<std::string> ScriptMessageBridge::messageNames(bool withConversation) {
  std::vector<std::string> names;
  for (const auto& service : services) names.emplace_back(service.name);
  if (!withConversation) names.resize(names.size() - 3);
  return names;
}

void ScriptMessageBridge::dispatch(const ScriptMessage& message) {
  if (message.body.size() > longestBody) {
    log::print("A message of " + std::to_string(message.body.size()) + " bytes was refused: " + message.name,
               log::Level::info);
    return;
  }
  const auto received = "Received message from JavaScript: " + message.name;
  if (log::isEnabled(log::Level::trace)) {
    const auto text = message.body.starts_with('"') ? decodeText(message.body) : std::nullopt;
    log::debugPrint(received + " " + (text ? *text : message.body), log::Level::trace);
  } else {
    log::debugPrint(received);
  }
  Platform::current().progressOverlay.bringTo(*screen_.view());
  const auto* const service = std::find_if(std::begin(services), std::end(services),
                                           [&](const Service& candidate) { return candidate.name == message.name; });
  if (service == std::end(services)) return;
  if (!service->isOpen && !origins_.trusts(host_.documentUrl(), screen_.allowedOrigins)) {
    log::print("Declined \"" + message.name + "\" of a page that is not the chat's: " + origin(), log::Level::info);
    return;
  }
  if (service->opensSomething && !screen_.view()->isShowing()) {
    log::print("A screen that does not show was declined: " + message.name);
    return;
  }
  const std::string_view opening = service->body == Body::object ? "{" : service->body == Body::string ? "\"" : "";
  if (!message.body.starts_with(opening)) {
    const auto wanted = kindOf(opening);
    log::print("dropped: " + message.name + " wants " + std::string(wanted) + ", got " +
               std::string(kindOf(message.body)));
    return;
  }
  (this->*service->serve)(message.body);
}

void ScriptMessageBridge::attach(const std::vector<std::string>& paths) {
  if (!screen_.view()->isShowing() || !origins_.trusts(host_.documentUrl(), screen_.allowedOrigins)) {
    return log::print("Dropped files were declined: the page is not the chat's, or does not show", log::Level::info);
  }
  Platform::current().progressOverlay.bringTo(*screen_.view());
  ChatManager::shared().attachFiles(paths, screen_, filesAnswer());
}

void ScriptMessageBridge::trackEvent(std::string_view body) {
  const auto delegate = screen_.conversionDelegate;
  const auto event = record<TrackModel>(body, "TrackModel");
  if (!event) return;
  if (!event->name || !event->attributes) return log::print("dropped: trackEvent wants a name and attributes");
  if (delegate) delegate->trackEvent(*event->name, *event->attributes);
}

void ScriptMessageBridge::shortCut(std::string_view body) {
  const auto delegate = screen_.conversionDelegate;
  const auto shortcut = record<ShortcutsModel>(body, "ShortcutsModel");
  if (delegate && shortcut) delegate->shortCutEvent(*shortcut);
}

void ScriptMessageBridge::message(std::string_view body) {
  const auto delegate = screen_.conversionDelegate;
  auto message = record<MessageModel>(body, "MessageModel");
  if (delegate && message) delegate->messageEvent(std::make_shared<MessageModel>(std::move(*message)));
}

void ScriptMessageBridge::unreadCount(std::string_view body) {
  std::int64_t count = 0;
  const auto [end, error] = std::from_chars(body.data(), body.data() + body.size(), count);
  if (error != std::errc() || end != body.data() + body.size() || count < 0) {
    log::print("dropped: unreadCount wants a whole number from 0 on");
  } else if (const auto delegate = screen_.conversionDelegate) {
    delegate->unReadMessageCountEvent(count);
  }
}

void ScriptMessageBridge::openUrl(std::string_view body) {
  if (const auto address = decodeText(body)) OVKFApiHelper::openExternalURL(address);
}

void ScriptMessageBridge::openFile(std::string_view body) {
  const auto address = decodeText(body);
  const auto file = address && address->size() <= OVKFApiHelper::longestAddress ? Url::parse(*address) : std::nullopt;
  if (!file) return log::print("dropped: openFile wants an address");
  ChatManager::shared().openFile(*file, screen_);
}

void ScriptMessageBridge::goBack(std::string_view /*body*/) {
  screen_.goBack();
}

template <auto open>
void ScriptMessageBridge::pick(std::string_view body) {
  if (const auto asked = record<PostMessageModel>(body, "PostMessageModel"))
    (ChatManager::shared().*open)(*asked, screen_, filesAnswer());
}

void ScriptMessageBridge::recording(std::string_view body) {
  const auto asked = record<PostMessageModel>(body, "PostMessageModel");
  if (!asked) return;
  OVKFApiManager::shared().guestId = asked->deviceId;
  if (asked->action) RecordManager::shared().perform(*asked->action, recordAnswer());
}

void ScriptMessageBridge::initLoaded(std::string_view /*body*/) {
  Platform::current().mainQueue.asyncAfter(initLoadedDelay, alive_.guard([this] {
    log::debugPrint("InitLoad");
    host_.reveal();
  }));
}

AttachmentAnswer ScriptMessageBridge::filesAnswer() {
  return alive_.guard([this, evaluate = evaluateForAsker()](std::vector<UploadFileInfoModel> files) {
    answers_.add([files = std::move(files)] { return scriptCall("handleSelectedFiles", files); }, evaluate);
  });
}

RecordManager::RecordedClip ScriptMessageBridge::recordAnswer() {
  return alive_.guard([this, evaluate = evaluateForAsker()](UploadFileInfoModel record) {
    answers_.add([record = std::move(record)] { return scriptCall("handleSelectedRecord", record, true); }, evaluate);
  });
}

AnswerQueue::Evaluate ScriptMessageBridge::evaluateForAsker() const {
  return [this, asker = origin()](std::string script) {
    // Shared, because a copy of its megabytes would be felt on this thread.
    const auto kept = std::make_shared<const std::string>(std::move(script));
    // Once more, but not again and again: the page may have died of it.
    answer(asker, kept, alive_.guard([=, this] { answer(asker, kept, nullptr); }));
  };
}

void ScriptMessageBridge::answer(const std::string& asker, const std::shared_ptr<const std::string>& script,
                                 const std::function<void()>& lost) const {
  host_.whenBack(alive_.guard([=, this] {
    if (origin() == asker) return host_.evaluate(*script, lost);
    log::print("An answer for " + asker + " was dropped: the page has gone to " + origin());
  }));
}

std::string ScriptMessageBridge::origin() const {
  return originOf(host_.documentUrl());
}

}  // namespace orivex
