#include "Query.h"

#include <algorithm>

#include "GHandles.h"

namespace orivex::devserver {

std::optional<std::string> queryValue(std::string_view query, std::string_view name) {
  while (!query.empty()) {
    const auto end = std::min(query.find('&'), query.size());
    const auto pair = query.substr(0, end);
    query.remove_prefix(std::min(end + 1, query.size()));
    const auto equals = std::min(pair.find('='), pair.size());
    if (pair.substr(0, equals) != name) continue;
    const std::string raw(pair.substr(std::min(equals + 1, pair.size())));
    const GCharPtr decoded(g_uri_unescape_string(raw.c_str(), nullptr));
    return decoded ? std::string(decoded.get()) : raw;
  }
  return std::nullopt;
}

}  // namespace orivex::devserver
