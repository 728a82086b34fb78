#include <algorithm>
#include <cmath>
#include <utility>

#include "World.h"
#include "support/LogLines.h"

#include "orivex/platform/ui/WebView.h"
#include "orivex/voice/RecordManager.h"

namespace orivex::testing {
namespace {

bool shows(const std::shared_ptr<OVKFApi>& chat) {
  return chat && chat->isViewLoaded() && chat->view()->isShowing();
}

}  // namespace

void World::watch() {
  checkOverlay();
  checkPages();
  for (auto& [name, answer] : answers_) {
    require(answer.given <= 1, name + " was answered twice");
    const auto chat = answer.chat.lock();
    const auto* const page = shows(chat) ? &pageOf(*chat) : nullptr;
    answer.isExcused |= !page || !page->isProcessAlive() || page->documentUrl() == "https://other.example/";
  }
}

void World::pass(double seconds) {
  device.mainQueue().advanceUntil(
      [this] {
        watch();
        return !broken.empty();
      },
      seconds);
  maySay = false;
  checkMicrophone();
  checkRecordingView();
  checkChrome();
}

void World::checkMicrophone() {
  for (const auto& recording : device.audioSession().recordings()) {
    if (!recording->recording) continue;
    require(showing() != nullptr, "the microphone is open and no chat shows");
    // After a cancelled press the recorder runs on and keeps nothing.
    require(recording->discarded || shows(talker.lock()), "the microphone is recorded without a press");
  }
}

void World::checkOverlay() {
  if (showing()) showedAt_ = device.mainQueue().now();
  const auto& overlay = device.progressOverlay();
  const auto& history = overlay.history();
  using Kind = VirtualProgressOverlay::Kind;
  for (; read_ < history.size(); ++read_) {
    const auto& entry = history[read_];
    if (entry.event != VirtualProgressOverlay::Event::shown) continue;
    const bool isFarewell = entry.panel.status.ends_with("项未发送");  // said because the chat has left
    require(isFarewell || entry.time <= showedAt_ || maySay,
            "the visitor was told after the chat had left: " + entry.panel.status);
    const bool isMessage = entry.panel.kind == Kind::info;
    if (isMessage) {
      for (const double seconds : {2.0, 3.0}) messagesEnd_.insert(std::lround((entry.time + seconds) * 1000));
    }
    const auto* const before = read_ > 0 ? &history[read_ - 1] : nullptr;
    const bool cutsMessage = before && before->event == VirtualProgressOverlay::Event::shown &&
                             before->panel.kind == Kind::info && !isMessage;
    require(!cutsMessage || uploadsBegan_.contains(entry.time) || messagesEnd_.contains(std::lround(entry.time * 1000)),
            "an upload that goes on cut a message short");
  }
  const bool isBusy = overlay.shown() && overlay.shown()->kind != Kind::info;
  require(!isBusy || device.mainQueue().now() <= uploadsEnd_, "a progress panel shows and nothing is uploaded");
  if (showing()) return;
  require(!device.camera().presented() && !device.photoLibrary().shown() && !device.documentPicker().presented(),
          "a picker stayed open after the chat had left");
  require(!overlay.offered(), "uploads are offered again after the chat has left");
}

void World::checkRecordingView() {
  const auto& recordingView = RecordManager::shared().recordingView();
  const bool isTalking = !recordingView->isHidden() && recordingView->recordingState() != RecordingState::timeTooShort;
  require(!isTalking || shows(talker.lock()), "the recording overlay shows without a press");
  const auto talking = talker.lock();
  require(!isTalking || !shows(talking) || talking->view()->hasSubview(*recordingView),
          "the recording overlay shows on another chat than the press");
}

void World::checkChrome() {
  const auto window = device.application().window();
  const bool isBack = window->rootViewController() == stack && stack->topViewController() == hostScreen &&
                      !stack->presentedViewController();
  const bool isPassing = std::ranges::any_of(living(), [](const auto& chat) { return chat->isViewInWindow(); });
  if (!isBack || isPassing) return;
  require(!stack->navigationBar()->isHidden() && !stack->toolbar()->isHidden() && !stack->hostTabBar()->isHidden(),
          "the host's bars are hidden after the chat has left");
}

void World::checkPages() {
  constexpr double patience = 9;                       // for a page check, a message and a slide
  const auto before = std::exchange(emptySince_, {});  // a page may come to lie where one that is gone lay
  for (const auto& chat : living()) {
    const auto* const page = chat->isViewLoaded() ? &pageOf(*chat) : nullptr;
    if (!page || !shows(chat) || (page->isProcessAlive() && !page->loads().empty())) continue;
    const auto known = before.find(page);
    const auto since = known == before.end() ? device.mainQueue().now() : known->second;
    emptySince_.emplace(page, since);
    require(device.mainQueue().now() - since < patience, "a chat shows no page and does not close");
  }
}

void World::checkEnd() {
  constexpr double longEnough = 130;  // for two uploads, one after the other, that end by their time-out
  device.application().resignActive();
  pass(longEnough);
  for (const auto& [name, answer] : answers_) {
    require(answer.given == 1 || answer.isExcused, name + " was never answered");
  }
  require(promised == 0, "a sign-out was not completed once");

  const auto window = device.application().window();
  window->setShowing(true);
  if (window->rootViewController() != stack) window->setRootViewController(stack);
  pass(1);
  while (stack->presentedViewController()) stack->dismiss(false);
  while (stack->topViewController() != hostScreen) stack->popViewController(false);
  for (auto& chat : chats) chat = nullptr;
  maySay = true;  // what a chat had begun to say
  pass(0);
  pass(longEnough);
  require(living().empty(), "a chat is still there after its host let go of it");
  require(device.webEngines().engines().empty(), "a web engine is left");
  require(device.mainQueue().pendingCount() == 0, "tasks or timers are left");
  require(device.documentPicker().openAccesses() == 0, "files are still accessed");
  require(!device.progressOverlay().shown(), "the overlay still shows");
  const auto& removed = device.fileManager().removed();
  for (const auto& file : captures) require(std::ranges::count(removed, file) == 1, "a captured file is left: " + file);
  LogLines log;
  device.application().becomeActive();
  require(log.get().empty(), "an observer is left");
}

}  // namespace orivex::testing
