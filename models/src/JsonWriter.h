#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "JsonPath.h"

#include "orivex/models/Bytes.h"

namespace orivex {

/// A value that JSON cannot hold.
class NotWritable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;

  JsonPath path;  ///< to the value, as far as the exception has come
};

/// Memory to write JSON into. Kept per thread, so that encoding allocates nothing but its result; after a large text it
/// is given back.
class JsonWriter {
 public:
  /// The calling thread's writer, empty, for the duration of one encoding.
  class Lease {
   public:
    Lease();
    ~Lease();
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    JsonWriter& operator*() const { return writer; }

   private:
    JsonWriter& writer;
  };

  /// These throw `NotWritable`.
  void write(const std::string& text);
  void write(std::int64_t number);
  void write(double number);
  void write(float number);
  void write(bool value);
  void write(const Bytes& bytes);

  /// JSON text as it is.
  void literal(std::string_view json) {
    reserve(json.size());
    std::memcpy(end, json.data(), json.size());
    end += json.size();
  }

  /// Closes a container whose parts each began with a comma: the first comma becomes the opening bracket.
  void enclose(std::size_t start, char open, char close);

  std::size_t size() const { return static_cast<std::size_t>(end - memory.get()); }
  std::string_view text() const { return {memory.get(), size()}; }

 private:
  void reserve(std::size_t more) {
    if (static_cast<std::size_t>(limit - end) < more) [[unlikely]]
      grow(more);
  }
  void grow(std::size_t more);
  void escape(unsigned char c);
  template <class Float>
  void writeFloating(Float number);

  struct Free {
    void operator()(char* text) const { std::free(text); }
  };

  std::unique_ptr<char, Free> memory;
  char* end = nullptr;
  char* limit = nullptr;
};

}  // namespace orivex
