#pragma once

#include <filesystem>

#include "ChatScreenTest.h"
#include "support/TemporaryFolder.h"

#include "orivex/session/OVKFApiManager.h"

namespace orivex::testing {

/// A chat whose page asks for files, and a folder of real ones to choose from.
class PickingTest : public ChatScreenTest {
 protected:
  PickingTest() {
    device_.runUntilIdle();
    log_.take();
  }

  std::string file(const std::string& name, std::size_t size = 3) {
    const auto path = temporary_.write(name, "x");
    std::filesystem::resize_file(path, size);
    return path.string();
  }

  void ask(const std::string& message, const std::string& body = R"({"deviceId":"visitor"})") {
    pageOf(*screen_).post(message, body);
    device_.runUntilIdle();
  }

  /// What the page was told while `act` and half a second passed.
  template <class Act>
  Lines answersTo(const Act& act) {
    const auto before = pageOf(*screen_).scripts().size();
    act();
    device_.advance(0.5);
    const auto& scripts = pageOf(*screen_).scripts();
    return {scripts.begin() + static_cast<std::ptrdiff_t>(before), scripts.end()};
  }

  /// A server that takes each file and answers after `seconds`.
  void store(double seconds) { serveUploads(stored(seconds)); }
  static VirtualUploadReply stored(double seconds) {
    return VirtualUploadReply::respond(200, R"({"url":"u","inputContentType":"a","actualContentType":"b"})", seconds);
  }

  std::shared_ptr<OVKFApi> screen_ = present();
  const TemporaryFolder temporary_;
  const std::filesystem::path& folder_ = temporary_.path();
};

}  // namespace orivex::testing
