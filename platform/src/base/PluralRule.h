#pragma once

#include <string_view>

namespace orivex {

/// Which form of a text goes with `number`: the value of a catalogue's expression in C over `n`, for example
/// "n == 1 ? 0 : 1". What does not parse ends in a value as well, but in no particular one.
unsigned long pluralForm(std::string_view expression, unsigned long number);

}  // namespace orivex
