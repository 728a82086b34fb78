#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "Expect.h"
#include "InputFile.h"
#include "PersonalTraces.h"
#include "backends/gtk/src/net/FormFile.h"

namespace orivex::fuzz {
namespace {

// The file at `path` as it is sent.
std::string sent(const std::string& path, std::int64_t size) {
  auto traces = personalTraces(path);
  for (const auto& trace : traces) {
    expect(trace.at >= 0 && trace.at <= size && trace.length >= 0, "traces begin in the file");
    expect(static_cast<std::int64_t>(trace.bytes.size()) <= trace.length, "what takes a trace's place fits into it");
  }
  gtk::FormFile file(FilePart::Path{path, std::move(traces)});
  expect(file.open() && file.size() == size, "the file can be sent");
  std::string bytes(static_cast<std::size_t>(size), '\0');
  constexpr std::size_t atOnce = 61;  // so that traces begin and end inside of what is read
  for (std::size_t at = 0; at < bytes.size();) {
    const auto count = file.read(static_cast<std::int64_t>(at), &bytes[at], std::min(atOnce, bytes.size() - at));
    expect(count > 0, "the file is sent to its end");
    at += count;
  }
  return bytes;
}

}  // namespace
}  // namespace orivex::fuzz

// The name that the fuzzer calls.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orivex::fuzz;
  const auto length = static_cast<std::int64_t>(size);
  const auto clean = sent(InputFile(data, size).path(), length);
  const auto cleaner = sent(InputFile(clean.data(), size).path(), length);
  // Items of a file of boxes may lie over its boxes.
  const bool mayHaveItems = clean.find("iloc") != std::string::npos;
  expect(mayHaveItems || clean == cleaner, "what is sent has no traces");
  return 0;
}
