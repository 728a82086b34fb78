#pragma once

#include <string>

namespace orivex::bench {

/// Milliseconds that the curl command takes for `times` uploads of a file, one after the other over one connection,
/// with its own beginning and end.
double curlMilliseconds(const std::string& url, const std::string& file, int times);

}  // namespace orivex::bench
