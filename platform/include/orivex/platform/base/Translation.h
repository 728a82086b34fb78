#pragma once

#include <initializer_list>
#include <string>

#include "orivex/Export.h"

/// The visitor's language, see `setLanguage`. The texts stand in the sources in Chinese and in `po/` in others, where
/// `%1` to `%9` are places for values. Any thread.
namespace orivex {

/// The text in the visitor's language; as it is when that is Chinese or the catalogue lacks it. What comes back out of
/// the catalogue stays valid.
ORIVEX_API const char* tr(const char* chinese);

/// The same with `values` at `%1`, `%2` and so on.
ORIVEX_API std::string tr(const char* chinese, std::initializer_list<std::string> values);

/// The same for a number, at `%1`, in the form that it takes: "1 item", "3 items".
ORIVEX_API std::string trNumber(const char* chinese, unsigned long number);

/// Marks a text for the catalogues that is translated where it is shown.
constexpr const char* trLater(const char* chinese) {
  return chinese;
}

}  // namespace orivex
