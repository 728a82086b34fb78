#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Tables.h"

namespace orivex::bench {

/// The blocks of memory that a decoded value owns: what decoding cannot do without.
template <class Scalar>
std::size_t ownedBlocks(const Scalar&) {
  return 0;
}

inline std::size_t ownedBlocks(const std::string& text) {
  return text.size() > std::string().capacity() ? 1 : 0;
}

inline std::size_t ownedBlocks(const std::map<std::string, std::string>& pairs) {
  std::size_t blocks = pairs.size();
  for (const auto& [key, value] : pairs) blocks += ownedBlocks(key) + ownedBlocks(value);
  return blocks;
}

template <HasFields Record>
std::size_t ownedBlocks(const Record& record);

template <class Element>
std::size_t ownedBlocks(const std::vector<Element>& elements) {
  std::size_t blocks = elements.empty() ? 0 : 1;
  for (const Element& element : elements) blocks += ownedBlocks(element);
  return blocks;
}

template <class Value>
std::size_t ownedBlocks(const std::optional<Value>& field) {
  return field ? ownedBlocks(*field) : 0;
}

template <class Value>
std::size_t ownedBlocks(const std::shared_ptr<Value>& field) {
  return field ? 1 + ownedBlocks(*field) : 0;
}

template <HasFields Record>
std::size_t ownedBlocks(const Record& record) {
  std::size_t blocks = 0;
  std::apply([&](const auto&... field) { ((blocks += ownedBlocks(record.*field.member)), ...); }, fieldsOf<Record>);
  return blocks;
}

}  // namespace orivex::bench
