#include "UploadHeaders.h"

#include <string_view>

#include "GHandles.h"

namespace orivex::devserver {
namespace {

constexpr std::string_view userAgentPrefix = "KepChatSDK/iOS/";
constexpr std::string_view scheme = "Bearer ";
/// The longest boundary that a multipart body may have.
constexpr std::size_t mostBoundaryBytes = 70;

using ParametersPtr = std::unique_ptr<GHashTable, FreeWith<g_hash_table_unref>>;

UploadHeaders wrong(std::string complaint) {
  return {SOUP_STATUS_BAD_REQUEST, std::move(complaint), {}};
}

std::string_view tokenIn(const char* authorization) {
  const std::string_view value = authorization ? authorization : "";
  return value.starts_with(scheme) ? value.substr(scheme.size()) : std::string_view();
}

}  // namespace

UploadHeaders checkUploadHeaders(SoupMessageHeaders* headers, const Tokens& tokens) {
  const auto value = [headers](const char* name) { return soup_message_headers_get_one(headers, name); };

  if (const auto refusal = tokens.refusal(tokenIn(value("Authorization"))); !refusal.empty())
    return {SOUP_STATUS_UNAUTHORIZED, "Authorization: " + std::string(refusal), {}};
  if (!value("Accept") || value("Accept") != std::string_view("*/*")) return wrong("Accept must be */*");
  for (const char* name : {"x-entry", "x-device-id"})
    if (!value(name)) return wrong(std::string(name) + " missing");
  if (!value("User-Agent") || !std::string_view(value("User-Agent")).starts_with(userAgentPrefix))
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

}  // namespace orivex::devserver
