#pragma once

#include <memory>

#include <gio/gio.h>

namespace orivex::devserver {

/// Frees with the function that GLib names for the type; for use as a std::unique_ptr's deleter.
template <auto free>
struct FreeWith {
  template <typename T>
  void operator()(T* pointer) const {
    free(pointer);
  }
};

/// One owned reference to a GObject.
template <typename T>
using ObjectPtr = std::unique_ptr<T, FreeWith<g_object_unref>>;

/// A reference of its own beside the caller's.
template <typename T>
ObjectPtr<T> share(T* object) {
  return ObjectPtr<T>(static_cast<T*>(g_object_ref(object)));
}

using GCharPtr = std::unique_ptr<char, FreeWith<g_free>>;
using GErrorPtr = std::unique_ptr<GError, FreeWith<g_error_free>>;
using GBytesPtr = std::unique_ptr<GBytes, FreeWith<g_bytes_unref>>;
using GUriPtr = std::unique_ptr<GUri, FreeWith<g_uri_unref>>;

}  // namespace orivex::devserver
