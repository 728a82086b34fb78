#include "StartScripts.h"

#include <cmath>
#include <cstdint>
#include <string>

#include "orivex/models/UserMappingModel.h"
#include "orivex/models/WebViewEnvModel.h"
#include "orivex/platform/base/Log.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex {
namespace {

std::int64_t wholePoints(double points) {
  constexpr double beyond = 9223372036854775808.0;  // 2^63, the first double that does not fit
  if (!std::isfinite(points) || points >= beyond || points < -beyond) {
    fatalError("OrivexSDK/OVKFApi", "a height of the screen is not a number of points inside 64 bits");
  }
  return static_cast<std::int64_t>(points);
}

}  // namespace

void addEnvironmentScript(std::vector<UserScript>& scripts, double statusBarHeight, double bottomInset) {
  const auto& user = OVKFApiManager::shared().user;
  WebViewEnvModel environment;
  environment.app_name = user && user->app_name ? *user->app_name : "kep";
  environment.env_name = user && user->env_name ? *user->env_name : "test";
  environment.hh = wholePoints(statusBarHeight);
  environment.bh = wholePoints(bottomInset);
  environment.os_name = "iOS";
  scripts.push_back({"window.extraParams=" + environment.getJsonString() + ";"});
}

}  // namespace orivex
