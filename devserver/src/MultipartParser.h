#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orivex::devserver {

/// What a part of a multipart form says of itself.
struct PartHeaders {
  std::string name;
  /// Absent for a plain field.
  std::optional<std::string> fileName;
  /// Empty when the part names no type.
  std::string contentType;
};

/// Reads the headers of one part: lines that each end with CRLF.
[[nodiscard]] PartHeaders parsePartHeaders(std::string_view lines);

/// Reads a multipart/form-data body piece by piece, wherever the pieces were cut, without ever holding a part.
class MultipartParser {
 public:
  /// Called in the body's order: begin, any number of data, end, for each part.
  struct Handlers {
    std::function<void(const PartHeaders&)> begin;
    std::function<void(std::string_view)> data;
    std::function<void()> end;
  };

  /// `boundary` as the Content-Type names it, without leading hyphens of the delimiter.
  MultipartParser(std::string_view boundary, Handlers handlers);

  /// Takes the next bytes. False once the body is malformed; it then takes no more.
  bool feed(std::string_view bytes);

  /// Whether the closing delimiter was seen.
  [[nodiscard]] bool isComplete() const { return state_ == State::Epilogue; }

 private:
  enum class State { Preamble, DelimiterEnd, Headers, Body, Epilogue, Malformed };

  /// One step on what is buffered. False when more bytes are needed.
  bool step();
  bool skipPreamble();
  bool endDelimiter();
  bool readHeaders();
  bool readBody();
  bool fail();

  const std::string delimiter_;
  const Handlers handlers_;
  State state_ = State::Preamble;
  std::string buffer_;
};

}  // namespace orivex::devserver
