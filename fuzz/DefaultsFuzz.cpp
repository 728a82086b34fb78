#include <cstddef>
#include <cstdint>

#include "Expect.h"
#include "InputFile.h"
#include "KeyFileUserDefaults.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"

// The name that the fuzzer calls.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using orivex::fuzz::expect;
  int lines = 0;
  orivex::log::setSink([&lines](std::string_view) { ++lines; });
  const orivex::fuzz::InputFile file(data, size);
  const orivex::gtk::KeyFileUserDefaults defaults(file.path());
  for (const char* key : {"enable_eruda", "AppleMeasurementUnits", "a=b", "[", ""}) {
    const auto text = defaults.stringForKey(key);
    expect(!text || orivex::isValidUtf8(*text), "a setting can be read");
    expect(!defaults.boolForKey(key) || text, "what is true has a text");
  }
  expect(lines <= 1, "a broken file is told once");
  orivex::log::setSink({});
  return 0;
}
