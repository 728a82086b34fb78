#pragma once

namespace orivex {

/// Base of what is implemented by each backend: used through references and pointers, never copied.
class Interface {
 public:
  Interface(const Interface&) = delete;
  Interface& operator=(const Interface&) = delete;
  virtual ~Interface() = default;

 protected:
  Interface() = default;
};

}  // namespace orivex
