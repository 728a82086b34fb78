#pragma once

namespace orivex::demo {

/// Gives the process the shop's look. GTK must be initialised.
void addStyle();

}  // namespace orivex::demo
