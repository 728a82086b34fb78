#include "Texts.h"

#include <string_view>

#include <glib.h>

namespace orivex::demo {

const char* text(const char* chinese, const char* english) {
  static const bool isEnglish = std::string_view(g_get_language_names()[0]).starts_with("en");
  return isEnglish ? english : chinese;
}

}  // namespace orivex::demo
