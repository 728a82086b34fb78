#pragma once

#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

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

/// A list of observers in order of registration. An observer may end any subscription, or the list itself, while it is
/// being called. Main thread only.
template <class... Args>
class Observers {
 public:
  using Observer = std::function<void(Args...)>;

  [[nodiscard]] Subscription add(Observer observer) {
    const auto id = next_++;
    observers_->emplace(id, std::make_shared<Observer>(std::move(observer)));
    return Subscription([id, list = std::weak_ptr<List>(observers_)] {
      if (const auto held = list.lock()) held->erase(id);
    });
  }

  void notify(Args... args) const {
    std::vector<std::weak_ptr<Observer>> now;
    for (const auto& [id, observer] : *observers_) now.push_back(observer);
    for (const auto& observer : now) {
      if (const auto held = observer.lock()) (*held)(args...);
    }
  }

 private:
  using List = std::map<int, std::shared_ptr<Observer>>;
  int next_ = 0;
  std::shared_ptr<List> observers_ = std::make_shared<List>();
};

}  // namespace orivex
