#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Expect.h"

#include "orivex/platform/base/Text.h"
#include "orivex/platform/base/Url.h"

namespace orivex::fuzz {
namespace {

bool isPrintableAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < 0x7F; });
}

void parseAddress(std::string_view text) {
  const auto url = Url::parse(text);
  if (!url) return;
  expect(isPrintableAscii(url->absoluteString()), "an address has nothing that has to be encoded");
  expect(Url::parse(url->absoluteString()) == url, "an address parsed again is the same");
  expect(url->absoluteString().size() >= text.size(), "nothing of an address is left out");
  expect(url->absoluteString().starts_with(url->origin()), "an address begins with its origin");
  expect(url->filePath().has_value() == (url->scheme() == "file"), "addresses of files alone have paths");
}

void takePath(std::string_view path) {
  const auto url = Url::fromFilePath(path);
  expect(isPrintableAscii(url.absoluteString()), "the address of a file has nothing that has to be encoded");
  if (path.starts_with('/')) expect(url.filePath() == path, "the address of a file leads to the file");
}

void encodeQuery(std::string_view text) {
  const auto query = percentEncodeQuery(text);
  expect(query.has_value() == isValidUtf8(text), "every text can stand in a query");
  if (!query) return;
  const auto url = Url::parse("https://chat.example/?q=" + *query);
  expect(url && url->absoluteString().ends_with("?q=" + *query), "what is encoded for a query stays as it is");
}

}  // namespace
}  // namespace orivex::fuzz

// The name that the fuzzer calls.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  orivex::fuzz::parseAddress(text);
  orivex::fuzz::takePath(text);
  orivex::fuzz::encodeQuery(text);
  return 0;
}
