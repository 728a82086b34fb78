#include "orivex/models/MessageBody.h"

#include "orivex/models/Codec.h"

namespace orivex {

std::string MessageBody::getJsonString() const {
  try {
    return encode(*this);
  } catch (const EncodingError&) {
    return {};
  }
}

}  // namespace orivex
