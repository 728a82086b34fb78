#include "Contained.h"

#include <exception>
#include <string>

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

std::string describeEscaped() {
  try {
    throw;
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "no standard exception";
  }
}

}  // namespace

void logEscaped() noexcept {
  try {
    log::warning("Error in a callback, which is left: " + describeEscaped());
  } catch (...) {  // NOLINT(bugprone-empty-catch): without memory for a line there is no line
  }
}

}  // namespace orivex::gtk
