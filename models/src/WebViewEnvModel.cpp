#include "orivex/models/WebViewEnvModel.h"

#include "orivex/models/Codec.h"

namespace orivex {

std::string WebViewEnvModel::getJsonString() const {
  try {
    return encode(*this);
  } catch (const EncodingError&) {
    return {};
  }
}

}  // namespace orivex
