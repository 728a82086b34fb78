#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include <libsoup/soup.h>

namespace orivex::devserver {

/// The JSON as text. Bytes that are not UTF-8 become the replacement character.
[[nodiscard]] std::string toText(const nlohmann::json& value);

/// What a client sent as JSON; discarded where it is none. Containers far deeper than those of any record are left out:
/// to write or copy them again would overflow the stack.
[[nodiscard]] nlohmann::json fromText(GBytes* bytes);

/// Answers with `body`, which is copied.
void reply(SoupServerMessage* message, unsigned status, const char* contentType, std::string_view body);

void replyJson(SoupServerMessage* message, unsigned status, const nlohmann::json& value);

/// Answers with the server's error record: an object with `msg`.
void replyError(SoupServerMessage* message, unsigned status, std::string_view text);

/// Answers 405 unless the method is among `allowed`, such as "GET, HEAD". True when it is.
[[nodiscard]] bool allowMethods(SoupServerMessage* message, std::string_view allowed);

/// A request header, or nullptr when the request lacks it.
[[nodiscard]] const char* requestHeader(SoupServerMessage* message, const char* name);

/// The request's query as it came, still percent-encoded.
[[nodiscard]] std::string_view rawQuery(SoupServerMessage* message);

/// The first value of `name` in the query of an address, percent-decoded; a broken escape leaves the value as it came.
/// "+" stays a plus: the component puts its values into the query as they are.
[[nodiscard]] std::optional<std::string> queryValue(std::string_view query, std::string_view name);

/// "http://host:port" as the client addressed this server.
[[nodiscard]] std::string baseAddress(SoupServerMessage* message);

}  // namespace orivex::devserver
