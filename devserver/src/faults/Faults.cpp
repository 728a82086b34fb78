#include "Faults.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <nlohmann/json.hpp>
#include <utility>

namespace orivex::devserver {
namespace {

using nlohmann::json;

constexpr std::array<std::pair<std::string_view, FaultTarget>, 3> targets{{
    {"page", FaultTarget::Page},
    {"upload", FaultTarget::Upload},
    {"socket", FaultTarget::Socket},
}};

constexpr std::array<std::pair<std::string_view, FaultKind>, 8> kinds{{
    {"latency", FaultKind::Latency},
    {"status", FaultKind::Status},
    {"silence", FaultKind::Silence},
    {"reset", FaultKind::Reset},
    {"cut", FaultKind::Cut},
    {"brokenJson", FaultKind::BrokenJson},
    {"redirect", FaultKind::Redirect},
    {"drop", FaultKind::Drop},
}};

template <typename Table>
auto valueOf(const Table& table, std::string_view name, const char* what) {
  const auto found = std::ranges::find(table, name, &Table::value_type::first);
  if (found == table.end()) throw FaultError("unknown " + std::string(what) + " \"" + std::string(name) + "\"");
  return found->second;
}

template <typename Table, typename Value>
std::string nameOf(const Table& table, Value value) {
  return std::string(std::ranges::find(table, value, &Table::value_type::second)->first);
}

/// A key of the control interface holding a whole number in [least, most].
std::optional<std::int64_t> number(const json& object, const char* key, std::int64_t least, std::int64_t most) {
  const auto found = object.find(key);
  if (found == object.end()) return std::nullopt;
  if (!found->is_number_integer() || *found < least || *found > most)
    throw FaultError(std::string(key) + " must be a whole number from " + std::to_string(least) + " to " +
                     std::to_string(most));
  return found->get<std::int64_t>();
}

std::optional<std::string> text(const json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end()) return std::nullopt;
  if (!found->is_string()) throw FaultError(std::string(key) + " must be a string");
  return found->get<std::string>();
}

/// A value of the command line as the control interface would hold it.
json commandLineValue(std::string_view key, std::string_view value) {
  if (key == "msg" || key == "body") return std::string(value);
  std::int64_t whole = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), whole);
  if (error != std::errc() || end != value.data() + value.size())
    throw FaultError(std::string(key) + " must be a whole number, not \"" + std::string(value) + "\"");
  return whole;
}

/// The key that a kind's own value goes to in "KIND=VALUE".
std::string_view keyOfKind(std::string_view kind) {
  return kind == "latency" ? "ms" : kind;
}

bool isPossible(FaultTarget target, FaultKind kind) {
  switch (kind) {
    case FaultKind::Drop:
      return target == FaultTarget::Socket;
    case FaultKind::Redirect:
      return target == FaultTarget::Page;
    case FaultKind::Latency:
    case FaultKind::Cut:
    case FaultKind::BrokenJson:
      return target != FaultTarget::Socket;
    default:
      return true;
  }
}

}  // namespace

Fault parseFault(std::string_view line) {
  const auto colon = line.find(':');
  if (colon == std::string_view::npos) throw FaultError("expected TARGET:KIND, not \"" + std::string(line) + "\"");
  json object{{"target", line.substr(0, colon)}};
  auto rest = line.substr(colon + 1);
  for (bool first = true; first || !rest.empty(); first = false) {
    const auto comma = std::min(rest.find(','), rest.size());
    const auto piece = rest.substr(0, comma);
    const auto equals = std::min(piece.find('='), piece.size());
    const auto name = piece.substr(0, equals);
    if (first) object["kind"] = name;
    if (equals < piece.size()) {
      const auto key = first ? keyOfKind(name) : name;
      object[std::string(key)] = commandLineValue(key, piece.substr(equals + 1));
    } else if (!first) {
      throw FaultError("expected KEY=VALUE, not \"" + std::string(piece) + "\"");
    }
    rest.remove_prefix(std::min(comma + 1, rest.size()));
  }
  return faultFromJson(object);
}

Fault faultFromJson(const json& object) {
  if (!object.is_object()) throw FaultError("a fault must be an object");
  for (const auto& [key, value] : object.items())
    if (constexpr std::array known{"target", "kind", "status", "msg", "body", "ms", "afterBytes", "times"};
        std::ranges::find(known, key) == known.end())
      throw FaultError("unknown key \"" + key + "\"");

  Fault fault;
  fault.target = valueOf(targets, text(object, "target").value_or("page"), "target");
  auto kind = text(object, "kind").value_or("status");
  if (kind == "msg") {
    if (!object.contains("msg")) throw FaultError("msg must be given");
    kind = "status";
    fault.status = 400;
  }
  fault.kind = valueOf(kinds, kind, "kind");
  if (!isPossible(fault.target, fault.kind))
    throw FaultError("\"" + kind + "\" cannot happen to the " + nameOf(targets, fault.target));
  fault.status = static_cast<unsigned>(number(object, "status", 200, 599).value_or(fault.status));
  fault.message = text(object, "msg");
  fault.body = text(object, "body");
  fault.milliseconds = static_cast<unsigned>(number(object, "ms", 0, 3'600'000).value_or(0));
  fault.afterBytes = number(object, "afterBytes", 0, std::int64_t{1} << 40);
  if (const auto times = number(object, "times", 1, 1'000'000)) fault.times = static_cast<unsigned>(*times);
  return fault;
}

json toJson(const Fault& fault) {
  json object{{"target", nameOf(targets, fault.target)}, {"kind", nameOf(kinds, fault.kind)}};
  if (fault.kind == FaultKind::Status) object["status"] = fault.status;
  if (fault.kind == FaultKind::Latency) object["ms"] = fault.milliseconds;
  if (fault.message) object["msg"] = *fault.message;
  if (fault.body) object["body"] = *fault.body;
  if (fault.afterBytes) object["afterBytes"] = *fault.afterBytes;
  if (fault.times) object["times"] = *fault.times;
  return object;
}

std::optional<Fault> Faults::takeFirst(FaultTarget target, bool latency) {
  const auto found = std::ranges::find_if(faults_, [&](const Fault& fault) {
    return fault.target == target && (fault.kind == FaultKind::Latency) == latency;
  });
  if (found == faults_.end()) return std::nullopt;
  const Fault fault = *found;
  if (found->times && --*found->times == 0) faults_.erase(found);
  return fault;
}

FaultPlan Faults::take(FaultTarget target) {
  FaultPlan plan;
  if (const auto wait = takeFirst(target, true)) plan.milliseconds = wait->milliseconds;
  plan.fault = takeFirst(target, false);
  return plan;
}

}  // namespace orivex::devserver
