#include "orivex/media/Attachment.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "KeptUploads.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/media/UploadManager.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Observers.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/ProgressOverlay.h"
#include "orivex/platform/ui/View.h"
#include "orivex/platform/ui/Window.h"

namespace orivex {
namespace {

using Attachments = std::vector<std::shared_ptr<Attachment>>;

constexpr double messageSeconds = 3.0;

bool isShowing(const std::weak_ptr<View>& view) {
  const auto kept = view.lock();
  return kept && kept->isShowing();
}

/// What was picked or recorded together. Kept alive by what it waits for.
class Batch : public std::enable_shared_from_this<Batch> {
 public:
  Batch(Attachments attachments, UploadManager::Target target, std::weak_ptr<View> view, AttachmentAnswer answer)
      : attachments_(std::move(attachments)),
        target_(std::move(target)),
        view_(std::move(view)),
        answer_(std::move(answer)) {}

  // A decoded photo takes memory, and more workers than cores gain nothing.
  static constexpr int atOnce = 2;

  void start() {
    const auto view = view_.lock();
    if (view)
      leaving_ = view->observeLeaving([self = weak_from_this()] {
        if (const auto batch = self.lock()) batch->screenLeaves();
      });
    proceed();
  }

 private:
  void proceed() {
    if (!isShowing(view_)) attachments_.resize(next_);
    while (running_ < atOnce && next_ < attachments_.size()) begin(next_++);
    if (running_ == 0) finish();
  }

  // A chat that is closed takes along what its page has not got; one that is covered, or that its host keeps, goes on
  // with what is being uploaded.
  void screenLeaves() {
    constexpr double closing = 1;  // seconds until a closed chat is gone
    const auto notArrived = std::count_if(attachments_.begin(), attachments_.end(), [](const auto& it) { return it; });
    const auto notBegun = attachments_.size() - next_ + inspecting_;
    const auto window = view_.lock()->window();
    if (!window) return;
    Platform::current().mainQueue.asyncAfter(closing, [view = view_, over = window->weak_from_this(), notBegun,
                                                       notArrived = static_cast<std::size_t>(notArrived)] {
      const auto lost = view.expired() ? notArrived : notBegun;
      if (lost == 0) return;
      Platform::current().progressOverlay.setWindow(over);
      OVKFApiHelper::showNotice(trNumber("%1 项未发送", lost), messageSeconds);
    });
  }

  void begin(std::size_t index) {
    ++running_;
    auto& attachment = *attachments_[index];
    attachment.open();
    if (attachment.isInspected()) return upload(index);
    ++inspecting_;
    auto& queue = Platform::current().mainQueue;
    queue.global([self = shared_from_this(), index, &attachment, &queue]() mutable {
      attachment.inspect();
      queue.async([self = std::move(self), index] { self->inspected(index); });
    });
  }

  void inspected(std::size_t index) {
    --inspecting_;
    const auto& attachment = *attachments_[index];
    if (attachment.refusal) {
      if (!attachment.refusal->empty()) showAttachmentMessage(view_, *attachment.refusal);
      drop(index);
    } else if (!attachment.upload) {
      end();
    } else if (isShowing(view_)) {
      upload(index);
    } else {
      drop(index);
    }
  }

  void upload(std::size_t index) {
    if (const auto view = view_.lock()) Platform::current().progressOverlay.bringTo(*view);
    UploadManager::upload(
        target_, attachments_[index]->upload, {}, nameAndPlace(index),
        [self = shared_from_this(), index](const UploadResult& result) { self->uploaded(index, result); });
  }

  // "2 / 5 clip.mp4", each part of it kept together in every direction of writing.
  std::string nameAndPlace(std::size_t index) const {
    auto name = attachments_[index]->description.name.value_or("");
    if (attachments_.size() < 2) return name;
    return "\u2066" + std::to_string(index + 1) + " / " + std::to_string(attachments_.size()) + "\u2069 \u2068" + name +
           "\u2069";
  }

  void uploaded(std::size_t index, const UploadResult& result) {
    attachments_[index]->uploaded(std::get_if<UploadResposeModel>(&result));
    const auto* const failure = std::get_if<UploadFailure>(&result);
    if (!failure) return end();
    log::debugPrint("Upload Failed: " + failure->message, log::Level::warning);
    showAttachmentMessage(view_, failure->message);
    if (isShowing(view_)) {
      const auto again = std::make_shared<Batch>(Attachments{attachments_[index]}, target_, view_, answer_);
      KeptUploads::shared().keep(*view_.lock(), failure->cause, [again] { again->start(); });
    }
    drop(index);
  }

  void drop(std::size_t index) {
    attachments_[index].reset();
    end();
  }

  void end() {
    --running_;
    proceed();
  }

  void finish() {
    std::vector<UploadFileInfoModel> descriptions;
    for (const auto& attachment : std::exchange(attachments_, {})) {
      if (attachment) descriptions.push_back(std::move(attachment->description));
    }
    if (!descriptions.empty()) answer_(std::move(descriptions));
  }

  Attachments attachments_;  // null where one was left out
  const UploadManager::Target target_;
  const std::weak_ptr<View> view_;
  const AttachmentAnswer answer_;
  std::size_t next_ = 0;
  std::size_t inspecting_ = 0;
  int running_ = 0;
  Subscription leaving_;
};

}  // namespace

void Attachment::uploaded(const UploadResposeModel* stored) {
  if (!stored) return;
  log::debugPrint("Upload Success ");
  description.url = stored->url;
}

void sendAttachments(std::vector<std::shared_ptr<Attachment>> attachments, std::weak_ptr<View> view,
                     AttachmentAnswer answer) {
  std::make_shared<Batch>(std::move(attachments), UploadManager::currentTarget(), std::move(view), std::move(answer))
      ->start();
}

void showAttachmentMessage(const std::weak_ptr<View>& view, const std::string& message) {
  OVKFApiHelper::showMessage(view, message, messageSeconds);
}

std::string fileExtension(const std::string& path) {
  const auto extension = std::filesystem::path(path).extension().string();
  return extension.empty() ? "" : validUtf8(extension.substr(1));
}

}  // namespace orivex
