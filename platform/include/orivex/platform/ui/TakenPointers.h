#pragma once

#include <string_view>

namespace orivex {

/// Evaluated in a page when a gesture outside has taken the pointers that are down in it: the page gets a pointercancel
/// for each, and does not wait for what will never come. An engine listens for the event.
inline constexpr std::string_view pointersTakenScript = "dispatchEvent(new Event('orivexpointerstaken'));";

}  // namespace orivex
