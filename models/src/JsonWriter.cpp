#include "JsonWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <new>
#include <system_error>
#include <utility>

#include <simdjson.h>

#include "orivex/models/Base64.h"

namespace orivex {
namespace {

constexpr std::size_t leastKept = 16 * 1024;
constexpr std::size_t mostKept = 1024 * 1024;
constexpr std::size_t longestNumber = 40;
constexpr std::size_t longestEscape = 6;

/// Eight bytes of text at a time, as one number.
using Word = std::uint64_t;
constexpr Word everyByte = 0x0101010101010101;
constexpr Word highBits = 0x8080808080808080;

/// The high bit of each byte that is below `bound`. Right up to the first such byte, which is all that is asked of it.
constexpr Word bytesBelow(Word word, unsigned bound) {
  return (word - everyByte * bound) & ~word & highBits;
}

/// Whether one of the bytes cannot stand in a JSON string as it is.
constexpr bool needsEscape(Word word) {
  const Word quotes = bytesBelow(word ^ (everyByte * '"'), 1);
  const Word backslashes = bytesBelow(word ^ (everyByte * '\\'), 1);
  return (bytesBelow(word, 0x20) | quotes | backslashes) != 0;
}

constexpr bool needsEscape(unsigned char c) {
  return c < 0x20 || c == '"' || c == '\\';
}

/// As many bytes as a processor compares at once, a few times over: nine photos are twelve megabytes of plain text.
constexpr std::size_t blockSize = 64;

/// What stands in a block. Written so that compilers make vector instructions of it.
struct Block {
  explicit Block(const char* text) {
    for (std::size_t i = 0; i < blockSize; ++i) {
      const auto c = static_cast<unsigned char>(text[i]);
      escapes |= static_cast<unsigned char>((c < 0x20) | (c == '"') | (c == '\\'));
      bits |= c;
    }
  }

  unsigned char escapes = 0;  ///< not zero: one of the bytes cannot stand in a JSON string as it is
  unsigned char bits = 0;     ///< of all bytes together
};

JsonWriter& ofThisThread() {
  thread_local JsonWriter writer;
  return writer;
}

}  // namespace

JsonWriter::Lease::Lease() : writer(ofThisThread()) {
  writer.end = writer.memory.get();
}

JsonWriter::Lease::~Lease() {
  if (static_cast<std::size_t>(writer.limit - writer.memory.get()) > mostKept) writer = JsonWriter{};
}

void JsonWriter::write(const std::string& text) {
  reserve(text.size() + sizeof(Word) + 2);
  *end++ = '"';
  const char* at = text.data();
  const char* const stop = at + text.size();
  Word all = 0;
  while (static_cast<std::size_t>(stop - at) >= blockSize) {
    const Block block(at);
    if (block.escapes != 0) break;
    all |= block.bits;
    std::memcpy(end, at, blockSize);
    end += blockSize;
    at += blockSize;
  }
  while (at != stop) {
    Word word = 0;
    const auto left = static_cast<std::size_t>(stop - at);
    const std::size_t taken = std::min(left, sizeof(Word));
    std::memcpy(&word, at, taken);
    all |= word;
    if (taken == sizeof(Word) && !needsEscape(word)) [[likely]] {
      std::memcpy(end, &word, sizeof(Word));
      end += sizeof(Word);
      at += sizeof(Word);
      continue;
    }
    reserve(left + sizeof(Word) * longestEscape + 1);
    for (const char* const next = at + taken; at != next; ++at) {
      const auto c = static_cast<unsigned char>(*at);
      if (needsEscape(c)) {
        escape(c);
      } else {
        *end++ = *at;
      }
    }
  }
  *end++ = '"';
  if ((all & highBits) != 0 && !simdjson::validate_utf8(text)) throw NotWritable("not UTF-8 text");
}

void JsonWriter::escape(unsigned char c) {
  constexpr std::string_view shortForms = "\"\"\\\\\bb\tt\nn\ff\rr";
  constexpr std::string_view hexDigits = "0123456789abcdef";
  for (std::size_t i = 0; i < shortForms.size(); i += 2) {
    if (static_cast<unsigned char>(shortForms[i]) != c) continue;
    *end++ = '\\';
    *end++ = shortForms[i + 1];
    return;
  }
  literal("\\u00");
  *end++ = hexDigits[c >> 4U];
  *end++ = hexDigits[c & 0xFU];
}

void JsonWriter::write(std::int64_t number) {
  reserve(longestNumber);
  end = std::to_chars(end, limit, number).ptr;
}

void JsonWriter::write(double number) {
  writeFloating(number);
}

void JsonWriter::write(float number) {
  writeFloating(number);
}

template <class Float>
void JsonWriter::writeFloating(Float number) {
  if (!std::isfinite(number)) throw NotWritable("not a finite number");
  // The shortest text of 100000 would be 1e+05: plain digits are kept for what people count and measure.
  constexpr auto everyWholeBelow = static_cast<Float>(std::int64_t{1} << std::numeric_limits<Float>::digits);
  constexpr auto smallestPlain = static_cast<Float>(1e-4);
  const Float magnitude = std::abs(number);
  reserve(longestNumber);
  if (number == Float{0}) {
    literal(std::signbit(number) ? "-0" : "0");
  } else if (magnitude < everyWholeBelow && std::trunc(number) == number) {
    end = std::to_chars(end, limit, static_cast<std::int64_t>(number)).ptr;
  } else if (magnitude < everyWholeBelow && magnitude >= smallestPlain) {
    end = std::to_chars(end, limit, number, std::chars_format::fixed).ptr;
  } else {
    end = std::to_chars(end, limit, number).ptr;
  }
}

void JsonWriter::write(bool value) {
  literal(value ? "true" : "false");
}

void JsonWriter::write(const Bytes& bytes) {
  const std::size_t length = base64Length(bytes.size());
  reserve(length + 2);
  *end++ = '"';
  base64Encode(bytes, end);
  end += length;
  *end++ = '"';
}

void JsonWriter::enclose(std::size_t start, char open, char close) {
  const bool isEmpty = size() == start;
  reserve(2);
  if (isEmpty) ++end;
  memory.get()[start] = open;
  *end++ = close;
}

// Growing in place spares megabytes their copy: the system moves their pages.
void JsonWriter::grow(std::size_t more) {
  const std::size_t used = size();
  const auto had = static_cast<std::size_t>(limit - memory.get());
  const std::size_t wanted = std::max({leastKept, used + more, had * 2});
  auto* const larger = static_cast<char*>(std::realloc(memory.get(), wanted));
  if (!larger) throw std::bad_alloc();
  static_cast<void>(memory.release());
  memory.reset(larger);
  end = larger + used;
  limit = larger + wanted;
}

}  // namespace orivex
