#pragma once

namespace orivex::gtk {

/// Takes from this process what it needs no more before it reads foreign bytes: much memory, the network, and its place
/// before others when the device runs out of memory. What cannot be taken is told on standard error.
void lockDown();

}  // namespace orivex::gtk
