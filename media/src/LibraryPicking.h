#pragma once

#include "orivex/media/ChatManager.h"

namespace orivex {

/// Lets the visitor choose photos or videos over `screen` and hands their descriptions to `completion`.
void pickFromLibrary(const PostMessageModel& request, ViewController& screen, ChatManager::PickedFiles completion);

}  // namespace orivex
