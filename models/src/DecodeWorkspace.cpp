#include "DecodeWorkspace.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace orivex {
namespace {

constexpr std::size_t leastKept = 16 * 1024;
constexpr std::size_t mostKept = 1024 * 1024;

DecodeWorkspace& ofThisThread() {
  thread_local DecodeWorkspace workspace;
  return workspace;
}

}  // namespace

DecodeWorkspace::Lease::Lease() : workspace(ofThisThread()) {}

DecodeWorkspace::Lease::~Lease() {
  if (workspace.capacity > mostKept) workspace.release();
}

simdjson::simdjson_result<simdjson::ondemand::document> DecodeWorkspace::parse(std::string_view json) {
  if (json.empty()) return simdjson::EMPTY;
  if (json.size() > simdjson::SIMDJSON_MAXSIZE_BYTES) return simdjson::CAPACITY;
  if (json.size() > capacity || capacity == 0) {
    release();
    const std::size_t wanted = json.size() > mostKept ? json.size() : std::bit_ceil(std::max(json.size(), leastKept));
    if (const auto error = parser.allocate(wanted)) return error;
    text.reset(new char[wanted + simdjson::SIMDJSON_PADDING]);
    capacity = wanted;
  }
  std::memcpy(text.get(), json.data(), json.size());
  std::memset(text.get() + json.size(), ' ', simdjson::SIMDJSON_PADDING);
  return parser.iterate(text.get(), json.size(), json.size() + simdjson::SIMDJSON_PADDING);
}

void DecodeWorkspace::release() {
  parser = simdjson::ondemand::parser{};
  text.reset();
  capacity = 0;
}

}  // namespace orivex
