#include "Texts.h"

#include <string_view>

#include <glib.h>

namespace orivex::demo {

const char* text(const char* chinese, const char* english) {
  static const bool isChinese = std::string_view(g_get_language_names()[0]).starts_with("zh");
  return isChinese ? chinese : english;
}

}  // namespace orivex::demo
