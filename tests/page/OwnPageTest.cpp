// Pages for authors, on a real engine, with the component, as `orivex-devserver --page` serves them: the one that the
// guide shows and the one that looks for what is missing. Only the pickers are stood in for.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>

#include "ServerProcess.h"
#include "support/ScreenFixture.h"
#include "support/TemporaryFolder.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Audio.h"
#include "orivex/platform/ports/Camera.h"
#include "orivex/platform/ports/Documents.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/PhotoLibrary.h"
#include "orivex/voice/VoiceManager.h"

namespace orivex::gtk {
namespace {

constexpr const char* picture = ORIVEX_SOURCE_DIR "/docs/chat.png";
constexpr const char* guide = ORIVEX_SOURCE_DIR "/docs/page.md";
constexpr const char* conformance = ORIVEX_SOURCE_DIR "/page/conformance";

/// The real device in the hands of a visitor who answers every question at once, for as long as this lives.
class QuickVisitor final : public Camera,
                           public DocumentInteraction,
                           public DocumentPicker,
                           public PhotoLibrary,
                           public RecordPermission {
 public:
  QuickVisitor() {
    g_setenv("ORIVEX_AUDIO_SOURCE", "audiotestsrc is-live=true", TRUE);
    Platform::install(&device_);
  }
  ~QuickVisitor() override { Platform::install(&real_); }

  void present(const CameraOptions&, View&, Once<void(CameraOutcome)> completion) override {
    const auto shot = folder_.path() / "shot.png";  // the component deletes it
    std::filesystem::copy_file(picture, shot);
    later(std::move(completion), PickedMedia{MediaType::image, Url::fromFilePath(shot.string())});
  }
  void show(const PhotoLibraryOptions&, View&, Once<void(PhotoSelection)> selected) override {
    later(std::move(selected),
          PhotoSelection{std::vector(2, PickedMedia{MediaType::image, Url::fromFilePath(picture)})});
  }
  void present(const DocumentPickerOptions& options, View&, Once<void(DocumentPickerOutcome)> completion) override {
    mimeTypes = options.mimeTypes;
    later(std::move(completion), PickedDocuments{{Url::fromFilePath(guide)}});
  }
  std::variant<std::unique_ptr<FileAccess>, Failure> startAccess(const Url&) override {
    return std::make_unique<FileAccess>();
  }
  bool presentOptionsMenu(const Url& file, const Rect&, View&) override {
    opened = file.absoluteString();
    return true;
  }
  void request(const std::string&, View&, Once<void(bool)> answer) override { later(std::move(answer), true); }

  bool answers = true;
  std::vector<std::string> mimeTypes;
  std::string opened;

 private:
  template <class Completion, class Answer>
  void later(Completion completion, Answer answer) const {
    if (!answers) return;
    real_.mainQueue.async([completion = std::move(completion), answer = std::move(answer)]() mutable {
      std::move(completion)(std::move(answer));
    });
  }

  const TemporaryFolder folder_;
  const Platform& real_ = Platform::current();
  const Platform device_{real_.mainQueue,
                         real_.application,
                         real_.webEngines,
                         real_.websiteDataStore,
                         real_.animator,
                         real_.progressOverlay,
                         real_.httpClient,
                         real_.mainBundle,
                         real_.componentBundle,
                         real_.userDefaults,
                         real_.device,
                         real_.fileManager,
                         real_.typeRegistry,
                         real_.imageCodec,
                         real_.mediaProbe,
                         *this,
                         *this,
                         *this,
                         *this,
                         real_.audioSession,
                         *this};
};

class OwnPageTest : public ScreenFixture {
 protected:
  void open(const std::string& folder) {
    server.emplace(std::vector<std::string>{"--page", folder});
    openChat();
  }

  void openChat() {
    chat = startChat(server->address());
    window()->rootViewController()->present(chat, false);
    ASSERT_TRUE(wait([&] { return log.has("InitLoad") && chat->isLoaded(); }, 20)) << "it does not announce itself";
  }

  std::string run(const std::string& script) { return evaluate(*chat, script); }

  bool becomes(const std::string& script, const std::string& value) {
    const bool became = wait([&] { return run(script) == value; }, 10);
    EXPECT_TRUE(became) << script << " is " << run(script) << " instead of " << value;
    return became;
  }

  /// Events of a finger on the element that `script` gives.
  void finger(const std::string& element, const std::string& type, int y) {
    run("HTMLElement.prototype.setPointerCapture = () => {}; " + element + ".dispatchEvent(new PointerEvent('" + type +
        "', {bubbles: true, clientY: " + element + ".getBoundingClientRect().top + " + std::to_string(y) + "}))");
  }

  /// The first word of each line that the server printed, once it has ended.
  std::vector<std::string> printed() {
    server->closeInput();
    std::istringstream lines(server->restOfOutput());
    std::vector<std::string> names;
    for (std::string line; std::getline(lines, line);) names.push_back(line.substr(0, line.find(' ')));
    return names;
  }

  QuickVisitor visitor;
  std::optional<testing::ServerProcess> server;
  std::shared_ptr<OVKFApi> chat;
};

TEST_F(OwnPageTest, TheDocumentedPageAsksForEverythingAndTakesTheAnswers) {
  std::ifstream stream(guide);
  const std::string text(std::istreambuf_iterator<char>(stream), {});
  const auto start = text.find("```html\n") + 8;
  const TemporaryFolder folder;
  folder.write("index.html", text.substr(start, text.find("```", start) - start));
  open(folder.path().string());
  EXPECT_TRUE(raised("chat_open"));

  const std::string items = "[...document.querySelectorAll('li')].map((item) => item.textContent).join()";
  const auto button = [](int index) { return "document.querySelectorAll('button')[" + std::to_string(index) + "]"; };
  const auto pick = [&](int index, const std::string& becoming) {
    run(button(index) + ".click()");
    becomes(items, becoming);
  };
  pick(1, "Image: chat.png,Image: chat.png");
  pick(2, "Image: chat.png,Image: chat.png,Image: shot.png");
  pick(3, "Image: chat.png,Image: chat.png,Image: shot.png,File: page.md");
  EXPECT_EQ(visitor.mimeTypes, (std::vector<std::string>{"application/pdf", "image/*"}));

  finger(button(4), "pointerdown", 1);
  EXPECT_TRUE(wait([] { return VoiceManager::shared().duration >= 1000; }, 20)) << "nothing is recorded";
  finger(button(4), "pointermove", -50);
  finger(button(4), "pointermove", 1);
  finger(button(4), "pointerup", 1);
  ASSERT_TRUE(wait([&] { return run(items).find(",Record: ") != std::string::npos; }, 20)) << run(items);
  finger(button(4), "pointerdown", 1);
  finger(button(4), "pointermove", -50);
  finger(button(4), "pointerup", -50);

  run("document.querySelector('li:nth-child(4) a').click()");
  EXPECT_TRUE(wait([&] { return visitor.opened.starts_with(server->address() + "/files/"); }, 10)) << visitor.opened;
  run("const help = document.querySelector('header a'); help.href = 'unknown:help'; help.click()");
  EXPECT_TRUE(wait([&] { return log.has("地址无法打开"); }, 10));
  run(button(0) + ".click()");
  EXPECT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 10));
  EXPECT_EQ(printed(),
            (std::vector<std::string>{"trackEvent", "initLoaded", "openPhotoLibraryPicker", "openCamera",
                                      "openDocumentPicker", "recording", "recording", "recording", "recording",
                                      "recording", "recording", "recording", "openFile", "openUrl", "goBack"}));
}

TEST_F(OwnPageTest, TheDevelopmentPageOutlastsItsVisitorsLeaving) {
  server.emplace(std::vector<std::string>{});
  openChat();
  const auto count = [](const std::string& selector) { return "document.querySelectorAll('" + selector + "').length"; };
  const std::string draft = "document.getElementById('message-input').value";
  becomes(count(".message"), "2");
  server->addFaults({{"target", "upload"}, {"kind", "status"}, {"status", 400}, {"msg", "满了"}, {"times", 1}});
  run("const data = new DataTransfer(); data.items.add(new File(['abc'], 'a.txt', {type: 'text/plain'}));"
      "document.body.dispatchEvent(new DragEvent('drop', {dataTransfer: data, bubbles: true, cancelable: true}))");
  becomes("document.querySelector('.state.failed')?.textContent", "发送失败 · 满了 重试");
  run("document.querySelector('.retry').click()");
  becomes(count(".state.arrived"), "1");
  becomes(count("progress"), "0");
  run("handleSelectedFiles([{type: 'Image', name: 'p.png', suffix: 'png', base64Str: "
      "'data:image/png;base64,iVBORw0KGgo='}])");
  becomes(count(".state.arrived"), "2");
  run(draft + " = '写了一半'; document.getElementById('message-input').dispatchEvent(new Event('input'))");
  run("document.getElementById('back').click()");
  ASSERT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 10));

  openChat();
  becomes(draft, "写了一半");
  becomes(count(".message.mine"), "2");
  becomes(count(".message.mine button.file"), "1");
  becomes(count(".message"), "6");
}

class ConformancePageTest : public OwnPageTest {
 protected:
  void press(const std::string& name, const std::string& button) {
    run("[...document.querySelectorAll('[data-name=" + name + "] button')].find((one) => one.textContent === '" +
        button + "').click()");
  }

  static constexpr const char* report = "document.querySelector('output').textContent";
};

TEST_F(ConformancePageTest, FindsNothingMissing) {
  open(conformance);
  EXPECT_TRUE(run(report).starts_with("So far nothing is missing.\n")) << run(report);
  for (const char* picker : {"openCamera", "openPhotoLibraryPicker", "openDocumentPicker"}) {
    press(picker, "Try");
    becomes("document.querySelector('[data-name=" + std::string(picker) + "]').dataset.state", "fine");
  }
  for (const char* seen : {"trackEvent", "openFile"}) press(seen, "Try");
  EXPECT_TRUE(wait([&] { return raised("conformance") && visitor.opened.ends_with("/app/sample.txt"); }, 10));
  for (const char* seen : {"trackEvent", "openFile", "openUrl", "initLoaded"}) press(seen, "Yes");
  const std::string talk = "document.querySelector('[data-name=recording] button')";
  finger(talk, "pointerdown", 1);
  EXPECT_TRUE(wait([] { return VoiceManager::shared().duration >= 1000; }, 20));
  finger(talk, "pointerup", 1);
  becomes(report, "So far nothing is missing.\nNot tried to the end: goBack");
  press("goBack", "Try");
  EXPECT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 10));
}

TEST_F(ConformancePageTest, SaysInWordsWhatIsMissing) {
  visitor.answers = false;
  open(conformance);
  const auto answer = [&](const std::string& picker, const std::string& files) {
    press(picker, "Try");
    if (!files.empty()) run("handleSelectedFiles(" + files + ")");
  };
  answer("openCamera", "[{type: 'File', suffix: 'pdf'}]");
  answer("openPhotoLibraryPicker", "[{type: 'Video', suffix: 'mp4', name: null, size: 1.5}]");
  answer("openDocumentPicker", "");
  press("trackEvent", "No");
  const std::string talk = "document.querySelector('[data-name=recording] button')";
  finger(talk, "pointerdown", 1);
  finger(talk, "pointermove", -50);
  finger(talk, "pointerup", -50);
  run("handleSelectedRecord({type: 'Record', suffix: 'wav'})");
  const auto text = run(report);
  for (const char* line : {
           "Missing:\n",
           "\nopenCamera: file 1: type is \"File\" instead of Image or Video\n",
           "\nopenPhotoLibraryPicker: file 1: name is null, no string; file 1: size is 1.5, no integer\n",
           "\nopenDocumentPicker: no answer came yet\n",
           "\ntrackEvent: it had no effect. ",
           "\nrecording: a press that was cancelled has an answer\n",
       }) {
    EXPECT_NE(text.find(line), std::string::npos) << line << " is not in\n" << text;
  }
}

}  // namespace
}  // namespace orivex::gtk
