#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

class View;

/// The page may be loaded, with the request that was checked; or it may not.
struct PageCheckFailure {
  std::optional<std::string> message;  ///< for the visitor
  int status = 0;                      ///< with which the server refused; 0 when no answer came
  bool timedOut = false;
  std::string detail{};  ///< for the log
};
using PageCheckOutcome = std::variant<UrlRequest, PageCheckFailure>;

/// What the whole component asks about its host and device, and the two ways in which it speaks to the visitor. Keeps
/// no state. Main thread unless said otherwise.
class OVKFApiHelper {
 public:
  OVKFApiHelper() = delete;

  /// Version of this component: "1.2.0" when `isShort`, else with the build number, "1.2.0.7". Empty when its bundle
  /// has no information dictionary; a dictionary without the keys stops the process.
  static std::string sdkVersion(bool isShort);

  /// Hardware name of the machine as uname gives it, for example "x86_64".
  static std::string deviceModel();

  /// The identifier of this device for the chat server: 36 characters in lower case, computed on first use and kept for
  /// the life of the process; empty while the platform gives none, and then asked for again. Main thread.
  static const std::string& deviceIdentifier();

  /// How the component names itself to servers: "KepChatSDK/iOS/1.2.0.7(x86_64)", without blanks. The chat server
  /// knows its clients by this form.
  static std::string userAgent();

  /// The host application's name for people; "Unknown App Name" when it has none.
  static std::string appDisplayName();

  /// Shows `message` in the overlay and, `delay` seconds after the call, dismisses whatever the overlay then shows and
  /// calls `completion` if there is one. Any thread; `completion` runs on the main thread.
  static void showMessage(const std::string& message, double delay, Once<void()> completion = nullptr);

  /// The same over the window of `view`, but only while the screen of `view` shows: a visitor who has left is not told,
  /// and `completion` is dropped. Main thread.
  static void showMessage(const std::weak_ptr<View>& view, const std::string& message, double delay,
                          Once<void()> completion = nullptr);

  /// The same for what is good to know but asks for nothing: the visitor goes on meanwhile.
  static void showNotice(const std::string& message, double delay);

  /// Asks the server for the page once before it is shown: GET with the component's user agent and 5.0 seconds. Main
  /// thread; `completion` is called exactly once, later, on the main thread.
  static void checkPage(const Url& url, Once<void(PageCheckOutcome)> completion);

  /// Bytes of the longest address that a page may have opened: far beyond what servers take.
  static constexpr std::size_t longestAddress = std::size_t{64} << 10U;

  /// Opens an address outside of the application. Bad or unanswered addresses are one log line.
  static void openExternalURL(const std::optional<std::string>& text);

  /// Whether a link's text must be percent-encoded before it can be an address.
  static bool needsPercentEncoding(std::string_view text);

  /// Size in bytes of the file at `url`; 0 with a log line when it cannot be told.
  static std::int64_t fileSize(const Url& url);

  /// The colour of "#RRGGBB"; opaque black for any other text.
  static Color color(std::string_view hex);
};

}  // namespace orivex
