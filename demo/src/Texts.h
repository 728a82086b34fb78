#pragma once

namespace orivex::demo {

/// The one of the two texts that suits the visitor's language: Chinese for Chinese, English for all else, as in the
/// component. Call it after the locale was set.
const char* text(const char* chinese, const char* english);

}  // namespace orivex::demo
