#pragma once

#include <functional>

#include <libsoup/soup.h>

#include "Faults.h"

namespace orivex::devserver {

/// Answers `message` as the plan says: after its wait with its fault, or with `normal` when it has none. `normal` must
/// set a whole reply before it returns; it is not called when the client goes away during the wait.
void answerWithPlan(SoupServerMessage* message, const FaultPlan& plan, std::function<void()> normal);

/// Resets the client's connection at once, so that the client's socket fails instead of ending.
void resetConnection(SoupServerMessage* message);

}  // namespace orivex::devserver
