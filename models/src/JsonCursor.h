#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orivex {

enum class JsonType { object, array, string, number, boolean, null };

/// The type with its article, as in "an object".
std::string_view nameOf(JsonType type);

/// Steps over a JSON text value by value, from its beginning to its end. What is taken is checked on the way, skipped
/// values too: text that is not JSON throws `DecodingError`.
class JsonCursor {
 public:
  /// Stands before the only value of a text, which must outlive the cursor.
  explicit JsonCursor(std::string_view text);

  /// What the next value is.
  JsonType type() const;

  /// Take the next value, which must be of that type.
  void takeString(std::string& into);
  bool takeBoolean();
  /// The text of a number as it is written.
  std::string_view takeNumber();

  /// Calls `onField(key)` for each field of the object; it takes the field's value.
  template <class OnField>
  void takeObject(OnField&& onField);
  /// Calls `onElement(index)` for each element of the array; it takes the element.
  template <class OnElement>
  void takeArray(OnElement&& onElement);

  /// Takes the next value, whatever it is.
  void skip();

  /// Checks that nothing but blanks is left.
  void takeEnd();

 private:
  template <class TakePart>
  void takeParts(char close, TakePart&& takePart);
  void takeWord(std::string_view word);
  bool takeOne(char c);
  void takeBlanks();
  void takeColon();
  std::string_view rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }
  [[noreturn]] void fail(std::string_view reason) const;

  const char* begin_;
  const char* at_;
  const char* end_;
  int level_ = 0;
};

template <class OnField>
void JsonCursor::takeObject(OnField&& onField) {
  std::string key;
  takeParts('}', [&] {
    takeString(key);
    takeColon();
    onField(key);
  });
}

template <class OnElement>
void JsonCursor::takeArray(OnElement&& onElement) {
  std::size_t index = 0;
  takeParts(']', [&] { onElement(index++); });
}

template <class TakePart>
void JsonCursor::takeParts(char close, TakePart&& takePart) {
  constexpr int deepestLevel = 512;
  if (++level_ > deepestLevel) fail("nested deeper than 512 levels");
  ++at_;
  takeBlanks();
  if (!takeOne(close)) {
    do {
      takeBlanks();
      takePart();
      takeBlanks();
    } while (takeOne(','));
    if (!takeOne(close)) fail("a comma or closing bracket is missing");
  }
  --level_;
}

}  // namespace orivex
