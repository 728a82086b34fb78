#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

namespace orivex {

template <class Signature>
class Once;

/// A completion that can be called at most once, by type: calling it takes an rvalue and leaves it empty.
/// Move-only, so a captured completion may itself own move-only things. Calling an empty one does nothing.
template <class... Args>
class Once<void(Args...)> {
 public:
  Once() = default;
  Once(std::nullptr_t) {}  // NOLINT(google-explicit-constructor): an absent completion is written nullptr

  template <class Function, class = std::enable_if_t<!std::is_same_v<std::decay_t<Function>, Once> &&
                                                     std::is_invocable_v<std::decay_t<Function>&, Args...>>>
  Once(Function&& function)  // NOLINT(google-explicit-constructor): a lambda is a completion
  {
    // An empty std::function or a null pointer is an absent completion too, not one that fails when it is called.
    if constexpr (std::is_constructible_v<std::decay_t<Function>, std::nullptr_t>) {
      if (!function) return;
    }
    callable_ = std::make_unique<Model<std::decay_t<Function>>>(std::forward<Function>(function));
  }

  Once(Once&&) noexcept = default;
  Once& operator=(Once&&) noexcept = default;
  Once(const Once&) = delete;
  Once& operator=(const Once&) = delete;
  ~Once() = default;

  explicit operator bool() const { return callable_ != nullptr; }

  void operator()(Args... args) && {
    if (auto callable = std::move(callable_)) callable->call(std::forward<Args>(args)...);
  }

 private:
  struct Callable {
    Callable() = default;
    Callable(const Callable&) = delete;
    Callable& operator=(const Callable&) = delete;
    virtual ~Callable() = default;
    virtual void call(Args... args) = 0;
  };
  template <class Function>
  struct Model final : Callable {
    explicit Model(Function function) : function_(std::move(function)) {}
    void call(Args... args) override { function_(std::forward<Args>(args)...); }
    Function function_;
  };

  std::unique_ptr<Callable> callable_;
};

/// One piece of work for a queue.
using Task = Once<void()>;

}  // namespace orivex
