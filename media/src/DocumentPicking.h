#pragma once

#include "orivex/media/ChatManager.h"

namespace orivex {

/// Lets the visitor choose a document over `screen`, uploads it and hands its description to `completion`. What is too
/// large, unreadable or not stored is told to the visitor.
void pickDocument(const PostMessageModel& request, ViewController& screen, ChatManager::PickedFiles completion);

/// Offers the applications that open `file`; the visitor is told when there are none.
void openFileElsewhere(const Url& file, ViewController& screen);

}  // namespace orivex
