#pragma once

#include <string_view>
#include <vector>

#include "orivex/platform/ports/WebEngine.h"

namespace orivex {

/// Keeps long presses from selecting the page's own surface.
inline constexpr std::string_view touchScript =
    "document.documentElement.style.webkitTouchCallout='none';"
    "document.documentElement.style.webkitUserSelect='none';";

/// Fits the page to the screen; evaluated after every finished load.
inline constexpr std::string_view viewportScript =
    "var oMeta = document.createElement('meta');\n"
    "oMeta.content = 'width=device-width, initial-scale=1, user-scalable=0';\n"
    "oMeta.name = 'viewport';\n"
    "document.getElementsByTagName('head')[0].appendChild(oMeta);";

/// Adds the script that tells the page about its surroundings, `window.extraParams`. Heights are in points; one that is
/// not finite or not inside 64 bits stops the process.
void addEnvironmentScript(std::vector<std::string>& scripts, double statusBarHeight, double bottomInset);

/// Adds the in-page debug consoles that the user defaults ask for, as far as the bundle holds them.
void addDebugConsoles(std::vector<std::string>& scripts);

}  // namespace orivex
