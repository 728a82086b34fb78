#include <atomic>
#include <csignal>
#include <set>

#include <webkit/webkit.h>

#include "support/FileChooser.h"
#include "support/Processes.h"
#include "support/ScreenFixture.h"
#include "support/TemporaryFolder.h"
#include "web/WebKitEngine.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

void killPage(OVKFApi& chat) {
  webkit_web_view_terminate_web_process(
      WEBKIT_WEB_VIEW(dynamic_cast<WebKitEngine&>(chat.webView()->engine()).widget()));
}

class ProcessDeath : public ScreenFixture {
 protected:
  std::size_t readyCount() const { return recorder->events.size(); }
};

TEST_F(ProcessDeath, APageComesBackAndOneThatDiesAgainAndAgainEndsInAMessage) {
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>"));
  const auto chat = openChat(server.url(""));
  for (std::size_t death = 1; death <= 3; ++death) {
    killPage(*chat);
    ASSERT_TRUE(wait([&] { return readyCount() == death + 1; }, 10)) << death;
    EXPECT_EQ(evaluate(*chat, "1 + 1"), "2") << "what came back works";
    EXPECT_TRUE(chat->webView()->url().value_or("").starts_with(server.url(chatPath)));
  }
  killPage(*chat);
  EXPECT_TRUE(wait([&] { return log.has("lost its process too often"); }, 5));
  EXPECT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 10)) << "the visitor is not left with a white page";
  EXPECT_EQ(readyCount(), 4U);
}

TEST_F(ProcessDeath, APageThatDiesOnItsWayIsAskedForAgain) {
  std::atomic<int> asked = 0;
  const auto page = servePage("<script>" + raise("ready") + "</script>");
  const SocketServer server([&](const std::string& target) {
    if (!target.starts_with(chatPath)) return page(target);
    // The first request is the check's, the second the page's.
    return ++asked == 2 ? SocketServer::Answer{"", SocketServer::Then::silence} : page(target);
  });
  const auto chat = startChat(server.url(""));
  window()->rootViewController()->present(chat, false);
  ASSERT_TRUE(wait([&] { return asked == 2; }, 20));
  killPage(*chat);
  EXPECT_TRUE(wait([&] { return raised("ready"); }, 20));
}

TEST_F(ProcessDeath, APageThatLosesItsScriptsWithTheNetworkProcessComesBackWhole) {
  std::atomic<int> asked = 0;
  const auto page = servePage("<script src=/app.js></script>");
  const SocketServer server([&](const std::string& target) {
    if (target != "/app.js") return page(target);
    return ++asked == 1 ? SocketServer::Answer{"", SocketServer::Then::silence}
                        : SocketServer::Answer{reply(200, raise("ready"), "Content-Type: text/javascript\r\n")};
  });
  const auto chat = startChat(server.url(""));
  window()->rootViewController()->present(chat, false);
  ASSERT_TRUE(wait([&] { return asked == 1; }, 20));
  for (const int process : processesBelow("WebKitNetworkPr")) kill(process, SIGKILL);
  EXPECT_TRUE(wait([&] { return raised("ready"); }, 20));
  EXPECT_EQ(log.count("network process ended"), 1);
}

TEST_F(ProcessDeath, APageThatAFrozenProcessKeepsFromLoadingIsToldAndComesWhenThatGoesOn) {
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>"));
  for (const char* name : {"WebKitWebProces", "WebKitNetworkPr"}) {
    SCOPED_TRACE(name);
    recorder->events.clear();
    const auto chat = startChat(server.url(""));
    window()->rootViewController()->present(chat, false);
    std::set<int> frozen;
    EXPECT_TRUE(wait(
        [&] {
          for (const int process : processesBelow(name))
            if (frozen.insert(process).second) kill(process, SIGSTOP);
          return panelText() == "请求失败,请稍后重试";
        },
        30));
    EXPECT_FALSE(raised("ready"));
    for (const int process : frozen) kill(process, SIGCONT);
    EXPECT_TRUE(wait([&] { return raised("ready"); }, 20));
    EXPECT_TRUE(wait([&] { return panelText().empty(); }, 5));
    chat->dismiss(false);
  }
}

TEST_F(ProcessDeath, WhatTheVisitorChoseReachesThePageThatComesBackForTheFrozenOne) {
  const TemporaryFolder folder;
  const auto bill = folder.write("bill.pdf", "%PDF-1.4").string();
  const auto page =
      servePage("<script>window.handleSelectedFiles = () => " + raise("chosen") + raise("ready") + "</script>");
  const SocketServer server([&](const std::string& target) {
    if (target.starts_with(chatPath)) return page(target);
    return SocketServer::Answer{
        reply(200, R"({"url":"/bill","inputContentType":"application/pdf","actualContentType":"application/pdf"})")};
  });
  const auto chat = openChat(server.url(""));
  evaluate(*chat, "webkit.messageHandlers.openDocumentPicker.postMessage({deviceId: 'd'}); 0");
  ASSERT_TRUE(wait([] { return openFileChooser() != nullptr; }, 5));
  const auto pages = processesBelow("WebKitWebProces");
  for (const int process : pages) kill(process, SIGSTOP);
  ASSERT_TRUE(chooseFile(bill));
  pass(1);
  EXPECT_FALSE(raised("chosen"));
  for (const int process : pages) kill(process, SIGKILL);
  EXPECT_TRUE(wait([&] { return raised("chosen"); }, 20));
}

TEST_F(ProcessDeath, ThePlaceholdersProcessEndsWithTheReveal) {
  const SocketServer server(
      servePage("<script>webkit.messageHandlers.initLoaded.postMessage(null);" + raise("ready") + "</script>"));
  const auto chat = openChat(server.url(""));
  EXPECT_TRUE(wait([&] { return pageProcesses() == 1; }, 10));
  pass(1);
  EXPECT_EQ(evaluate(*chat, "document.readyState"), "complete");
  EXPECT_EQ(pageProcesses(), 1);
}

TEST_F(ProcessDeath, NoPageProcessOutlivesItsScreen) {
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>"));
  std::vector<std::weak_ptr<OVKFApi>> screens;
  for (int round = 0; round < 20; ++round) {
    recorder->events.clear();
    const auto chat = openChat(server.url(""));
    screens.push_back(chat);
    EXPECT_GE(pageProcesses(), 1U) << "the count sees a page that lives";
    evaluate(*chat, "webkit.messageHandlers.goBack.postMessage({}); 0");
    ASSERT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 5));
  }
  // A finished load holds its screen until the reveal, four seconds later.
  EXPECT_TRUE(
      wait([&] { return std::all_of(screens.begin(), screens.end(), [](auto& it) { return it.expired(); }); }, 15));
  // Looked at now and then only: counting takes so long that it would starve what ends the processes.
  auto left = pageProcesses();
  for (int looks = 0; left > 0 && looks < 30; ++looks) {
    pass(0.5);
    left = pageProcesses();
  }
  EXPECT_EQ(left, 0);
}

}  // namespace
}  // namespace orivex::gtk
