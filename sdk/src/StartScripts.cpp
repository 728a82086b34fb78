#include "StartScripts.h"

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <variant>

#include "orivex/models/PageModels.h"
#include "orivex/models/UserMappingModel.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/ports/Bundle.h"
#include "orivex/platform/ports/UserDefaults.h"
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

struct Console {
  const char* resource;
  const char* name;
  const char* startTail;
};

constexpr Console vConsole{
    "vconsole.min", "vConsole",
    ";\nif (typeof VConsole !== 'undefined') {\n    var vConsoleiOS = new VConsole();\n"
    "    console.log('vConsole is initialized');\n} else {\n    console.error('vConsole is not available');\n}"};

constexpr Console eruda{"eruda", "eruda",
                        ";\nif (typeof eruda !== 'undefined') {\n    eruda.init();\n"
                        "    console.log('eruda is initialized');\n} else {\n"
                        "    console.error('eruda is not available');\n}"};

std::variant<std::string, Failure> readText(const std::string& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (error) return Failure{error.message()};
  std::string text(size, '\0');
  std::ifstream file(path, std::ios::binary);
  if (!file.read(text.data(), static_cast<std::streamsize>(size))) return Failure{"the file cannot be read"};
  if (!isValidUtf8(text)) return Failure{"the file is not UTF-8 text"};
  return text;
}

void addConsole(const Console& console, std::vector<std::string>& scripts) {
  const auto path = Platform::current().componentBundle.pathForResource(console.resource, "js");
  if (!path) return;
  log::debugPrint(std::string(console.name) + " injecting");
  const auto file = readText(*path);
  if (const auto* failure = std::get_if<Failure>(&file)) {
    log::debugPrint("Error reading " + std::string(console.name) + " script file: " + failure->description);
    return;
  }
  scripts.push_back(std::get<std::string>(file) + console.startTail);
}

// A device set to imperial units gets the console whatever the switch says.
bool hasImperialUnits(const UserDefaults& defaults) {
  return defaults.stringForKey("AppleMeasurementUnits") == "Inches" &&
         defaults.stringForKey("AppleTemperatureUnit") == "Fahrenheit";
}

}  // namespace

void addEnvironmentScript(std::vector<std::string>& scripts, double statusBarHeight, double bottomInset) {
  const auto& user = OVKFApiManager::shared().user;
  WebViewEnvModel environment;
  environment.app_name = user && user->app_name ? *user->app_name : "kep";
  environment.env_name = user && user->env_name ? *user->env_name : "test";
  environment.hh = wholePoints(statusBarHeight);
  environment.bh = wholePoints(bottomInset);
  environment.os_name = "iOS";
  scripts.push_back("window.extraParams=" + environment.getJsonString() + ";");
}

void addDebugConsoles(std::vector<std::string>& scripts) {
  const auto& defaults = Platform::current().userDefaults;
  if (defaults.boolForKey("enable_vconsole")) addConsole(vConsole, scripts);
  if (defaults.boolForKey("enable_eruda") || hasImperialUnits(defaults)) addConsole(eruda, scripts);
}

}  // namespace orivex
