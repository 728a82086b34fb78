#pragma once

#include <utility>

#include <glib-object.h>

#include "../Contained.h"

namespace orivex::gtk {

/// A signal handler that is connected as long as this object lives. It does not keep the sender alive.
class SignalConnection {
 public:
  SignalConnection() = default;
  SignalConnection(SignalConnection&& other) noexcept { take(other); }
  SignalConnection& operator=(SignalConnection&& other) noexcept {
    if (this != &other) {
      disconnect();
      take(other);
    }
    return *this;
  }
  SignalConnection(const SignalConnection&) = delete;
  SignalConnection& operator=(const SignalConnection&) = delete;
  ~SignalConnection() { disconnect(); }

  /// Calls the member function `handler` of `owner` at every `signal` of `sender`. The member function takes what the
  /// signal's documentation lists, the sender first and without the closing user data, and returns what it asks for.
  template <auto handler, class Owner>
  [[nodiscard]] static SignalConnection connect(gpointer sender, const char* signal, Owner* owner) {
    const GCallback callback = trampoline<handler, Owner>(handler);
    return {G_OBJECT(sender), g_signal_connect(sender, signal, callback, owner)};
  }

  /// The same, after the sender's own handler and those that were connected in the usual way.
  template <auto handler, class Owner>
  [[nodiscard]] static SignalConnection connectAfter(gpointer sender, const char* signal, Owner* owner) {
    const GCallback callback = trampoline<handler, Owner>(handler);
    return {G_OBJECT(sender), g_signal_connect_after(sender, signal, callback, owner)};
  }

  void disconnect() {
    if (!sender_) return;
    auto* const sender = forget();
    g_signal_handler_disconnect(sender, id_);
  }

 private:
  SignalConnection(GObject* sender, gulong id) : sender_(sender), id_(id) { watch(); }

  // Deduces the C signature from the member function's, so that neither a wrong owner nor a wrong data pointer
  // compiles.
  template <auto handler, class Owner, class Result, class... Args>
  static GCallback trampoline(Result (Owner::*)(Args...)) {
    Result (*function)(Args..., Owner*) = [](Args... args, Owner* owner) noexcept -> Result {
      return contained([&] { return (owner->*handler)(args...); });
    };
    return reinterpret_cast<GCallback>(function);
  }

  // The weak pointer turns null when the sender goes first.
  void watch() {
    if (sender_) g_object_add_weak_pointer(sender_, reinterpret_cast<gpointer*>(&sender_));
  }
  GObject* forget() {
    if (sender_) g_object_remove_weak_pointer(sender_, reinterpret_cast<gpointer*>(&sender_));
    return std::exchange(sender_, nullptr);
  }
  void take(SignalConnection& other) {
    sender_ = other.forget();
    id_ = std::exchange(other.id_, 0);
    watch();
  }

  GObject* sender_ = nullptr;
  gulong id_ = 0;
};

}  // namespace orivex::gtk
