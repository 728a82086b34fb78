#pragma once

#include "orivex/media/ChatManager.h"

namespace orivex {

/// Lets the visitor take a photo or a video over `screen` and hands its description to `completion`. The captured file
/// is deleted once it was described. A camera that cannot be used is told to the visitor.
void takeWithCamera(const PostMessageModel& request, ViewController& screen, ChatManager::PickedFiles completion);

}  // namespace orivex
