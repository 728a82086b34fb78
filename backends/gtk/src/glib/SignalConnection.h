#pragma once

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

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

  /// Calls `handler`, a lambda, at every `signal` of `sender`. It takes as many of the signal's own arguments as it
  /// needs, from the first one on, and neither the sender nor the closing user data; one that answers yes or no may
  /// return a bool. It lives as long as the connection, and to the end of a call in which that ends. With
  /// G_CONNECT_AFTER it comes after the sender's own handler and those that were connected in the usual way.
  template <class Handler>
  [[nodiscard]] static SignalConnection connect(gpointer sender, const char* signal, Handler handler,
                                                GConnectFlags order = G_CONNECT_DEFAULT) {
    const auto free = [](gpointer owned, GClosure* /*closure*/) { delete static_cast<Handler*>(owned); };
    // Swapped: the handler comes first and the sender last, where a function that does not take it does no harm.
    return {G_OBJECT(sender), g_signal_connect_data(sender, signal, trampoline(&Handler::operator()),
                                                    std::make_unique<Handler>(std::move(handler)).release(), free,
                                                    static_cast<GConnectFlags>(G_CONNECT_SWAPPED | order))};
  }

  void disconnect() {
    if (!sender_) return;
    auto* const sender = forget();
    g_signal_handler_disconnect(sender, id_);
  }

 private:
  SignalConnection(GObject* sender, gulong id) : sender_(sender), id_(id) { watch(); }

  // Deduces the C signature from the lambda's, so that no wrong data pointer compiles.
  template <class Handler, class Result, class... Args>
  static GCallback trampoline(Result (Handler::*)(Args...) const) {
    using Returned = std::conditional_t<std::is_same_v<Result, bool>, gboolean, Result>;
    Returned (*function)(Handler*, Args...) = [](Handler* handler, Args... args) noexcept -> Returned {
      return contained([&]() -> Returned { return (*handler)(args...); });
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

/// Lambdas that are connected as long as this object lives.
class SignalConnections {
 public:
  /// As `SignalConnection::connect`.
  template <class Handler>
  void add(gpointer sender, const char* signal, Handler handler) {
    connections_.push_back(SignalConnection::connect(sender, signal, std::move(handler)));
  }

  void disconnect() { connections_.clear(); }

 private:
  std::vector<SignalConnection> connections_;
};

}  // namespace orivex::gtk
