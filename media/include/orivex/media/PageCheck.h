#pragma once

#include <optional>
#include <string>
#include <variant>

#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/UrlRequest.h"

namespace orivex {

/// The page may be loaded, with the request that was checked; or it may not.
struct PageCheckFailure {
  std::optional<std::string> message;  ///< for the visitor
  int status = 0;                      ///< with which the server refused; 0 when no answer came
  bool timedOut = false;
  std::string detail{};  ///< for the log
};
using PageCheckOutcome = std::variant<UrlRequest, PageCheckFailure>;

/// Asks the server for the page once before it is shown: GET with the component's user agent and 5.0 seconds. Main
/// thread; `completion` is called exactly once, later, on the main thread.
void checkPage(const Url& url, Once<void(PageCheckOutcome)> completion);

}  // namespace orivex
