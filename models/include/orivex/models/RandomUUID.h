#pragma once

#include <string>

namespace orivex {

/// A random UUID (RFC 4122, version 4) in upper case. May be called on any thread.
/// @throws std::system_error when the system has no random numbers to give.
std::string randomUUID();

}  // namespace orivex
