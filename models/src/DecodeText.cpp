#include <string>

#include <simdjson.h>

#include "orivex/models/Codec.h"

namespace orivex {

std::optional<std::string> decodeText(std::string_view json) {
  simdjson::ondemand::parser parser;
  const simdjson::padded_string padded(json);
  simdjson::ondemand::document document;
  std::string_view text;
  if (parser.iterate(padded).get(document) != simdjson::SUCCESS) return std::nullopt;
  if (document.get_string().get(text) != simdjson::SUCCESS || !document.at_end()) return std::nullopt;
  return std::string(text);
}

}  // namespace orivex
