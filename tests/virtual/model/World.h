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
  void makeChat(std::size_t place, const std::string& server);

  /// Every chat that is still there, whoever keeps it.
  std::vector<std::shared_ptr<OVKFApi>> living() const;
  bool someChatShows() const;

  /// One of the chat pages that are still there, and its number; null without any.
  VirtualWebEngine* page(unsigned choice) const;
  std::shared_ptr<OVKFApi> chatOf(const VirtualWebEngine& page) const;

  /// Names something that pages have to be answered with, once.
  std::string expectAnswer(const std::string& kind);

  /// Lets time pass and looks at all that is always true, in part after every task, in part once the queue is idle.
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
  int disturbances = 0;           // what may rightly keep an answer from its page
  int promised = 0;               // completions that the host waits for
  bool maySay = false;            // whether the visitor may read something new although no chat shows
  unsigned loads = 0;             // how loads go on
  unsigned checks = 0;            // how the server answers page checks
  unsigned uploads = 0;           // how it answers uploads
  bool scriptsFail = false;
  std::set<std::string> captures;  // files of the camera

 private:
  void checkMicrophone();
  void checkOverlay();
  void checkRecordingView();
  void checkChrome();
  void checkPages();

  struct Answer {
    int disturbances = 0;  // when it was asked for
    int given = 0;
  };

  void play(VirtualWebEngine& page) const;
  VirtualUploadReply store();
  void evaluated(const VirtualWebEngine& page, const std::string& script);

  std::vector<std::weak_ptr<OVKFApi>> made_;
  std::map<std::string, Answer> answers_;
  std::map<const VirtualWebEngine*, double> emptySince_;
  std::set<double> uploadsBegan_;
  double uploadsEnd_ = 0;
  std::size_t read_ = 0;  // changes of the overlay that were judged
  double showedAt_ = -1;  // when a chat was seen last
};

}  // namespace orivex::testing
