#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "StartScripts.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/ports/Bundle.h"
#include "orivex/platform/ports/UserDefaults.h"

namespace orivex {
namespace {

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

// The text of the file, or what keeps it from being read as UTF-8.
struct FileText {
  std::string text;
  std::string error;
};

FileText readText(const std::string& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (error) return {{}, error.message()};
  FileText result{std::string(size, '\0'), {}};
  std::ifstream file(path, std::ios::binary);
  if (!file.read(result.text.data(), static_cast<std::streamsize>(size))) return {{}, "the file cannot be read"};
  if (!isValidUtf8(result.text)) return {{}, "the file is not UTF-8 text"};
  return result;
}

void add(const Console& console, std::vector<UserScript>& scripts) {
  const auto path = Platform::current().componentBundle.pathForResource(console.resource, "js");
  if (!path) return;
  log::debugPrint(std::string(console.name) + " injecting");
  auto file = readText(*path);
  if (!file.error.empty()) {
    log::debugPrint("Error reading " + std::string(console.name) + " script file: " + file.error);
    return;
  }
  scripts.push_back({std::move(file.text) + console.startTail});
}

// A device set to imperial units gets the console whatever the switch says.
bool hasImperialUnits(const UserDefaults& defaults) {
  return defaults.stringForKey("AppleMeasurementUnits") == "Inches" &&
         defaults.stringForKey("AppleTemperatureUnit") == "Fahrenheit";
}

}  // namespace

void addDebugConsoles(std::vector<UserScript>& scripts) {
  const auto& defaults = Platform::current().userDefaults;
  if (defaults.boolForKey("enable_vconsole")) add(vConsole, scripts);
  if (defaults.boolForKey("enable_eruda") || hasImperialUnits(defaults)) add(eruda, scripts);
}

}  // namespace orivex
