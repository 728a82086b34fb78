#pragma once

#include <functional>
#include <string>

namespace orivex::bench {

/// Bytes by which the resident memory of this process peaks above what it has before, while `work` runs. True of a
/// fresh process only: memory that was used before is used again unnoticed.
double growth(const std::function<void()>& work);

/// Runs this program anew with `arguments` and returns the number that it prints.
double askFreshProcess(const std::string& arguments);

}  // namespace orivex::bench
