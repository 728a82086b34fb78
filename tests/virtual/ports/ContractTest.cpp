#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "contract/AudioContract.h"
#include "contract/DocumentPickerContract.h"
#include "contract/HttpClientContract.h"
#include "contract/MediaContract.h"
#include "contract/PhotoLibraryContract.h"
#include "contract/ProgressOverlayContract.h"
#include "contract/StoredDataContract.h"
#include "contract/TimeContract.h"
#include "contract/TypeRegistryContract.h"
#include "contract/WebEngineContract.h"
#include "contract/WebsiteDataContract.h"
#include "support/TemporaryFolder.h"

#include "orivex/testing/VirtualDevice.h"

namespace orivex::contract {
namespace {

using testing::VirtualReply;
using testing::VirtualUploadReply;
using testing::VirtualWebEngine;

constexpr const char* servedOrigin = "http://served.test";

/// The virtual device as the contract suites see it: one function serves its HTTP client and its web engines.
class Virtual {
 public:
  Virtual() {
    device_.httpClient().setServer([this](const UrlRequest& request) { return reply(request); });
    device_.httpClient().setUploadServer([this](const UploadRequest& request) { return reply(request); });
    device_.webEngines().setLoader([this](VirtualWebEngine& engine) { play(engine); });
    device_.webEngines().setScriptRunner(run);
  }
  Virtual(const Virtual&) = delete;
  Virtual& operator=(const Virtual&) = delete;
  ~Virtual() = default;

  const Platform& platform() { return device_.platform(); }
  bool wait(const std::function<bool()>& condition, double seconds) {
    return device_.mainQueue().advanceUntil(condition, seconds);
  }

  std::string serve(const Site& site) {
    for (const auto& [target, reply] : site) site_.emplace(servedOrigin + target, reply);
    return servedOrigin;
  }
  std::string refusingOrigin() { return "http://refused.test"; }
  std::vector<std::string> userAgents(const std::string& target) {
    std::vector<std::string> agents;
    for (const auto& [address, agent] : userAgents_) {
      if (address == servedOrigin + target) agents.push_back(agent);
    }
    return agents;
  }
  std::string localPage() { return device_.componentBundle().addResource("local", "html", "<p>local"); }

  const Bundle& bundleWith(const std::map<std::string, std::string>& files) {
    auto& bundle = device_.componentBundle();
    for (const auto& [name, contents] : files) {
      const auto dot = name.rfind('.');
      bundle.addResource(name.substr(0, dot), name.substr(dot + 1), contents);
    }
    return bundle;
  }
  const Bundle& missingBundle() {
    device_.componentBundle().setMissing(true);
    return device_.componentBundle();
  }
  const UserDefaults& userDefaultsWith(const Settings& settings);
  std::string file(const std::string& name) {
    if (!folder_) folder_.emplace();
    return folder_->write(name, "x").string();
  }
  std::string lostFile(const std::string& name) {
    auto path = "/lost/" + name;
    device_.typeRegistry().fail(path, "No such file or directory");
    device_.documentPicker().refuse(path);
    return path;
  }

  void pick(const std::string& path) { device_.documentPicker().pick({path}); }
  void cancelPicking() { device_.documentPicker().cancel(); }
  PhotoLibrary& photoLibrary() { return device_.photoLibrary(); }
  View& view() { return *device_.application().window()->contentView(); }
  void select(const std::vector<std::string>& names) {
    PhotoSelection selection;
    for (const auto& name : names) selection.items.push_back({MediaType::image, Url::fromFilePath("/photos/" + name)});
    device_.photoLibrary().select(std::move(selection));
  }
  void close() { device_.photoLibrary().close(); }
  std::optional<std::string> overlayStatus() {
    const auto& shown = device_.progressOverlay().shown();
    return shown ? std::optional(shown->status) : std::nullopt;
  }
  bool cancel() {
    const bool can = device_.progressOverlay().canBeCancelled();
    device_.progressOverlay().pressCancel();
    return can;
  }
  std::optional<std::string> offered() {
    const auto& offer = device_.progressOverlay().offered();
    return offer ? std::optional(offer->status) : std::nullopt;
  }
  void answerOffer(bool retries) {
    const auto offer = *device_.progressOverlay().offered();
    retries ? offer.retry() : offer.drop();
  }
  void removeWindow() { device_.application().setSceneConnected(false); }

  const ImageCodec& imageCodec() { return device_.imageCodec(); }
  const MediaProbe& mediaProbe() { return device_.mediaProbe(); }
  void runOnWorker(Task task) {
    device_.mainQueue().global(std::move(task));
    device_.runUntilIdle();
  }
  std::string picture() {
    device_.imageCodec().put("/files/picture.png", {"\xFF\xD8 and so on", {64, 48}});
    return "/files/picture.png";
  }
  std::string video() {
    device_.mediaProbe().put("/files/video.mp4", {2, {320, 240}, "\xFF\xD8 and so on"});
    return "/files/video.mp4";
  }
  std::string text() { return "/files/text.txt"; }

  std::string soundPlace(const std::string& name) { return "/virtual/" + name; }
  void speak() { device_.audioSession().setPeakPower(-6); }
  void rememberPermission(bool granted) { device_.recordPermission().remember(granted); }

 private:
  static std::optional<std::string> run(VirtualWebEngine& engine, const std::string& script);
  ServedReply servedAt(const std::string& address) const;
  VirtualReply reply(const UrlRequest& request) const;
  VirtualUploadReply reply(const UploadRequest& request) const;
  void play(VirtualWebEngine& engine);
  void playPage(VirtualWebEngine& engine, const std::string& address);

  std::optional<TemporaryFolder> folder_;
  testing::VirtualDevice device_;
  Site site_;
  std::vector<std::pair<std::string, std::string>> userAgents_;  // by address
};

const UserDefaults& Virtual::userDefaultsWith(const Settings& settings) {
  auto& defaults = device_.userDefaults();
  for (const auto& [key, value] : settings) {
    if (const bool* flag = std::get_if<bool>(&value)) {
      defaults.setBool(key, *flag);
    } else {
      defaults.setString(key, std::get<std::string>(value));
    }
  }
  return defaults;
}

std::optional<std::string> Virtual::run(VirtualWebEngine& engine, const std::string& script) {
  if (script.starts_with("throw")) return "Error: broken";
  if (script == askForWindow) engine.openWindow("https://elsewhere.example/a?b#c");
  if (script == askForFiles) engine.requestFiles({{"image/*"}, true});
  if (script == askForDownload) engine.endDownload({"note.txt", true});
  return std::nullopt;
}

ServedReply Virtual::servedAt(const std::string& address) const {
  const auto found = site_.find(address);
  return found == site_.end() ? ServedReply{.status = 404, .body = "not found"} : found->second;
}

VirtualReply Virtual::reply(const UrlRequest& request) const {
  const auto& address = request.url.absoluteString();
  if (!address.starts_with(servedOrigin)) return VirtualReply::fail("Connection refused");
  const auto served = servedAt(address);
  if (served.silent) return VirtualReply::never();
  if (!served.location.empty()) return VirtualReply::redirect(*Url::parse(servedOrigin + served.location), 0.01);
  return VirtualReply::respond(served.status, 0.01);
}

VirtualUploadReply Virtual::reply(const UploadRequest& request) const {
  const auto& address = request.url.absoluteString();
  if (!address.starts_with(servedOrigin)) return VirtualUploadReply::fail("Connection refused");
  auto served = servedAt(address);
  if (served.status == 307) served = servedAt(servedOrigin + served.location);
  auto reply = VirtualUploadReply::respond(served.status, served.body, 0.1, {0.5, 1});
  reply.isSilent = served.silent || served.endless;
  if (served.silent) reply.reply.response.reset();
  return reply;
}

void Virtual::play(VirtualWebEngine& engine) {
  auto address = engine.requestedUrl().value();
  userAgents_.emplace_back(address, engine.customUserAgent());
  engine.startProvisional();
  if (!address.starts_with(servedOrigin) && !address.starts_with("file:")) {
    engine.failProvisional("Connection refused");
    return;
  }
  if (const auto found = site_.find(address); found != site_.end() && !found->second.location.empty()) {
    address = servedOrigin + found->second.location;
    engine.redirect(address);
  }
  playPage(engine, address);
}

void Virtual::playPage(VirtualWebEngine& engine, const std::string& address) {
  engine.commit(address);
  if (const auto found = site_.find(address); found != site_.end()) {
    for (const auto& message : found->second.posts) engine.post(message.name, message.body);
    if (!found->second.cookie.empty()) device_.websiteDataStore().put("served.test");
  }
  engine.finish();
}

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, MainQueueContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, AnimatorContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, HttpClientContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, BundleContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, UserDefaultsContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, DeviceContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, FileManagerContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, TypeRegistryContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, DocumentPickerContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, PhotoLibraryContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, MediaContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, AudioContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, RecordPermissionContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, ProgressOverlayContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, WebEngineContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, WebsiteDataContract, Virtual);

}  // namespace orivex::contract
