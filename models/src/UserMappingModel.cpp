#include "orivex/models/UserMappingModel.h"

#include "orivex/models/Codec.h"

namespace orivex {

std::string UserMappingModel::toURLQuery() const {
  const auto text = [](const std::optional<std::string>& field) { return field.value_or(std::string{}); };
  return "identity_id=" + text(identity_id) + "&deviceId=" + text(deviceId) + "&app_id=" + text(app_id) +
         "&app_name=" + text(app_name) + "&env_name=" + text(env_name);
}

std::optional<std::string> UserMappingModel::getJsonString() const {
  try {
    return encode(*this);
  } catch (const EncodingError&) {
    return std::nullopt;
  }
}

}  // namespace orivex
