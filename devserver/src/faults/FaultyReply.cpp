#include "FaultyReply.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include <sys/socket.h>

#include "../http/GHandles.h"
#include "../http/Reply.h"
#include "../http/RequestLog.h"

namespace orivex::devserver {
namespace {

/// Takes the connection away from the HTTP server. A status is left behind, so that the server's own handling of the
/// request sees it as answered.
ObjectPtr<GIOStream> stealConnection(SoupServerMessage* message) {
  soup_server_message_set_status(message, SOUP_STATUS_SERVICE_UNAVAILABLE, nullptr);
  return ObjectPtr<GIOStream>(soup_server_message_steal_connection(message));
}

/// Swallows what still arrives and ends with the client's end.
gboolean swallow(GSocket* socket, GIOCondition, gpointer) {
  char bytes[4096];
  const auto count = g_socket_receive_with_blocking(socket, bytes, sizeof bytes, FALSE, nullptr, nullptr);
  return count > 0 ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
}

void neverAnswer(SoupServerMessage* message) {
  const auto socket = share(soup_server_message_get_socket(message));
  auto stream = stealConnection(message);
  GSource* source = g_socket_create_source(socket.get(), static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), nullptr);
  // The source keeps the stolen connection open for as long as it is attached.
  auto* kept = std::make_unique<ObjectPtr<GIOStream>>(std::move(stream)).release();
  const GDestroyNotify release = [](gpointer data) {
    std::unique_ptr<ObjectPtr<GIOStream>>(static_cast<ObjectPtr<GIOStream>*>(data));
  };
  g_source_set_callback(source, G_SOURCE_FUNC(swallow), kept, release);
  g_source_attach(source, nullptr);
  g_source_unref(source);
}

void cutReply(SoupServerMessage* message) {
  const auto stream = stealConnection(message);
  constexpr std::string_view beginning =
      "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 4096\r\n\r\n{\"url\":\"ht";
  g_output_stream_write_all(g_io_stream_get_output_stream(stream.get()), beginning.data(), beginning.size(), nullptr,
                            nullptr, nullptr);
  g_io_stream_close(stream.get(), nullptr, nullptr);
}

void answerStatus(SoupServerMessage* message, const Fault& fault) {
  if (fault.body) return reply(message, fault.status, "application/json; charset=utf-8", *fault.body);
  replyError(message, fault.status, fault.message.value_or(soup_status_get_phrase(fault.status)));
}

/// The mark goes in front of the query: its last value may hold anything.
void redirectToSelf(SoupServerMessage* message) {
  const std::string target = baseAddress(message) + g_uri_get_path(soup_server_message_get_uri(message)) +
                             "?redirected=1&" + std::string(rawQuery(message));
  soup_server_message_set_redirect(message, SOUP_STATUS_FOUND, target.c_str());
}

void answerWithFault(SoupServerMessage* message, const Fault& fault) {
  switch (fault.kind) {
    case FaultKind::Status:
      return answerStatus(message, fault);
    case FaultKind::Silence:
      return neverAnswer(message);
    case FaultKind::Reset:
      return resetConnection(message);
    case FaultKind::Cut:
      return cutReply(message);
    case FaultKind::BrokenJson:
      return reply(message, SOUP_STATUS_OK, "application/json; charset=utf-8", R"({"url": "http://127)");
    case FaultKind::Redirect:
      return redirectToSelf(message);
    case FaultKind::Latency:
    case FaultKind::Drop:
      return;
  }
}

/// An answer that waits. The client may be gone before it is due; then the message only finishes.
struct Delayed {
  ObjectPtr<SoupServerMessage> message;
  std::function<void()> answer;
  gulong finishedHandler = 0;
  bool finished = false;

  ~Delayed() { g_signal_handler_disconnect(message.get(), finishedHandler); }
};

gboolean answerNow(gpointer data) {
  const auto& delayed = *static_cast<Delayed*>(data);
  if (delayed.finished) return G_SOURCE_REMOVE;
  soup_server_message_unpause(delayed.message.get());
  delayed.answer();
  return G_SOURCE_REMOVE;
}

void answerLater(SoupServerMessage* message, unsigned milliseconds, std::function<void()> answer) {
  auto delayed = std::make_unique<Delayed>();
  delayed->message = share(message);
  delayed->answer = std::move(answer);
  const auto onFinished = [](SoupServerMessage*, gpointer data) { static_cast<Delayed*>(data)->finished = true; };
  delayed->finishedHandler =
      g_signal_connect(message, "finished", G_CALLBACK(+onFinished), static_cast<gpointer>(delayed.get()));
  soup_server_message_pause(message);
  const GDestroyNotify release = [](gpointer data) { std::unique_ptr<Delayed>(static_cast<Delayed*>(data)); };
  g_timeout_add_full(G_PRIORITY_DEFAULT, milliseconds, answerNow, delayed.release(), release);
}

}  // namespace

void answerWithPlan(SoupServerMessage* message, const FaultPlan& plan, std::function<void()> normal) {
  if (plan.fault) noteInLog(message, "fault", toJson(*plan.fault).at("kind"));
  auto answer = [message, fault = plan.fault, normal = std::move(normal)] {
    if (fault)
      answerWithFault(message, *fault);
    else
      normal();
  };
  if (plan.milliseconds > 0)
    answerLater(message, plan.milliseconds, std::move(answer));
  else
    answer();
}

void resetConnection(SoupServerMessage* message) {
  noteInLog(message, "fault", "reset");
  soup_server_message_set_status(message, SOUP_STATUS_SERVICE_UNAVAILABLE, nullptr);
  GSocket* socket = soup_server_message_get_socket(message);
  // Closing with a linger time of zero throws away what is unsent and sends a reset instead of an end.
  const linger atOnce{.l_onoff = 1, .l_linger = 0};
  setsockopt(g_socket_get_fd(socket), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  g_socket_close(socket, nullptr);
}

}  // namespace orivex::devserver
