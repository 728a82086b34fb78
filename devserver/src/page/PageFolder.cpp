#include "PageFolder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <regex>
#include <stdexcept>
#include <string>
#include <utility>

#include "../http/GHandles.h"
#include "../http/Reply.h"

namespace orivex::devserver {
namespace {

/// Stands between the page and the native side's handlers; in a plain browser, where there are none, in their place.
/// The request is synchronous: lines keep their order, and the last one comes before the page goes.
constexpr const char* reporter = R"js(<script>
{
  const webkit = (window.webkit ??= {});
  const native = webkit.messageHandlers;
  const report = (name, body) => {
    try {
      const request = new XMLHttpRequest();
      request.open("POST", "/_dev/posts", false);
      request.send(JSON.stringify({ name, body }));
    } catch (error) {
      console.warn(`${name} could not be reported`, error);
    }
  };
  const handlerOf = (name) => ({
    postMessage(...bodies) {
      const result = native?.[name].postMessage(...bodies);
      report(name, bodies[0]);
      return result;
    },
  });
  const value = new Proxy({}, { get: (_, name) => (native && !native[name] ? undefined : handlerOf(name)) });
  Object.defineProperty(webkit, "messageHandlers", { value });
}
</script>)js";

std::optional<std::string> contentsOf(const std::filesystem::path& file) {
  std::error_code error;
  std::ifstream stream(file, std::ios::binary);
  if (!std::filesystem::is_regular_file(file, error) || !stream) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

std::string contentTypeOf(const std::filesystem::path& file) {
  const GCharPtr type(g_content_type_guess(file.c_str(), nullptr, 0, nullptr));
  const GCharPtr mime(g_content_type_get_mime_type(type.get()));
  return mime ? mime.get() : "application/octet-stream";
}

void replyFile(SoupServerMessage* message, const std::string& type, const std::string& contents) {
  soup_message_headers_replace(soup_server_message_get_response_headers(message), "Cache-Control", "no-cache");
  reply(message, SOUP_STATUS_OK, type.c_str(), contents);
}

}  // namespace

PageFolder::PageFolder(std::filesystem::path folder) : folder_(std::move(folder)) {
  if (!contentsOf(folder_ / "index.html"))
    throw std::runtime_error("--page: there is no index.html to read in " + folder_.string());
}

void PageFolder::serveIndex(SoupServerMessage* message) const {
  auto page = contentsOf(folder_ / "index.html");
  if (!page) return replyError(message, SOUP_STATUS_NOT_FOUND, "no such file");
  // Behind the doctype, without which pages are laid out differently.
  std::smatch doctype;
  static const std::regex pattern("<!doctype[^>]*>", std::regex::icase);
  const bool found = std::regex_search(*page, doctype, pattern);
  page->insert(found ? static_cast<std::size_t>(doctype.position() + doctype.length()) : 0, reporter);
  replyFile(message, "text/html", *page);
}

void PageFolder::serve(SoupServerMessage* message, std::string_view path) const {
  const auto file = std::filesystem::path(path).relative_path();
  const bool leadsOut = std::find(file.begin(), file.end(), "..") != file.end();
  const auto contents = leadsOut ? std::nullopt : contentsOf(folder_ / file);
  if (!contents) return replyError(message, SOUP_STATUS_NOT_FOUND, "no such file");
  replyFile(message, contentTypeOf(file), *contents);
}

}  // namespace orivex::devserver
