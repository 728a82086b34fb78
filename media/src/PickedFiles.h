#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "orivex/media/Attachment.h"
#include "orivex/platform/ports/PhotoLibrary.h"

namespace orivex {

/// A document: uploaded from disk; a picture holds itself as a JPEG, too. The limit is that of documents as it is now.
std::shared_ptr<Attachment> pickedDocument(const Url& file);

/// A photo holds itself as a JPEG of `jpegQuality` (0 to 1); a video is uploaded and holds its first frame. The limit
/// is that of videos as it is now. A file that the camera took is deleted once nobody may send it any more.
std::shared_ptr<Attachment> pickedMedia(const PickedMedia& item, double jpegQuality, bool isOfCamera = false);

/// What the visitor reads of a video over its limit: the number is that of documents.
std::string videoTooLargeText(std::int64_t documentLimit);

}  // namespace orivex
