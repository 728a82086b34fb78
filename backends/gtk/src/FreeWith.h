#pragma once

namespace orivex::gtk {

/// Deleter that calls the function with which a C library frees the type.
template <auto free>
struct FreeWith {
  template <class Pointee>
  void operator()(Pointee* pointer) const {
    free(pointer);
  }
};

}  // namespace orivex::gtk
