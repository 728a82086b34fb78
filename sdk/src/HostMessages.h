#pragma once

#include <deque>
#include <string>

namespace orivex {

class ChatWebViewHost;
class OVKFApi;

/// Hands records of the host to the page's function `handleHostMessage`, in order, once the page has it.
class HostMessages {
 public:
  /// `screen` owns this object and `host`.
  HostMessages(const OVKFApi& screen, ChatWebViewHost& host) : screen_(screen), host_(host) {}

  /// `json` is an object.
  void add(std::string json);

  /// The page shows: from now on it is looked for its function.
  void start();

 private:
  void deliver(double retrySeconds);

  const OVKFApi& screen_;
  ChatWebViewHost& host_;
  std::deque<std::string> waiting_;
  bool isDelivering_ = false;
};

}  // namespace orivex
