#pragma once

#include <memory>
#include <utility>

#include <gio/gio.h>

#include "../Contained.h"

namespace orivex::gtk {

/// A lambda as the last two arguments of one of GIO's asynchronous functions.
struct AsyncCallback {
  GAsyncReadyCallback function;
  gpointer data;
};

/// Calls `handler(source, result)` once; it must be handed to a function that will call it.
template <class Handler>
AsyncCallback asyncCallback(Handler handler) {
  const auto call = [](GObject* source, GAsyncResult* result, gpointer data) noexcept {
    const std::unique_ptr<Handler> owned(static_cast<Handler*>(data));
    contained([&] { (*owned)(source, result); });
  };
  return {call, std::make_unique<Handler>(std::move(handler)).release()};
}

}  // namespace orivex::gtk
