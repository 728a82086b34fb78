#pragma once

#include <concepts>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Bundle.h"
#include "orivex/platform/ports/UserDefaults.h"
#include "orivex/platform/ports/WebEngine.h"

/// What a backend must offer so that the contract suites can run on it. A fixture is made anew for each test; each
/// suite asks for the smallest of these concepts that it needs.
namespace orivex::contract {

/// Seconds after which something that should have happened is taken not to happen.
constexpr double patience = 10;

/// Seconds of looking on to see that nothing happens.
constexpr double moment = 0.3;

/// A device whose time the test can let pass.
template <class Fixture>
concept DeviceFixture = std::default_initializable<Fixture> &&
    requires(Fixture fixture, const std::function<bool()>& condition, double seconds) {
  /// The ports under test. It need not be installed.
  { fixture.platform() } -> std::convertible_to<const Platform&>;
  /// Runs the main queue until `condition` holds, at most `seconds`; returns whether it holds.
  { fixture.wait(condition, seconds) } -> std::same_as<bool>;
};

/// Tests of one port on a fixture of their own.
template <DeviceFixture Fixture>
class Suite : public ::testing::Test {
 protected:
  bool wait(const std::function<bool()>& condition) { return fixture_.wait(condition, patience); }
  /// Looks on.
  void pass(double seconds) {
    fixture_.wait([] { return false; }, seconds);
  }

  Fixture fixture_;
};

/// One address of a small web server.
struct ServedReply {
  int status = 200;
  std::string body = {};
  std::string location = {};              ///< Of a redirect: a target of the same server.
  bool silent = false;                    ///< Takes the request and never answers.
  bool endless = false;                   ///< Answers with a head and never ends the body.
  std::string cookie = {};                ///< "name=value" that the reply sets.
  std::vector<ScriptMessage> posts = {};  ///< What the scripts in `body` post, for an engine that runs none.
};

/// Replies by target, for example "/page?x=1". Any other target is answered with status 404.
using Site = std::map<std::string, ServedReply, std::less<>>;

/// A web server in reach of the device.
template <class Fixture>
concept ServerFixture = DeviceFixture<Fixture> && requires(Fixture fixture, const Site& site) {
  /// Serves `site` until the fixture ends, as "text/html; charset=utf-8"; returns its origin, such as
  /// "http://127.0.0.1:40123". Called once.
  { fixture.serve(site) } -> std::same_as<std::string>;
  /// An origin at which nobody listens.
  { fixture.refusingOrigin() } -> std::same_as<std::string>;
};

/// A page that can ask its surroundings for something, and the scripts by which it does, as on a visitor's gesture.
constexpr const char* askingPage =
    "<input id=choose type=file multiple accept='image/*'><a id=save download=note.txt href='data:text/plain,x'>x</a>";
constexpr const char* askForWindow = "open('https://elsewhere.example/a?b#c'); 0";
constexpr const char* askForFiles = "document.getElementById('choose').click(); 0";
constexpr const char* askForDownload = "document.getElementById('save').click(); 0";

/// A web server that also web engines reach. Scripts that begin with "throw" fail in their pages, others run; those
/// that ask for something ask.
template <class Fixture>
concept WebFixture = ServerFixture<Fixture> && requires(Fixture fixture, const std::string& target) {
  /// The user agent of each request for `target`, in order.
  { fixture.userAgents(target) } -> std::same_as<std::vector<std::string>>;
  /// Path of a readable local page.
  { fixture.localPage() } -> std::same_as<std::string>;
};

/// Bundles with given contents.
template <class Fixture>
concept BundleFixture = DeviceFixture<Fixture> &&
    requires(Fixture fixture, const std::map<std::string, std::string>& files) {
  /// A bundle that holds these files by name, such as "page.html".
  { fixture.bundleWith(files) } -> std::convertible_to<const Bundle&>;
  { fixture.missingBundle() } -> std::convertible_to<const Bundle&>;
};

using Settings = std::map<std::string, std::variant<bool, std::string>>;

/// Settings as the visitor left them.
template <class Fixture>
concept SettingsFixture = DeviceFixture<Fixture> && requires(Fixture fixture, const Settings& settings) {
  { fixture.userDefaultsWith(settings) } -> std::convertible_to<const UserDefaults&>;
};

/// Files that the device is asked about.
template <class Fixture>
concept FileFixture = DeviceFixture<Fixture> && requires(Fixture fixture, const std::string& name) {
  /// Path of a readable file of this name, such as "photo.png".
  { fixture.file(name) } -> std::same_as<std::string>;
  /// Path of a file that cannot be read.
  { fixture.lostFile(name) } -> std::same_as<std::string>;
};

/// A document picker that the test answers as a visitor would.
template <class Fixture>
concept PickerFixture = FileFixture<Fixture> && requires(Fixture fixture, const std::string& path) {
  /// Picks a file in the open chooser.
  fixture.pick(path);
  fixture.cancelPicking();
};

/// A window over which the overlay's panel shows.
template <class Fixture>
concept OverlayFixture = DeviceFixture<Fixture> && requires(Fixture fixture) {
  /// Status of the panel that is up, empty for the plain spinner; nothing when none is.
  { fixture.overlayStatus() } -> std::same_as<std::optional<std::string>>;
  /// Presses the panel's "✕"; whether there is one.
  { fixture.cancel() } -> std::same_as<bool>;
  /// Text of the bar with an offer; nothing without one.
  { fixture.offered() } -> std::same_as<std::optional<std::string>>;
  /// Presses "重试", or "✕", on the bar.
  fixture.answerOffer(true);
  /// From now on there is no window.
  fixture.removeWindow();
};

}  // namespace orivex::contract
