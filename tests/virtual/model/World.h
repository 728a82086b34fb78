#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "orivex/platform/ui/NavigationController.h"
#include "orivex/sdk/OVKFApi.h"
#include "orivex/testing/VirtualDevice.h"

namespace orivex::testing {

/// A host with places for two chats, their pages, a visitor and a network, as far as one sequence has brought them, and
/// what is remembered to judge the device by.
class World {
 public:
  World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World();

  /// Keeps the first rule that did not hold.
  void require(bool holds, const std::string& rule) {
    if (!holds && broken.empty()) broken = rule;
  }

  /// Puts a chat with a session into an empty place.
  void makeChat(std::size_t place, const std::string& entry);

  /// Every chat that is still there, whoever keeps it.
  std::vector<std::shared_ptr<OVKFApi>> living() const;

  /// The one that the visitor sees; null without any.
  std::shared_ptr<OVKFApi> showing() const;

  /// One of the chat pages that are still there; null without any.
  VirtualWebEngine* page(unsigned choice) const;
  static VirtualWebEngine& pageOf(OVKFApi& chat);
  std::shared_ptr<OVKFApi> chatOf(const VirtualWebEngine& page) const;

  /// Names something with which the chat that shows has to answer its page, once.
  std::string expectAnswer(const std::string& kind);

  /// What is under way now need not be answered.
  void excuseAnswers();

  /// Looks at what is true after every step and task.
  void watch();

  /// Lets time pass, and then looks at what is true while nothing is due.
  void pass(double seconds);

  /// Ends everything as a host does that is done with its chats, and counts what is left.
  void checkEnd();

  VirtualDevice device;
  const std::shared_ptr<ViewController> hostScreen = std::make_shared<ViewController>();
  const std::shared_ptr<NavigationController> stack = std::make_shared<NavigationController>(hostScreen);
  const std::shared_ptr<ViewController> otherRoot = std::make_shared<ViewController>();
  std::shared_ptr<OVKFApi> chats[2];  // that the host keeps
  std::string broken;

  std::weak_ptr<OVKFApi> talker;  // whose page has begun a press and not ended it
  int promised = 0;               // completions that the host waits for
  bool maySay = false;            // whether the visitor may read something new although no chat shows
  unsigned loads = 0;             // how loads go on
  unsigned checks = 0;            // how the server answers page checks
  unsigned uploads = 0;           // how it answers uploads
  bool scriptsFail = false;
  std::set<std::string> captures;  // files of the camera

 private:
  struct Answer {
    std::weak_ptr<OVKFApi> chat;
    int given = 0;
    bool isExcused = false;
  };

  void checkMicrophone();
  void checkOverlay();
  void checkRecordingView();
  void checkChrome();
  void checkPages();
  void play(VirtualWebEngine& page) const;
  VirtualUploadReply store();
  void evaluated(const VirtualWebEngine& page, const std::string& script);

  std::vector<std::weak_ptr<OVKFApi>> made_;
  std::map<std::string, Answer> answers_;
  std::map<const VirtualWebEngine*, double> emptySince_;
  std::set<double> uploadsBegan_;
  double uploadsEnd_ = 0;
  std::set<long> messagesEnd_;  // in milliseconds
  std::size_t read_ = 0;        // changes of the overlay that were judged
  double showedAt_ = -1;        // when a chat was seen last
};

}  // namespace orivex::testing
