#include "UploadRoute.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>

#include "FaultyReply.h"
#include "GHandles.h"
#include "IncomingForm.h"
#include "Reply.h"
#include "RequestLog.h"
#include "UploadHeaders.h"

namespace orivex::devserver {
namespace {

constexpr const char* uploadPath = "/api/chat/outside/guest/file/upload";
constexpr const char* uploadKey = "orivex-upload";
/// Room for the delimiters and headers around the largest file.
constexpr std::int64_t envelopeBytes = 64 << 10;

/// One upload from its headers to its answer; it goes with its request.
struct Upload {
  UploadHeaders headers;
  FaultPlan plan;
  /// Absent when the body is read only to be thrown away.
  std::optional<IncomingForm> form;
  std::int64_t receivedBytes = 0;
};

Upload* uploadOf(SoupServerMessage* message) {
  return static_cast<Upload*>(g_object_get_data(G_OBJECT(message), uploadKey));
}

void takeChunk(SoupServerMessage* message, GBytes* chunk, gpointer data) {
  auto& upload = *static_cast<Upload*>(data);
  gsize size = 0;
  const auto* bytes = static_cast<const char*>(g_bytes_get_data(chunk, &size));
  upload.receivedBytes += static_cast<std::int64_t>(size);
  if (upload.form) upload.form->feed({bytes, size});
  const auto& fault = upload.plan.fault;
  if (fault && fault->kind == FaultKind::Reset && fault->afterBytes && upload.receivedBytes >= *fault->afterBytes)
    resetConnection(message);
}

/// Whether the client waits for a go-ahead, and so can be refused before it sends the body.
bool asksFirst(SoupServerMessage* message) {
  const auto expectations = soup_message_headers_get_expectations(soup_server_message_get_request_headers(message));
  return (expectations & SOUP_EXPECTATION_CONTINUE) != 0;
}

}  // namespace

void UploadRoute::addTo(SoupServer* server) {
  const auto early = [](SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, gpointer self) {
    const bool ours = std::strcmp(path, uploadPath) == 0 && soup_server_message_get_method(message) == SOUP_METHOD_POST;
    if (ours) static_cast<UploadRoute*>(self)->begin(message);
  };
  const auto whole = [](SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, gpointer self) {
    if (std::strcmp(path, uploadPath) != 0) return replyError(message, SOUP_STATUS_NOT_FOUND, "no such address");
    if (allowMethods(message, "POST")) static_cast<UploadRoute*>(self)->finish(message);
  };
  soup_server_add_early_handler(server, uploadPath, early, this, nullptr);
  soup_server_add_handler(server, uploadPath, whole, this, nullptr);
}

void UploadRoute::begin(SoupServerMessage* message) {
  soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
  auto* requestHeaders = soup_server_message_get_request_headers(message);
  auto upload = std::make_unique<Upload>();
  upload->plan = faults_.take(FaultTarget::Upload);
  upload->headers = checkUploadHeaders(requestHeaders, tokens_);
  auto& headers = upload->headers;
  if (headers.status == 0 && soup_message_headers_get_content_length(requestHeaders) > maxBytes_ + envelopeBytes)
    headers = {SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE, "file too large", {}};
  if (headers.status == 0 && !upload->plan.fault) upload->form.emplace(headers.boundary, files_, maxBytes_);

  const GDestroyNotify release = [](gpointer data) { std::unique_ptr<Upload>(static_cast<Upload*>(data)); };
  g_signal_connect(message, "got-chunk", G_CALLBACK(takeChunk), upload.get());
  if (headers.status != 0 && asksFirst(message)) replyError(message, headers.status, headers.complaint);
  g_object_set_data_full(G_OBJECT(message), uploadKey, upload.release(), release);
}

void UploadRoute::finish(SoupServerMessage* message) {
  const auto& plan = uploadOf(message)->plan;
  answerWithPlan(message, plan, [message] {
    auto& upload = *uploadOf(message);
    if (upload.headers.status != 0) return replyError(message, upload.headers.status, upload.headers.complaint);
    const auto outcome = upload.form->finish(baseAddress(message));
    noteInLog(message, "parts", upload.form->parts());
    replyJson(message, outcome.status, outcome.body);
  });
}

}  // namespace orivex::devserver
