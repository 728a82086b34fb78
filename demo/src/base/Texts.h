#pragma once

#include <string_view>

#include <glib.h>

namespace orivex::demo {

/// The one of the two texts that suits the visitor's language: Chinese for Chinese, English for all else, as in the
/// component. Call it after the locale was set.
inline const char* text(const char* chinese, const char* english) {
  static const bool isChinese = std::string_view(g_get_language_names()[0]).starts_with("zh");
  return isChinese ? chinese : english;
}

}  // namespace orivex::demo
