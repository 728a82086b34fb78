#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "contract/Fixture.h"

#include "orivex/testing/VirtualDevice.h"

namespace orivex::testing {

/// The virtual device as the contract suites see it: one function serves its HTTP client and its web engines.
class VirtualFixture {
 public:
  VirtualFixture();
  VirtualFixture(const VirtualFixture&) = delete;
  VirtualFixture& operator=(const VirtualFixture&) = delete;
  ~VirtualFixture();

  const Platform& platform() { return device_.platform(); }
  bool wait(const std::function<bool()>& condition, double seconds) {
    return device_.mainQueue().advanceUntil(condition, seconds);
  }

  std::string serve(const contract::Site& site);
  std::string refusingOrigin() { return "http://refused.test"; }
  std::vector<std::string> userAgents(const std::string& target);
  std::string localPage() { return device_.componentBundle().addResource("local", "html", "<p>local"); }

  const Bundle& bundleWith(const std::map<std::string, std::string>& files);
  const Bundle& missingBundle();
  const UserDefaults& userDefaultsWith(const contract::Settings& settings);
  std::string file(const std::string& name);
  std::string lostFile(const std::string& name);
  void pick(const std::string& path) { device_.documentPicker().pick({path}); }
  void cancelPicking() { device_.documentPicker().cancel(); }
  std::optional<std::string> overlayStatus();
  bool giveUp();
  std::optional<std::string> offered();
  void answerOffer(bool retries);
  void removeWindow() { device_.application().setSceneConnected(false); }

 private:
  contract::ServedReply servedAt(const std::string& address) const;
  VirtualReply reply(const UrlRequest& request) const;
  VirtualUploadReply reply(const UploadRequest& request) const;
  void play(VirtualWebEngine& engine);
  void playPage(VirtualWebEngine& engine, const std::string& address);

  std::filesystem::path folder_;  // empty until a file is asked for
  VirtualDevice device_;
  contract::Site site_;
  std::vector<std::pair<std::string, std::string>> userAgents_;  // by address
};

}  // namespace orivex::testing
