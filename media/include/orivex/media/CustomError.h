#pragma once

#include <string>
#include <variant>

namespace orivex {

/// A failure of the HTTP side as a value.
struct CustomError {
  /// The server's own message.
  struct ServerError {
    std::string message;
    bool operator==(const ServerError&) const = default;
  };
  struct InvalidResponse {
    bool operator==(const InvalidResponse&) const = default;
  };
  struct UnknownError {
    bool operator==(const UnknownError&) const = default;
  };

  std::variant<ServerError, InvalidResponse, UnknownError> value;

  static CustomError serverError(std::string message) { return {ServerError{std::move(message)}}; }
  static CustomError invalidResponse() { return {InvalidResponse{}}; }
  static CustomError unknownError() { return {UnknownError{}}; }

  bool operator==(const CustomError&) const = default;
};

}  // namespace orivex
