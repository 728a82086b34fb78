#pragma once

#include <memory>

#include <gio/gio.h>

namespace orivex::demo {

/// Deleter that calls the free function which GLib names for the type.
template <auto free>
struct FreeWith {
  template <class Pointee>
  void operator()(Pointee* pointer) const {
    free(pointer);
  }
};

/// One owned reference to a GObject.
template <class Object>
using ObjectPtr = std::unique_ptr<Object, FreeWith<g_object_unref>>;

using BytesPtr = std::unique_ptr<GBytes, FreeWith<g_bytes_unref>>;
using CharPtr = std::unique_ptr<char, FreeWith<g_free>>;
using ErrorPtr = std::unique_ptr<GError, FreeWith<g_error_free>>;
using KeyFilePtr = std::unique_ptr<GKeyFile, FreeWith<g_key_file_unref>>;

/// Calls the member function `handler` of `owner` at every `signal` of `sender`. The member function takes what the
/// signal's documentation lists, the sender first and without the closing user data. `owner` must outlive `sender`.
template <auto handler, class Owner, class... Args>
void connectTo(gpointer sender, const char* signal, Owner* owner, void (Owner::*)(Args...)) {
  void (*function)(Args..., Owner*) = [](Args... args, Owner* receiver) noexcept { (receiver->*handler)(args...); };
  g_signal_connect(sender, signal, reinterpret_cast<GCallback>(function), owner);
}

template <auto handler, class Owner>
void connectTo(gpointer sender, const char* signal, Owner* owner) {
  connectTo<handler>(sender, signal, owner, handler);
}

}  // namespace orivex::demo
