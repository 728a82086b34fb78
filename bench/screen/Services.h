#pragma once

#include "Host.h"

namespace orivex::bench {

/// A server of an empty chat page that also takes uploads.
gtk::SocketServer::Handler serveChat();

/// Uses each of the page's services once with the device's real parts, as page and visitor would: an event, addresses
/// that are refused, a picked document that is uploaded, the photo library opened and left, a photo from the camera, a
/// voice message. Returns once the page has its last answer.
/// @return whether every answer came
bool useEveryService(const std::shared_ptr<OVKFApi>& chat);

}  // namespace orivex::bench
