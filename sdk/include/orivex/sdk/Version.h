#pragma once

/// The standard version stamps of the library, for whoever loads it by name. `OVKFApi::getSDKVersion` is the way for
/// everyone else.
extern "C" {
/// Major and minor version as a number, for example 1.2.
extern const double OrivexSDKVersionNumber;
/// "OrivexSDK" and the whole version, NUL-terminated.
extern const unsigned char OrivexSDKVersionString[];
}
