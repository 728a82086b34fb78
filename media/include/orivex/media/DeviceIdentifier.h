#pragma once

#include <string>

namespace orivex {

/// The identifier of this device for the chat server: 36 characters in lower case, computed on first use and kept for
/// the life of the process; empty while the platform gives none, and then asked for again. Main thread.
const std::string& deviceIdentifier();

}  // namespace orivex
