#pragma once

#include "orivex/Export.h"

/// The standard version stamps of the library, for whoever loads it by name. `OVKFApi::getSDKVersion` is the way for
/// everyone else.
extern "C" {
/// Major and minor version as a number, for example 1.2.
ORIVEX_API extern const double OrivexSDKVersionNumber;
/// "OrivexSDK" and the whole version, NUL-terminated.
ORIVEX_API extern const unsigned char OrivexSDKVersionString[];
}
