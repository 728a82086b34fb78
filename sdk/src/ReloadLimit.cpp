#include "ReloadLimit.h"

namespace orivex {

bool ReloadLimit::admit(double now) {
  while (!times_.empty() && now - times_.front() >= window) times_.pop_front();
  if (times_.size() >= most) return false;
  times_.push_back(now);
  return true;
}

}  // namespace orivex
