#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "orivex/platform/base/Once.h"
#include "orivex/platform/base/Url.h"

/// What the pickers share: how an attachment is named, and what the visitor reads when one cannot be sent.
namespace orivex {

class ViewController;

/// Last component of a path; the path itself without one. Made valid UTF-8, as is the extension: what is described to
/// the page, sent in a form or shown is text, and a name on disk may be none.
std::string fileName(const std::string& path);

/// Extension of a path without its dot, as written; empty without one.
std::string fileExtension(const std::string& path);

/// Seconds that a message about an attachment stays.
inline constexpr double attachmentMessageSeconds = 3.0;

/// Whether the screen for which an attachment was picked still shows; if so, the overlay now shows in its window. Main
/// thread.
bool stillShows(const std::weak_ptr<ViewController>& screen);

/// Shows the visitor `message`, or, when `screen` has left by now, the log.
void tellAboutAttachment(const std::weak_ptr<ViewController>& screen, const std::string& message);

/// The same of an upload that failed, which the visitor can then have sent again.
void tellAboutFailedUpload(const std::weak_ptr<ViewController>& screen, const std::string& message, Task sendAgain);

/// The texts for what is too large. Both quote `documentLimit`, the limit of documents, in whole MiB: what is checked
/// differs, what the visitor reads is one number.
std::string documentTooLargeText(std::int64_t documentLimit);
std::string videoTooLargeText(std::int64_t documentLimit);

}  // namespace orivex
