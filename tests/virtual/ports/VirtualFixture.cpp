#include "VirtualFixture.h"

#include <cstdlib>
#include <fstream>

namespace orivex::testing {
namespace {

constexpr const char* servedOrigin = "http://served.test";

std::optional<std::string> run(VirtualWebEngine& engine, const std::string& script) {
  if (script.starts_with("throw")) return "Error: broken";
  if (script == contract::askForWindow) engine.openWindow("https://elsewhere.example/a?b#c");
  if (script == contract::askForFiles) engine.requestFiles({{"image/*"}, true});
  if (script == contract::askForDownload) engine.endDownload({"note.txt", true});
  return std::nullopt;
}

}  // namespace

VirtualFixture::VirtualFixture() {
  device_.httpClient().setServer([this](const UrlRequest& request) { return reply(request); });
  device_.httpClient().setUploadServer([this](const UploadRequest& request) { return reply(request); });
  device_.webEngines().setLoader([this](VirtualWebEngine& engine) { play(engine); });
  device_.webEngines().setScriptRunner(run);
}

std::string VirtualFixture::serve(const contract::Site& site) {
  for (const auto& [target, reply] : site) site_.emplace(servedOrigin + target, reply);
  return servedOrigin;
}

contract::ServedReply VirtualFixture::servedAt(const std::string& address) const {
  const auto found = site_.find(address);
  return found == site_.end() ? contract::ServedReply{.status = 404, .body = "not found"} : found->second;
}

VirtualReply VirtualFixture::reply(const UrlRequest& request) const {
  const auto& address = request.url.absoluteString();
  if (!address.starts_with(servedOrigin)) return VirtualReply::fail("Connection refused");
  const auto served = servedAt(address);
  if (served.silent) return VirtualReply::never();
  if (!served.location.empty()) return VirtualReply::redirect(*Url::parse(servedOrigin + served.location), 0.01);
  return VirtualReply::respond(served.status, 0.01);
}

VirtualUploadReply VirtualFixture::reply(const UploadRequest& request) const {
  const auto& address = request.url.absoluteString();
  if (!address.starts_with(servedOrigin)) return VirtualUploadReply::fail("Connection refused");
  auto served = servedAt(address);
  if (served.status == 307) served = servedAt(servedOrigin + served.location);
  auto reply = VirtualUploadReply::respond(served.status, served.body, 0.1, {0.5, 1});
  reply.isSilent = served.silent || served.endless;
  if (served.silent) reply.reply.response.reset();
  return reply;
}

void VirtualFixture::play(VirtualWebEngine& engine) {
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

void VirtualFixture::playPage(VirtualWebEngine& engine, const std::string& address) {
  engine.commit(address);
  if (const auto found = site_.find(address); found != site_.end()) {
    for (const auto& message : found->second.posts) engine.post(message.name, message.body);
    if (!found->second.cookie.empty()) device_.websiteDataStore().put("served.test", {WebsiteDataType::cookies});
  }
  engine.finish();
}

std::vector<std::string> VirtualFixture::userAgents(const std::string& target) {
  std::vector<std::string> agents;
  for (const auto& [address, agent] : userAgents_) {
    if (address == servedOrigin + target) agents.push_back(agent);
  }
  return agents;
}

const Bundle& VirtualFixture::bundleWith(const std::map<std::string, std::string>& files) {
  auto& bundle = device_.componentBundle();
  for (const auto& [name, contents] : files) {
    const auto dot = name.rfind('.');
    bundle.addResource(name.substr(0, dot), name.substr(dot + 1), contents);
  }
  return bundle;
}

const Bundle& VirtualFixture::missingBundle() {
  device_.componentBundle().setMissing(true);
  return device_.componentBundle();
}

const UserDefaults& VirtualFixture::userDefaultsWith(const contract::Settings& settings) {
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

VirtualFixture::~VirtualFixture() {
  if (!folder_.empty()) std::filesystem::remove_all(folder_);
}

std::string VirtualFixture::file(const std::string& name) {
  if (folder_.empty()) {
    std::string pattern = (std::filesystem::temp_directory_path() / "contract-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
  }
  std::ofstream(folder_ / name).put('x');
  return (folder_ / name).string();
}

std::string VirtualFixture::lostFile(const std::string& name) {
  auto path = "/lost/" + name;
  device_.typeRegistry().fail(path, "No such file or directory");
  device_.documentPicker().refuse(path);
  return path;
}

std::optional<std::string> VirtualFixture::overlayStatus() {
  const auto& shown = device_.progressOverlay().shown();
  return shown ? std::optional(shown->status) : std::nullopt;
}

bool VirtualFixture::giveUp() {
  const bool can = device_.progressOverlay().canBeGivenUp();
  device_.progressOverlay().pressGiveUp();
  return can;
}

std::optional<std::string> VirtualFixture::offered() {
  const auto& offer = device_.progressOverlay().offered();
  return offer ? std::optional(offer->status) : std::nullopt;
}

void VirtualFixture::answerOffer(bool retries) {
  const auto offer = *device_.progressOverlay().offered();
  retries ? offer.retry() : offer.drop();
}

}  // namespace orivex::testing
