#include "ChatPageAddress.h"

#include "orivex/models/UserMappingModel.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

std::string ChatPageAddress::text() const {
  return host + "/api/oauth2/ciphertext/app/client_chat" + "?access_token=" + appKey + "&x-entry=" + entryId + "&" +
         user.toURLQuery() + "&hh=" + doubleText(statusBarHeight) + "&bh=" + doubleText(bottomInset) +
         "&object_value=" + percentEncodeQuery(payload).value_or("");
}

}  // namespace orivex
