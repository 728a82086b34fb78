#pragma once

#include <memory>
#include <utility>

namespace orivex {

/// The life of an object, for callbacks that may come late. Keep it as the last data member, so that it ends before
/// the members that a guarded callback would touch. Main thread only.
class Alive {
 public:
  Alive() : token_(std::make_shared<char>()) {}
  Alive(const Alive&) = delete;
  Alive& operator=(const Alive&) = delete;
  ~Alive() = default;

  /// Wraps `function` so that it does nothing once the owner of this life is gone.
  template <class Function>
  auto guard(Function function) const {
    return [life = std::weak_ptr<char>(token_), function = std::move(function)](auto&&... args) mutable {
      if (!life.expired()) function(std::forward<decltype(args)>(args)...);
    };
  }

 private:
  std::shared_ptr<char> token_;
};

}  // namespace orivex
