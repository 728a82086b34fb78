#include "UploadRoute.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "../faults/FaultyReply.h"
#include "../http/GHandles.h"
#include "../http/Reply.h"
#include "../http/RequestLog.h"

namespace orivex::devserver {
namespace {

using nlohmann::json;

constexpr const char* uploadPath = "/api/chat/outside/guest/file/upload";
constexpr const char* uploadKey = "orivex-upload";
constexpr const char* defaultType = "application/octet-stream";
constexpr std::string_view userAgentPrefix = "KepChatSDK/iOS/";
constexpr std::string_view scheme = "Bearer ";
/// The longest boundary that a multipart body may have.
constexpr std::size_t mostBoundaryBytes = 70;
/// Room for the delimiters and headers around the largest file.
constexpr std::int64_t envelopeBytes = 64 << 10;
/// How much of a plain field is noted in the log.
constexpr std::size_t mostValueBytes = 4096;

using HeadersPtr = std::unique_ptr<SoupMessageHeaders, FreeWith<soup_message_headers_unref>>;
using MultipartPtr = std::unique_ptr<SoupMultipart, FreeWith<soup_multipart_free>>;
using ParametersPtr = std::unique_ptr<GHashTable, FreeWith<g_hash_table_unref>>;

/// What an upload's headers amount to.
struct UploadHeaders {
  /// 0 when they are all right.
  unsigned status = 0;
  /// What is wrong, naming the header.
  std::string complaint;
  /// The multipart boundary, when they are all right.
  std::string boundary;
};

UploadHeaders wrong(std::string complaint) {
  return {SOUP_STATUS_BAD_REQUEST, std::move(complaint), {}};
}

std::string_view tokenIn(const char* authorization) {
  const std::string_view value = authorization ? authorization : "";
  return value.starts_with(scheme) ? value.substr(scheme.size()) : std::string_view();
}

/// Checks the six headers that the component sends with every upload. A page that uploads by itself, which its `Origin`
/// tells, has the user agent of whatever browser it is in.
UploadHeaders checkUploadHeaders(SoupMessageHeaders* headers, const Tokens& tokens) {
  const auto value = [headers](const char* name) { return soup_message_headers_get_one(headers, name); };

  if (const auto refusal = tokens.refusal(tokenIn(value("Authorization"))); !refusal.empty())
    return {SOUP_STATUS_UNAUTHORIZED, "Authorization: " + std::string(refusal), {}};
  if (!value("Accept") || value("Accept") != std::string_view("*/*")) return wrong("Accept must be */*");
  for (const char* name : {"x-entry", "x-device-id"})
    if (!value(name)) return wrong(std::string(name) + " missing");
  const bool isPage = value("Origin") != nullptr;
  if (!isPage && (!value("User-Agent") || !std::string_view(value("User-Agent")).starts_with(userAgentPrefix)))
    return wrong("User-Agent must begin with " + std::string(userAgentPrefix));

  GHashTable* parameters = nullptr;
  const char* type = soup_message_headers_get_content_type(headers, &parameters);
  const ParametersPtr owned(parameters);
  if (!type || g_ascii_strcasecmp(type, "multipart/form-data") != 0)
    return wrong("Content-Type must be multipart/form-data");
  const auto* boundary = static_cast<const char*>(g_hash_table_lookup(parameters, "boundary"));
  const std::string_view text = boundary ? boundary : "";
  if (text.empty() || text.size() > mostBoundaryBytes) return wrong("Content-Type: boundary missing or too long");
  return {0, {}, std::string(text)};
}

/// One upload from its headers to its answer; it goes with its request.
struct Upload {
  UploadHeaders headers;
  FaultPlan plan;
  std::int64_t receivedBytes = 0;
};

/// A part of a form; it lives as long as the form.
struct Part {
  std::string name{};
  std::optional<std::string> fileName{};  ///< absent for a plain field
  std::string contentType{};              ///< empty when the part names none
  std::string_view data;
};

Upload* uploadOf(SoupServerMessage* message) {
  return static_cast<Upload*>(g_object_get_data(G_OBJECT(message), uploadKey));
}

void takeChunk(SoupServerMessage* message, GBytes* chunk, gpointer data) {
  auto& upload = *static_cast<Upload*>(data);
  upload.receivedBytes += static_cast<std::int64_t>(g_bytes_get_size(chunk));
  const auto& fault = upload.plan.fault;
  if (fault && fault->kind == FaultKind::Reset && fault->afterBytes && upload.receivedBytes >= *fault->afterBytes)
    resetConnection(message);
}

/// Null when the body is malformed.
MultipartPtr parseForm(SoupServerMessage* message, const std::string& boundary) {
  const GBytesPtr body(soup_message_body_flatten(soup_server_message_get_request_body(message)));
  // libsoup knows the type's name in lower case only.
  const HeadersPtr headers(soup_message_headers_new(SOUP_MESSAGE_HEADERS_MULTIPART));
  soup_message_headers_append(headers.get(), "Content-Type",
                              ("multipart/form-data; boundary=\"" + boundary + '"').c_str());
  MultipartPtr form(soup_multipart_new_from_message(headers.get(), body.get()));
  const int count = form ? soup_multipart_get_length(form.get()) : 0;
  for (int index = 0; index < count; ++index) {
    SoupMessageHeaders* unused = nullptr;
    GBytes* data = nullptr;
    soup_multipart_get_part(form.get(), index, &unused, &data);
    // To libsoup a part that ends with its headers has -2 bytes.
    if (g_bytes_get_size(data) > g_bytes_get_size(body.get())) return nullptr;
  }
  return form;
}

Part partOf(SoupMultipart* form, int index) {
  SoupMessageHeaders* headers = nullptr;
  GBytes* data = nullptr;
  soup_multipart_get_part(form, index, &headers, &data);
  gsize size = 0;
  const auto* const bytes = static_cast<const char*>(g_bytes_get_data(data, &size));
  const char* const type = soup_message_headers_get_one(headers, "Content-Type");
  Part part{.contentType = type ? type : "", .data = {bytes, size}};
  char* disposition = nullptr;
  GHashTable* values = nullptr;
  if (!soup_message_headers_get_content_disposition(headers, &disposition, &values)) return part;
  const GCharPtr ownedDisposition(disposition);
  const ParametersPtr parameters(values);
  if (const auto* name = g_hash_table_lookup(values, "name")) part.name = static_cast<const char*>(name);
  if (const auto* name = g_hash_table_lookup(values, "filename")) part.fileName = static_cast<const char*>(name);
  return part;
}

/// What the log says of a part.
json describe(const Part& part) {
  json description{{"name", part.name}, {"size", part.data.size()}};
  if (part.fileName)
    description["fileName"] = *part.fileName;
  else
    description["value"] = part.data.substr(0, mostValueBytes);
  if (!part.contentType.empty()) description["contentType"] = part.contentType;
  return description;
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
  auto* requestHeaders = soup_server_message_get_request_headers(message);
  auto upload = std::make_unique<Upload>();
  upload->plan = faults_.take(FaultTarget::Upload);
  upload->headers = checkUploadHeaders(requestHeaders, tokens_);
  auto& headers = upload->headers;
  if (headers.status == 0 && soup_message_headers_get_content_length(requestHeaders) > maxBytes_ + envelopeBytes)
    headers = {SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE, "file too large", {}};
  // Else the body is read only to be thrown away.
  const bool isWanted = headers.status == 0 && !upload->plan.fault;
  soup_message_body_set_accumulate(soup_server_message_get_request_body(message), isWanted);

  const GDestroyNotify release = [](gpointer data) { std::unique_ptr<Upload>(static_cast<Upload*>(data)); };
  g_signal_connect(message, "got-chunk", G_CALLBACK(takeChunk), upload.get());
  if (headers.status != 0 && asksFirst(message)) replyError(message, headers.status, headers.complaint);
  g_object_set_data_full(G_OBJECT(message), uploadKey, upload.release(), release);
}

void UploadRoute::finish(SoupServerMessage* message) {
  answerWithPlan(message, uploadOf(message)->plan, [this, message] { answer(message); });
}

void UploadRoute::answer(SoupServerMessage* message) {
  const auto& headers = uploadOf(message)->headers;
  if (headers.status != 0) return replyError(message, headers.status, headers.complaint);
  const auto form = parseForm(message, headers.boundary);
  if (!form) return replyError(message, SOUP_STATUS_BAD_REQUEST, "malformed multipart body");
  json log = json::array();
  std::optional<Part> file;
  for (int index = 0; index < soup_multipart_get_length(form.get()); ++index) {
    auto part = partOf(form.get(), index);
    log.push_back(describe(part));
    if (part.name == "file" && !file) file = std::move(part);
  }
  noteInLog(message, "parts", std::move(log));
  if (!file) return replyError(message, SOUP_STATUS_BAD_REQUEST, "no part named file");
  if (static_cast<std::int64_t>(file->data.size()) > maxBytes_)
    return replyError(message, SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE, "file too large");
  const auto name = files_.add(file->fileName.value_or(""), file->contentType, file->data);
  if (!name) return replyError(message, SOUP_STATUS_INTERNAL_SERVER_ERROR, "the file could not be stored");
  const GCharPtr escaped(g_uri_escape_string(name->c_str(), nullptr, FALSE));
  replyJson(message, SOUP_STATUS_OK,
            {{"url", baseAddress(message) + "/files/" + escaped.get()},
             {"inputContentType", file->contentType.empty() ? defaultType : file->contentType},
             {"actualContentType", files_.typeOf(*name)}});
}

}  // namespace orivex::devserver
