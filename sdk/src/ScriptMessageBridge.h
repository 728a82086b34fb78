#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "AnswerQueue.h"

#include "orivex/media/Attachment.h"
#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/WebEngine.h"
#include "orivex/voice/RecordManager.h"

namespace orivex {

class ChatWebViewHost;
class OVKFApi;
class PageOrigins;

/// Serves what the page posts, and answers it by script. Bad input is one log line; nothing reaches page or host. While
/// the screen does not show, the page can open nothing over what does.
class ScriptMessageBridge {
 public:
  /// `screen` owns this object and the others.
  ScriptMessageBridge(OVKFApi& screen, ChatWebViewHost& host, const PageOrigins& origins)
      : screen_(screen), host_(host), origins_(origins) {}

  /// What the page may post, in the order of registration; also what it tells of the conversation, if the host wants
  /// it.
  static std::vector<std::string> messageNames(bool withConversation);

  /// Serves one message. The caller keeps the screen, which the message may close.
  void dispatch(const ScriptMessage& message);

  /// Sends files that the visitor gave to the page and the page does not take, and answers it as if it had asked.
  void attach(const std::vector<std::string>& paths);

 private:
  void trackEvent(std::string_view body);
  void openUrl(std::string_view body);
  void openFile(std::string_view body);
  void goBack(std::string_view body);

  /// Opens one of the pickers.
  template <auto open>
  void pick(std::string_view body);

  void recording(std::string_view body);
  void initLoaded(std::string_view body);
  void shortCut(std::string_view body);
  void message(std::string_view body);
  void unreadCount(std::string_view body);

  /// Origin of the document that posts or is answered now.
  std::string origin() const;

  /// Answers the page with what was picked or recorded, if the screen is still there.
  AttachmentAnswer filesAnswer();
  RecordManager::RecordedClip recordAnswer();

  /// Evaluates an answer in the document that has asked, or in another of its origin.
  AnswerQueue::Evaluate evaluateForAsker() const;

  /// Evaluates `script` once the page is there, if it is still one of the origin `asker`; `lost` is called when the
  /// page's process went before it had run.
  void answer(const std::string& asker, const std::shared_ptr<const std::string>& script,
              const std::function<void()>& lost) const;

  /// What the JSON of a body has to be.
  enum class Body { any, object, string };

  struct Service {
    std::string_view name;
    void (ScriptMessageBridge::*serve)(std::string_view body);
    Body body = Body::any;
    bool isOpen = false;          ///< also to a document that is not the chat's
    bool opensSomething = false;  ///< declined while the screen does not show
  };
  static const Service services[12];  // in the order of registration; the last three tell of the conversation

  OVKFApi& screen_;
  ChatWebViewHost& host_;
  const PageOrigins& origins_;
  AnswerQueue answers_;
  Alive alive_;
};

}  // namespace orivex
