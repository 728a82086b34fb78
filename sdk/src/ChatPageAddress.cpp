#include "ChatPageAddress.h"

#include <sstream>

#include "orivex/models/UserMappingModel.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

std::string ChatPageAddress::text() const {
  return host + "/api/oauth2/ciphertext/app/client_chat" + "?access_token=" + appKey + "&x-entry=" + entryId + "&" +
         user.toURLQuery() + "&hh=" + doubleText(statusBarHeight) + "&bh=" + doubleText(bottomInset) +
         "&object_value=" + percentEncodeQuery(payload).value_or("");
}

std::string ChatPageAddress::fault() const {
  if (!Url::parse(host + "/")) return "host \"" + validUtf8(host) + "\"";
  const auto isFine = [](const std::string& value) { return Url::parse("https://host/?" + value).has_value(); };
  if (!isFine(appKey)) return "the application key";  // which is no business of a log
  std::istringstream values("x-entry=" + entryId + "&" + user.toURLQuery());
  std::string value;
  while (std::getline(values, value, '&') && isFine(value)) {
  }
  return "\"" + validUtf8(value) + "\"";
}

}  // namespace orivex
