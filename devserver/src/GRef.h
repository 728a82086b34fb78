#pragma once

#include <utility>

#include <glib-object.h>

namespace orivex::devserver {

/// One owned reference to a GObject. Move-only; released when this goes.
template <typename T>
class GRef {
 public:
  GRef() = default;
  GRef(GRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  GRef& operator=(GRef&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  GRef(const GRef&) = delete;
  GRef& operator=(const GRef&) = delete;
  ~GRef() {
    if (object_) g_object_unref(object_);
  }

  /// Takes over a reference that the caller owns.
  [[nodiscard]] static GRef adopt(T* object) { return GRef(object); }
  /// Adds a reference of its own beside the caller's.
  [[nodiscard]] static GRef share(T* object) { return GRef(object ? static_cast<T*>(g_object_ref(object)) : nullptr); }

  [[nodiscard]] T* get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  explicit GRef(T* object) : object_(object) {}

  T* object_ = nullptr;
};

}  // namespace orivex::devserver
