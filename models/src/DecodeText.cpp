#include "JsonReader.h"

#include "orivex/models/Codec.h"

namespace orivex {

std::optional<std::string> decodeText(std::string_view json) {
  try {
    return JsonReader(json).textDocument();
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

}  // namespace orivex
