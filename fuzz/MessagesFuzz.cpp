// A visit on the virtual device, told line by line: the first letter says what happens, the rest of the line with what.
// Capitals are messages of the page, the other letters what visitor, server and device do.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "Expect.h"
#include "JsonGrammar.h"
#include "support/TemporaryFolder.h"

#include "orivex/models/UserMappingModel.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/ui/WebView.h"
#include "orivex/sdk/OVKFApi.h"
#include "orivex/testing/VirtualDevice.h"

namespace orivex::fuzz {
namespace {

// What the visitor may choose; made once, since files of the disk are slow.
class Files {
 public:
  Files() {
    folder_.write("a.pdf", "%PDF");
    folder_.write("b.jpg", "picture");
    folder_.write("c.mp4", "film");
    folder_.write("%d\n.txt", "");
  }
  std::string path(std::string_view name) const { return (folder_.path() / name).string(); }

 private:
  TemporaryFolder folder_;
};

class Visit {
 public:
  explicit Visit(const Files& files) : files_(files) {
    device_.imageCodec().put(files.path("b.jpg"), {"jpeg", {4, 3}});
    device_.mediaProbe().put(files.path("c.mp4"), {2.5, {320, 240}, "frame"});
    device_.webEngines().setLoader([](auto& engine) { engine.completeLoad(); });
    device_.application().window()->setRootViewController(host_);
    screen_->conversationEvents = true;
    screen_->startSession("https://chat.example", "entry", "key", std::make_shared<UserMappingModel>());
    host_->present(screen_, false);
    device_.runUntilIdle();
  }

  void step(char letter, std::string_view rest) {
    constexpr std::string_view messages = "TUFCPDIRGSMN";
    constexpr const char* names[] = {"trackEvent",
                                     "openUrl",
                                     "openFile",
                                     "openCamera",
                                     "openPhotoLibraryPicker",
                                     "openDocumentPicker",
                                     "initLoaded",
                                     "recording",
                                     "goBack",
                                     "shortCut",
                                     "message",
                                     "unreadCount"};
    if (const auto message = messages.find(letter); message != std::string_view::npos) {
      if (letter == 'R') ++chosen_;
      // What is no JSON may be meant as a text.
      const auto body = isJson(rest) ? std::string(rest) : '"' + std::string(rest) + '"';
      if (isJson(body)) page().post(names[message], body);
    } else {
      act(letter, rest);
    }
    device_.runUntilIdle();
    checkAnswers();
  }

  void end() {
    if (host_->presentedViewController()) host_->dismiss(false);
    device_.advance(60);
    checkAnswers();
    for (const auto& recording : device_.audioSession().recordings())
      expect(!recording->recording, "the microphone is closed once the screen is gone");
    expect(!device_.camera().presented() && !device_.photoLibrary().shown() && !device_.documentPicker().presented(),
           "every picker closes with the screen");
    const std::weak_ptr gone(screen_);
    screen_.reset();
    device_.advance(60);
    expect(gone.expired(), "nothing holds a screen that is gone");
    expect(device_.webEngines().engines().empty(), "pages go with their screen");
    expect(device_.documentPicker().openAccesses() == 0, "access to files ends with the screen");
    expect(device_.mainQueue().pendingCount() == 0, "nothing waits for a screen that is gone");
  }

 private:
  testing::VirtualWebEngine& page() { return dynamic_cast<testing::VirtualWebEngine&>(screen_->webView()->engine()); }

  PickedMedia media(bool isVideo) const {
    return {isVideo ? MediaType::video : MediaType::image, Url::fromFilePath(files_.path(isVideo ? "c.mp4" : "b.jpg"))};
  }

  void act(char letter, std::string_view rest) {
    const std::string text(rest);
    const bool isFirst = rest.size() % 2 == 0;
    auto& overlay = device_.progressOverlay();
    switch (letter) {
      case 'c':  // the camera's answer
        if (!device_.camera().presented()) return;
        if (rest.size() > 5) return device_.camera().finish(CaptureCancelled{});
        if (rest.size() > 1) return device_.camera().finish(CameraFailure(rest.size() - 2));
        ++chosen_;
        return device_.camera().finish(media(isFirst));
      case 'p': {  // the photo library's: a photo or a video for each letter
        if (!device_.photoLibrary().shown()) return;
        PhotoSelection selection{{}, isFirst};
        for (const char each : rest.substr(0, 9)) selection.items.push_back(media(each == 'v'));
        if (selection.items.empty()) return device_.photoLibrary().close();
        chosen_ += selection.items.size();
        return device_.photoLibrary().select(std::move(selection));
      }
      case 'd':  // the chooser of documents'
        if (!device_.documentPicker().presented()) return;
        if (rest.empty()) return device_.documentPicker().cancel();
        ++chosen_;
        return device_.documentPicker().pick({files_.path(isFirst ? "a.pdf" : "%d\n.txt"), files_.path("c.mp4")});
      case 'm':
        return device_.recordPermission().answer(isFirst);
      case 'n':
        return device_.recordPermission().remember(isFirst);
      case 'i':
        return device_.audioSession().interrupt();
      case 'u':  // what the server says to uploads from now on, after as many seconds as its answer has letters
        return device_.httpClient().setUploadServer([text](const UploadRequest&) {
          const auto seconds = static_cast<double>(text.size() % 4);
          return text.empty() ? testing::VirtualUploadReply::fail("broken", seconds)
                              : testing::VirtualUploadReply::respond(text[0] == '!' ? 500 : 200, text, seconds, {0.5});
        });
      case 'x':
        if (overlay.canBeCancelled()) overlay.pressCancel();
        return;
      case 'r':  // another try of what could not be sent
        if (const auto offer = overlay.offered()) (isFirst ? offer->retry : offer->drop)();
        return;
      case 'w':
        return page().openWindow(text);
      case 'f':
        return page().requestFiles({{text}, isFirst});
      case 'e':
        return page().endDownload({text, isFirst});
      case 'l':  // the page goes on to another address
        return isFirst ? page().changeUrl(text) : page().commit(text);
      case 'k':
        page().die();
        return;
      case 'q':
        return page().leave();
      case 'h':
        return isFirst ? device_.application().resignActive() : device_.application().becomeActive();
      case 'b':
        screen_->goBack();
        return;
      case 's':  // shows the screen again
        return host_->present(screen_, false);
      case 't':
        return device_.advance(static_cast<double>(rest.size()) / 2);
      default:
        return;
    }
  }

  // What was chosen or spoken gets one description at most, in a call that nothing can break out of.
  void checkAnswers() {
    constexpr std::string_view description = R"("type":")";
    const auto& scripts = page().scripts();
    for (; seen_ < scripts.size(); ++seen_) {
      const std::string_view script = scripts[seen_];
      if (!script.starts_with("handleSelected")) continue;
      const auto opening = script.find('(');
      expect(script.ends_with(");") && isJson(script.substr(opening + 1, script.size() - opening - 3)),
             "an answer is one call with JSON");
      for (auto at = script.find(description); at != std::string_view::npos; at = script.find(description, at + 1))
        ++described_;
    }
    expect(described_ <= chosen_, "what was chosen gets one description at most");
  }

  const Files& files_;
  testing::VirtualDevice device_;
  const std::shared_ptr<ViewController> host_ = std::make_shared<ViewController>();
  std::shared_ptr<OVKFApi> screen_ = std::make_shared<OVKFApi>();
  std::size_t seen_ = 0;
  std::size_t described_ = 0;
  std::size_t chosen_ = 0;
};

}  // namespace
}  // namespace orivex::fuzz

// The name that the fuzzer calls.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const orivex::fuzz::Files files;
  orivex::log::setSink([](std::string_view) {});
  orivex::log::setLevel(orivex::log::Level::trace);
  orivex::fuzz::Visit visit(files);
  std::string_view story(reinterpret_cast<const char*>(data), size);
  while (!story.empty()) {
    const auto line = story.substr(0, story.find('\n'));
    if (!line.empty()) visit.step(line.front(), line.substr(1));
    story.remove_prefix(std::min(line.size() + 1, story.size()));
  }
  visit.end();
  return 0;
}
