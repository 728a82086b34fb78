#pragma once

namespace orivex::demo {

/// The one of the two texts that suits the language of this process: English for English, Chinese for all else, as the
/// component and the chat page do. Call it after the locale was set.
const char* text(const char* chinese, const char* english);

}  // namespace orivex::demo
