#include "orivex/sdk/Version.h"

extern "C" {
const double OrivexSDKVersionNumber = ORIVEX_VERSION_NUMBER;
const unsigned char OrivexSDKVersionString[] = "OrivexSDK " ORIVEX_VERSION_TEXT;
}
