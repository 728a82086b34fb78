#include "JsonGrammar.h"

#include <cstddef>

namespace orivex::fuzz {
namespace {

/// A recursive descent over the grammar. Each function takes what it is named after off the front of the text.
class Grammar {
 public:
  explicit Grammar(std::string_view text) : rest_(text) {}

  bool document() {
    blanks();
    return value(0) && (blanks(), rest_.empty());
  }

 private:
  static constexpr int deepestLevel = 512;

  bool one(char wanted) {
    if (rest_.empty() || rest_.front() != wanted) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool oneOf(std::string_view wanted) {
    if (rest_.empty() || wanted.find(rest_.front()) == std::string_view::npos) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool word(std::string_view wanted) {
    if (!rest_.starts_with(wanted)) return false;
    rest_.remove_prefix(wanted.size());
    return true;
  }

  void blanks() {
    while (oneOf(" \t\r\n")) {
    }
  }

  bool value(int level) {
    if (rest_.empty()) return false;
    if (rest_.front() == '{' || rest_.front() == '[') return container(level + 1);
    if (rest_.front() == '"') return string();
    return word("true") || word("false") || word("null") || number();
  }

  bool container(int level) {
    if (level > deepestLevel) return false;
    const bool isObject = rest_.front() == '{';
    const char close = isObject ? '}' : ']';
    rest_.remove_prefix(1);
    blanks();
    if (one(close)) return true;
    do {
      blanks();
      if (isObject && !(string() && (blanks(), one(':')))) return false;
      blanks();
      if (!value(level)) return false;
      blanks();
    } while (one(','));
    return one(close);
  }

  bool digits() {
    bool any = false;
    while (oneOf("0123456789")) any = true;
    return any;
  }

  bool number() {
    one('-');
    if (!one('0') && !digits()) return false;
    if (one('.') && !digits()) return false;
    return !oneOf("eE") || (oneOf("+-"), digits());
  }

  bool string() {
    if (!one('"')) return false;
    while (!rest_.empty() && rest_.front() != '"') {
      if (!(rest_.front() == '\\' ? escape() : character())) return false;
    }
    return one('"');
  }

  bool escape() {
    rest_.remove_prefix(1);
    if (oneOf("\"\\/bfnrt")) return true;
    unsigned unit = 0;
    if (!codeUnit(unit)) return false;
    if (unit < 0xD800 || unit > 0xDFFF) return true;
    unsigned low = 0;
    return unit < 0xDC00 && one('\\') && codeUnit(low) && low >= 0xDC00 && low <= 0xDFFF;
  }

  bool codeUnit(unsigned& unit) {
    constexpr std::string_view hexDigits = "0123456789abcdef0123456789ABCDEF";
    if (!one('u') || rest_.size() < 4) return false;
    for (const char c : rest_.substr(0, 4)) {
      const std::size_t digit = hexDigits.find(c);
      if (digit == std::string_view::npos) return false;
      unit = unit * 16 + static_cast<unsigned>(digit % 16);
    }
    rest_.remove_prefix(4);
    return true;
  }

  /// One character in UTF-8, in its shortest form and not a surrogate.
  bool character() {
    const auto first = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    if (first < 0x80) return first >= 0x20;
    const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    if (first < 0xC2 || first > 0xF4 || rest_.size() < more) return false;
    unsigned point = first & (0x3FU >> more);
    for (const char c : rest_.substr(0, more)) {
      const auto byte = static_cast<unsigned char>(c);
      if (byte < 0x80 || byte > 0xBF) return false;
      point = point << 6U | (byte & 0x3FU);
    }
    rest_.remove_prefix(more);
    const unsigned least = more == 3 ? 0x10000 : more == 2 ? 0x800 : 0x80;
    return point >= least && point <= 0x10FFFF && (point < 0xD800 || point > 0xDFFF);
  }

  std::string_view rest_;
};

}  // namespace

bool isJson(std::string_view text) {
  return Grammar(text).document();
}

}  // namespace orivex::fuzz
