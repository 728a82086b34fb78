#include "Yardstick.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Tables.h"

#include "orivex/models/Base64.h"
#include "orivex/models/Codec.h"

namespace orivex::bench {
namespace {

using Tree = nlohmann::json;

void require(bool isRight) {
  if (!isRight) throw DecodingError("wrong type");
}

void read(const Tree& tree, std::string& into) {
  require(tree.is_string());
  into = tree.get_ref<const std::string&>();
}

void read(const Tree& tree, bool& into) {
  require(tree.is_boolean());
  into = tree.get<bool>();
}

void read(const Tree& tree, std::int64_t& into) {
  require(tree.is_number());
  if (tree.is_number_float()) {
    const double number = tree.get<double>();
    require(std::trunc(number) == number && std::abs(number) < 0x1p63);
    into = static_cast<std::int64_t>(number);
  } else {
    if (tree.is_number_unsigned()) {
      require(tree.get<std::uint64_t>() <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()));
    }
    into = tree.get<std::int64_t>();
  }
}

void read(const Tree& tree, double& into) {
  require(tree.is_number());
  into = tree.get<double>();
}

void read(const Tree& tree, float& into) {
  require(tree.is_number());
  into = tree.get<float>();
  require(std::isfinite(into));
}

void read(const Tree& tree, Bytes& into) {
  require(tree.is_string());
  auto bytes = base64Decode(tree.get_ref<const std::string&>());
  require(bytes.has_value());
  into = std::move(*bytes);
}

void read(const Tree& tree, std::map<std::string, std::string>& into) {
  require(tree.is_object());
  for (const auto& [key, value] : tree.items()) read(value, into[key]);
}

template <class Element>
void read(const Tree& tree, std::vector<Element>& into);

template <HasFields Record>
void read(const Tree& tree, Record& into) {
  require(tree.is_object());
  forEachField<Record>([&](const auto& field) {
    const auto found = tree.find(field.key);
    if (found == tree.end() || found->is_null()) return;
    auto& member = into.*field.member;
    if constexpr (requires { member.emplace(); }) {
      read(*found, member.emplace());
    } else {
      member = std::make_shared<typename std::remove_cvref_t<decltype(member)>::element_type>();
      read(*found, *member);
    }
  });
}

template <class Element>
void read(const Tree& tree, std::vector<Element>& into) {
  require(tree.is_array());
  into.reserve(tree.size());
  for (const Tree& element : tree) read(element, into.emplace_back());
}

template <class Value>
Tree toTree(const Value& value) {
  return value;
}

Tree toTree(const Bytes& bytes) {
  return base64Encode(bytes);
}

template <HasFields Record>
Tree toTree(const std::vector<Record>& records);

template <HasFields Record>
Tree toTree(const Record& record) {
  Tree tree = Tree::object();
  forEachField<Record>([&](const auto& field) {
    const auto& member = record.*field.member;
    if (member) tree[field.key] = toTree(*member);
  });
  return tree;
}

template <HasFields Record>
Tree toTree(const std::vector<Record>& records) {
  Tree tree = Tree::array();
  for (const Record& record : records) tree.push_back(toTree(record));
  return tree;
}

}  // namespace

MessageModel decodeByTree(std::string_view json) {
  MessageModel record;
  read(Tree::parse(json), record);
  return record;
}

nlohmann::json treeOf(const MessageModel& record) {
  return toTree(record);
}

}  // namespace orivex::bench
