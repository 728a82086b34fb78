#include "FileRoute.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "../http/GHandles.h"
#include "../http/Reply.h"

namespace orivex::devserver {
namespace {

constexpr std::string_view filesPath = "/files/";

using MappedFilePtr = std::unique_ptr<GMappedFile, FreeWith<g_mapped_file_unref>>;

/// Inclusive byte positions.
struct Range {
  goffset first;
  goffset last;
};

/// The one range that the request asks for. Absent when it asks for none or for several: then the whole file answers.
std::optional<Range> requestedRange(SoupServerMessage* message, goffset size) {
  auto* headers = soup_server_message_get_request_headers(message);
  SoupRange* ranges = nullptr;
  int count = 0;
  if (!soup_message_headers_get_ranges(headers, size, &ranges, &count)) return std::nullopt;
  // "The last 99 bytes" of a shorter file are all of it.
  const Range first{std::max(ranges[0].start, goffset{0}), std::min(ranges[0].end, size - 1)};
  soup_message_headers_free_ranges(headers, ranges);
  return count == 1 ? std::optional(first) : std::nullopt;
}

/// Media opens in the page; anything else is offered for saving and cannot run as part of this site.
void describeFile(SoupMessageHeaders* headers, const std::string& type, std::string_view name) {
  const bool media = type.starts_with("image/") || type.starts_with("audio/") || type.starts_with("video/");
  const GCharPtr escaped(g_uri_escape_string(std::string(name).c_str(), nullptr, FALSE));
  const auto disposition = std::string(media ? "inline" : "attachment") + "; filename*=UTF-8''" + escaped.get();
  soup_message_headers_replace(headers, "Content-Disposition", disposition.c_str());
  soup_message_headers_replace(headers, "Content-Security-Policy", "default-src 'none'; sandbox");
  soup_message_headers_replace(headers, "X-Content-Type-Options", "nosniff");
  soup_message_headers_replace(headers, "Accept-Ranges", "bytes");
  soup_message_headers_set_content_type(headers, type.c_str(), nullptr);
}

/// The bytes stay in the mapped file until the client takes them; nothing gathers them in memory.
void sendRange(SoupServerMessage* message, GBytes* whole, Range range) {
  const auto size = static_cast<gsize>(range.last - range.first + 1);
  const GBytesPtr bytes(g_bytes_new_from_bytes(whole, static_cast<gsize>(range.first), size));
  auto* body = soup_server_message_get_response_body(message);
  soup_message_body_set_accumulate(body, FALSE);
  soup_message_body_append_bytes(body, bytes.get());
  soup_message_body_complete(body);
}

}  // namespace

void FileRoute::addTo(SoupServer* server) {
  const auto handler = [](SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, gpointer self) {
    const std::string_view whole = path;
    const std::string storedName(whole.substr(std::min(filesPath.size(), whole.size())));
    if (allowMethods(message, "GET, HEAD")) static_cast<FileRoute*>(self)->serve(message, storedName);
  };
  soup_server_add_handler(server, std::string(filesPath).c_str(), handler, this, nullptr);
}

void FileRoute::serve(SoupServerMessage* message, const std::string& storedName) const {
  const auto path = files_.find(storedName);
  const MappedFilePtr file(path ? g_mapped_file_new(path->c_str(), FALSE, nullptr) : nullptr);
  if (!file) return replyError(message, SOUP_STATUS_NOT_FOUND, "no such file");
  const GBytesPtr whole(g_mapped_file_get_bytes(file.get()));
  const auto size = static_cast<goffset>(g_bytes_get_size(whole.get()));
  auto* headers = soup_server_message_get_response_headers(message);
  describeFile(headers, files_.typeOf(storedName), FileStore::displayName(storedName));

  const auto range = requestedRange(message, size);
  if (!range) {
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    if (size > 0) sendRange(message, whole.get(), {0, size - 1});
    return;
  }
  if (range->first > range->last) {
    soup_message_headers_replace(headers, "Content-Range", ("bytes */" + std::to_string(size)).c_str());
    return soup_server_message_set_status(message, SOUP_STATUS_REQUESTED_RANGE_NOT_SATISFIABLE, nullptr);
  }
  soup_message_headers_set_content_range(headers, range->first, range->last, size);
  soup_server_message_set_status(message, SOUP_STATUS_PARTIAL_CONTENT, nullptr);
  sendRange(message, whole.get(), *range);
}

}  // namespace orivex::devserver
