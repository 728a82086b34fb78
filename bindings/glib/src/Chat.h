#pragma once

#include <memory>

#include "orivex-glib.h"

namespace orivex {

class OVKFApi;

namespace glib {

/// Starts a session and makes its screen, the one that `chat` closes and hands cards to; null while the chat shows.
std::shared_ptr<OVKFApi> startScreen(OrivexChat* chat);

}  // namespace glib
}  // namespace orivex
