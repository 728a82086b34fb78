#include "ChatEvents.h"

#include "orivex/models/MessageModel.h"
#include "orivex/models/ShortcutsModel.h"

namespace orivex::glib {
namespace {

guint signalIds[8];

guint idOf(ChatSignal signal) {
  return signalIds[static_cast<int>(signal)];
}

template <class... Types>
void add(OrivexChatClass* type, ChatSignal signal, const char* name, Types... types) {
  signalIds[static_cast<int>(signal)] = g_signal_new(name, G_OBJECT_CLASS_TYPE(type), G_SIGNAL_RUN_LAST, 0, nullptr,
                                                     nullptr, nullptr, G_TYPE_NONE, sizeof...(types), types...);
}

OrivexError codeOf(ChatFailure::Cause cause) {
  switch (cause) {
    case ChatFailure::Cause::badAddress:
      return ORIVEX_ERROR_BAD_ADDRESS;
    case ChatFailure::Cause::refused:
      return ORIVEX_ERROR_REFUSED;
    case ChatFailure::Cause::timedOut:
      return ORIVEX_ERROR_TIMED_OUT;
    case ChatFailure::Cause::unreachable:
      return ORIVEX_ERROR_UNREACHABLE;
    case ChatFailure::Cause::insecure:
      return ORIVEX_ERROR_INSECURE;
    case ChatFailure::Cause::pageLost:
      return ORIVEX_ERROR_PAGE_LOST;
  }
  return ORIVEX_ERROR_UNREACHABLE;
}

}  // namespace

void addSignals(OrivexChatClass* type) {
  /**
   * OrivexChat::opened:
   * @self: the chat
   *
   * The screen has come up, or has come back after it was closed.
   */
  add(type, ChatSignal::opened, "opened");
  /**
   * OrivexChat::revealed:
   * @self: the chat
   *
   * The page shows.
   */
  add(type, ChatSignal::revealed, "revealed");
  /**
   * OrivexChat::closed:
   * @self: the chat
   *
   * The screen has left, in whatever way, or the one in a [class@ChatView] is to leave: the page or the visitor has
   * gone back.
   */
  add(type, ChatSignal::closed, "closed");
  /**
   * OrivexChat::failed:
   * @self: the chat
   * @reason: an error of the domain %ORIVEX_ERROR
   *
   * The page does not show, or not in time; the visitor is told.
   */
  add(type, ChatSignal::failed, "failed", G_TYPE_ERROR);
  /**
   * OrivexChat::track-event:
   * @self: the chat
   * @name: what has happened
   * @attributes: a dictionary from strings to strings, of type `a{ss}`
   *
   * The page has raised a tracking event.
   */
  add(type, ChatSignal::trackEvent, "track-event", G_TYPE_STRING, G_TYPE_VARIANT);
  /**
   * OrivexChat::short-cut:
   * @self: the chat
   * @title: label of the short cut, or an empty text
   * @code: its kind, a code of the page's, or 0
   * @command: what it stands for, or an empty text
   *
   * The visitor has chosen a short cut in the page. Needs [property@Chat:conversation-events].
   */
  add(type, ChatSignal::shortCut, "short-cut", G_TYPE_STRING, G_TYPE_INT64, G_TYPE_STRING);
  /**
   * OrivexChat::message:
   * @self: the chat
   * @json: the message, a JSON object
   *
   * A message was said in the page. Needs [property@Chat:conversation-events].
   */
  add(type, ChatSignal::message, "message", G_TYPE_STRING);
  /**
   * OrivexChat::unread-count:
   * @self: the chat
   * @count: how many messages the visitor has not read
   *
   * The page has counted. Needs [property@Chat:conversation-events].
   */
  add(type, ChatSignal::unreadCount, "unread-count", G_TYPE_INT64);
}

void ChatEvents::opened() {
  isOpen_ = true;
  g_object_notify(G_OBJECT(chat_), "is-open");
  g_signal_emit(chat_, idOf(ChatSignal::opened), 0);
}

void ChatEvents::revealed() {
  g_signal_emit(chat_, idOf(ChatSignal::revealed), 0);
}

void ChatEvents::closed() {
  isOpen_ = false;
  g_object_notify(G_OBJECT(chat_), "is-open");
  g_signal_emit(chat_, idOf(ChatSignal::closed), 0);
}

void ChatEvents::failed(const ChatFailure& failure) {
  auto* const reason = g_error_new_literal(ORIVEX_ERROR, codeOf(failure.cause), failure.message().c_str());
  g_signal_emit(chat_, idOf(ChatSignal::failed), 0, reason);
  g_error_free(reason);
}

void ChatEvents::trackEvent(const std::string& name, const std::map<std::string, std::string>& attributes) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{ss}"));
  for (const auto& [key, value] : attributes) g_variant_builder_add(&builder, "{ss}", key.c_str(), value.c_str());
  g_signal_emit(chat_, idOf(ChatSignal::trackEvent), 0, name.c_str(), g_variant_builder_end(&builder));
}

void ChatEvents::shortCutEvent(const ShortcutsModel& shortcut) {
  g_signal_emit(chat_, idOf(ChatSignal::shortCut), 0, shortcut.title.value_or("").c_str(),
                static_cast<gint64>(shortcut.shortcutType.value_or(0)), shortcut.command.value_or("").c_str());
}

void ChatEvents::messageEvent(const std::shared_ptr<MessageModel>& message) {
  g_signal_emit(chat_, idOf(ChatSignal::message), 0, message->getJsonString().c_str());
}

void ChatEvents::unReadMessageCountEvent(std::int64_t count) {
  g_signal_emit(chat_, idOf(ChatSignal::unreadCount), 0, static_cast<gint64>(count));
}

}  // namespace orivex::glib
