#include "PluralRule.h"

#include <array>

namespace orivex {
namespace {

using Number = unsigned long;

struct Operator {
  std::string_view sign;
  int precedence;
  Number (*apply)(Number, Number);
};

// "<=" before "<": the first that fits is taken.
constexpr std::array<Operator, 13> operators{{
    {"||", 1, [](Number a, Number b) -> Number { return a != 0 || b != 0; }},
    {"&&", 2, [](Number a, Number b) -> Number { return a != 0 && b != 0; }},
    {"==", 3, [](Number a, Number b) -> Number { return a == b; }},
    {"!=", 3, [](Number a, Number b) -> Number { return a != b; }},
    {"<=", 4, [](Number a, Number b) -> Number { return a <= b; }},
    {">=", 4, [](Number a, Number b) -> Number { return a >= b; }},
    {"<", 4, [](Number a, Number b) -> Number { return a < b; }},
    {">", 4, [](Number a, Number b) -> Number { return a > b; }},
    {"+", 5, [](Number a, Number b) { return a + b; }},
    {"-", 5, [](Number a, Number b) { return a - b; }},
    {"*", 6, [](Number a, Number b) { return a * b; }},
    {"/", 6, [](Number a, Number b) { return b == 0 ? 0 : a / b; }},
    {"%", 6, [](Number a, Number b) { return b == 0 ? 0 : a % b; }},
}};

class Evaluation {
 public:
  Evaluation(std::string_view rest, Number n) : rest_(rest), n_(n) {}

  Number conditional() {
    const auto condition = binary(1);
    if (!take("?")) return condition;
    const auto yes = conditional();
    take(":");
    const auto no = conditional();
    return condition != 0 ? yes : no;
  }

 private:
  bool take(std::string_view sign) {
    while (rest_.starts_with(' ')) rest_.remove_prefix(1);
    if (!rest_.starts_with(sign)) return false;
    rest_.remove_prefix(sign.size());
    return true;
  }

  const Operator* takeOperator(int lowest) {
    for (const auto& one : operators) {
      if (one.precedence >= lowest && take(one.sign)) return &one;
    }
    return nullptr;
  }

  Number binary(int lowest) {
    auto value = unary();
    while (const auto* const next = takeOperator(lowest)) value = next->apply(value, binary(next->precedence + 1));
    return value;
  }

  Number unary() {
    if (take("!")) return unary() == 0 ? 1 : 0;
    if (take("n")) return n_;
    if (take("(")) {
      const auto value = conditional();
      take(")");
      return value;
    }
    Number value = 0;
    for (; !rest_.empty() && rest_[0] >= '0' && rest_[0] <= '9'; rest_.remove_prefix(1)) {
      value = value * 10 + static_cast<Number>(rest_[0] - '0');
    }
    return value;
  }

  std::string_view rest_;
  const Number n_;
};

}  // namespace

unsigned long pluralForm(std::string_view expression, unsigned long number) {
  return Evaluation(expression, number).conditional();
}

}  // namespace orivex
