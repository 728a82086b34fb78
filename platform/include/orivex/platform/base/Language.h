#pragma once

#include <string>

#include "orivex/Export.h"

namespace orivex {

/// Chooses the language of what the visitor reads of this component, which is Chinese without this call. `tag` is one
/// such as "en", "pt-BR" or "de_AT", or "auto" for the visitor's own: what LANGUAGE, LC_ALL, LC_MESSAGES and LANG
/// say, by gettext's rules. A language that has no catalogue gives way to the one without a region, and that to
/// English. What shows already keeps its language. Main thread, once a platform is installed.
ORIVEX_API void setLanguage(const std::string& tag);

}  // namespace orivex
