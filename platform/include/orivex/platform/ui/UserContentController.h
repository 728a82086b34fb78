#pragma once

#include <memory>
#include <string>
#include <vector>

#include "orivex/platform/ports/WebEngine.h"

namespace orivex {

/// Receives what a page posts, on the main thread.
class ScriptMessageHandler {
 public:
  ScriptMessageHandler() = default;
  ScriptMessageHandler(const ScriptMessageHandler&) = delete;
  ScriptMessageHandler& operator=(const ScriptMessageHandler&) = delete;
  virtual ~ScriptMessageHandler() = default;

  virtual void didReceive(const ScriptMessage& message) = 0;
};

/// What is put into a page before it starts: handlers that it can post to, and scripts. Fill it before the web view is
/// made; what is added later has no effect. It refers to a handler without keeping it alive.
class UserContentController {
 public:
  void addScriptMessageHandler(std::weak_ptr<ScriptMessageHandler> handler, std::string name);
  void addUserScript(UserScript script) { scripts_.push_back(std::move(script)); }

  const std::vector<UserScript>& userScripts() const { return scripts_; }

  /// In the order of registration.
  std::vector<std::string> handlerNames() const;

  /// Hands the message to the handler of its name; one without a handler is dropped.
  void deliver(const ScriptMessage& message) const;

 private:
  struct Registration {
    std::string name;
    std::weak_ptr<ScriptMessageHandler> handler;
  };
  std::vector<Registration> handlers_;
  std::vector<UserScript> scripts_;
};

}  // namespace orivex
