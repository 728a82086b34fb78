#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include <simdjson.h>

namespace orivex {

/// The memory that decoding needs beside the record: the parser's index and a copy of the text, since the parser reads
/// a little past the end of what it is given. Kept per thread, so that decoding itself allocates nothing; after a large
/// text it is given back.
class DecodeWorkspace {
 public:
  /// A workspace of the calling thread for the duration of one decoding.
  class Lease {
   public:
    Lease();
    ~Lease();
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    DecodeWorkspace* operator->() const { return &workspace; }

   private:
    DecodeWorkspace& workspace;
  };

  /// Copies the text and finds its structure. The document lives until the next call.
  simdjson::simdjson_result<simdjson::ondemand::document> parse(std::string_view json);

  /// Where the copy begins.
  const char* begin() const { return text.get(); }

 private:
  void release();

  simdjson::ondemand::parser parser;
  std::unique_ptr<char[]> text;
  std::size_t capacity = 0;
};

}  // namespace orivex
