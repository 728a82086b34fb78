#include "orivex/models/UserMappingModel.h"

namespace orivex {

std::string UserMappingModel::toURLQuery() const {
  const auto text = [](const std::optional<std::string>& field) { return field.value_or(std::string{}); };
  return "identity_id=" + text(identity_id) + "&deviceId=" + text(deviceId) + "&app_id=" + text(app_id) +
         "&app_name=" + text(app_name) + "&env_name=" + text(env_name);
}

}  // namespace orivex
