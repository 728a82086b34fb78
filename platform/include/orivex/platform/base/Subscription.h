#pragma once

#include "orivex/platform/base/Once.h"

namespace orivex {

/// An observation that ends when this object does. Main thread only.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(Task end) : end_(std::move(end)) {}
  Subscription(Subscription&&) noexcept = default;
  Subscription& operator=(Subscription&& other) noexcept {
    std::move(end_)();
    end_ = std::move(other.end_);
    return *this;
  }
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  ~Subscription() { std::move(end_)(); }

  explicit operator bool() const { return static_cast<bool>(end_); }

 private:
  Task end_;
};

}  // namespace orivex
