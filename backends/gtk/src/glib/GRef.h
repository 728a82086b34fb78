#pragma once

#include <cstddef>
#include <utility>

#include <glib-object.h>

namespace orivex::gtk {

/// One owned reference to a GObject; null by default. Which of the three ways a raw pointer came in is always named,
/// because the C headers do not say who owns it.
template <class Object>
class GRef {
 public:
  GRef() = default;
  GRef(std::nullptr_t) {}  // NOLINT(google-explicit-constructor): an absent object is written nullptr
  GRef(const GRef& other) : object_(other.object_ ? reference(other.object_) : nullptr) {}
  GRef(GRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  GRef& operator=(GRef other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~GRef() {
    if (object_) g_object_unref(object_);
  }

  /// Takes over a reference that the caller owns ("transfer full").
  [[nodiscard]] static GRef adopt(Object* object) { return GRef(object); }

  /// Adds a reference of its own to an object that somebody else owns ("transfer none").
  [[nodiscard]] static GRef share(Object* object) { return GRef(object ? reference(object) : nullptr); }

  /// Takes the floating reference of a fresh widget, or adds one to an object that is no longer floating.
  [[nodiscard]] static GRef sink(Object* object) {
    return GRef(object ? static_cast<Object*>(g_object_ref_sink(object)) : nullptr);
  }

  [[nodiscard]] Object* get() const { return object_; }

  /// Gives the reference to the caller, for a call that takes ownership.
  [[nodiscard]] Object* release() { return std::exchange(object_, nullptr); }

  explicit operator bool() const { return object_ != nullptr; }

 private:
  explicit GRef(Object* object) : object_(object) {}
  static Object* reference(Object* object) { return static_cast<Object*>(g_object_ref(object)); }

  Object* object_ = nullptr;
};

}  // namespace orivex::gtk
