#include <gtest/gtest.h>
#include <webkit/webkit.h>

#include "support/ScreenFixture.h"
#include "support/Visitor.h"
#include "support/Widgets.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

const std::string revealed =
    "<script>webkit.messageHandlers.initLoaded.postMessage(null);" + raise("ready") + "</script>";

class KeyboardTest : public ScreenFixture {
 protected:
  KeyboardTest() {
    gtk_window_set_child(gtkWindow(), entry_);
    takeKeyboard();
    gtk_widget_grab_focus(entry_);
  }

  std::shared_ptr<OVKFApi> openRevealed(const std::string& body) {
    server_ = std::make_unique<SocketServer>(servePage(body + revealed));
    auto chat = openChat(server_->url(""));
    EXPECT_TRUE(wait([&] { return chat->isLoaded(); }, 10));
    pass(0.6);
    return chat;
  }
  bool leaves(const std::shared_ptr<OVKFApi>& chat) {
    return wait([&] { return !chat->isViewInWindow(); }, 3);
  }
  static void press(const char* key) { hands({"key", key}); }
  bool pageHasFocus() const {
    auto* const focus = gtk_window_get_focus(gtkWindow());
    return focus && WEBKIT_IS_WEB_VIEW(focus);
  }
  std::string entered() const { return gtk_editable_get_text(GTK_EDITABLE(entry_)); }

 private:
  std::unique_ptr<SocketServer> server_;
  GtkWidget* const entry_ = gtk_entry_new();
};

TEST_F(KeyboardTest, KeysAndTheMousesBackButtonLeaveTheChat) {
  for (const auto& way : std::vector<std::vector<std::string>>{
           {"key", "Escape"}, {"key", "alt+Left"}, {"key", "XF86Back"}, {"click", "100", "300", "8"}}) {
    const auto chat = openRevealed("<input autofocus>");
    hands(way);
    EXPECT_TRUE(leaves(chat)) << way.back();
    chat->close();  // for the next one
    recorder->events.clear();
  }
}

TEST_F(KeyboardTest, AKeyThatThePageTakesStaysWithIt) {
  const auto chat = openRevealed(
      "<dialog>x</dialog><script>window.keys = '';"
      "addEventListener('keydown', (event) => { keys += event.key + ' '; if (window.takes) event.preventDefault(); });"
      "takes = true;</script>");
  for (const auto* key : {"Escape", "alt+Left"}) press(key);
  EXPECT_TRUE(wait([&] { return evaluate(*chat, "keys").find("ArrowLeft") != std::string::npos; }, 5));
  EXPECT_FALSE(leaves(chat));
  evaluate(*chat, "takes = false; document.querySelector('dialog').showModal()");
  press("Escape");
  EXPECT_TRUE(wait([&] { return evaluate(*chat, "document.querySelector('dialog').open") == "false"; }, 5));
  EXPECT_FALSE(leaves(chat)) << "the page's own dialog is what Escape was for";
  press("Escape");
  EXPECT_TRUE(leaves(chat));
}

TEST_F(KeyboardTest, IsTheChatsWhileItShowsAndTheHostsAgainAfterwards) {
  press("a");
  EXPECT_EQ(entered(), "a");
  const auto chat = openRevealed("<input id=one autofocus><button>x</button><input id=two>");
  EXPECT_TRUE(pageHasFocus());
  std::string visited;
  for (int tab = 0; tab < 8; ++tab) {
    press("Tab");
    pass(0.2);
    EXPECT_TRUE(pageHasFocus()) << "lost after " << tab << " tabs";
    visited += evaluate(*chat, "document.activeElement.id") + " ";
  }
  EXPECT_GE(std::count(visited.begin(), visited.end(), 't'), 2) << visited;
  EXPECT_EQ(entered(), "a") << "keys reach the host under the chat";
  gtk_window_set_focus(gtkWindow(), nullptr);
  EXPECT_TRUE(wait([&] { return pageHasFocus(); }, 5));

  press("Escape");
  EXPECT_TRUE(leaves(chat));
  pass(0.3);
  press("b");
  EXPECT_TRUE(entered().ends_with('b')) << "nothing has the keyboard once the chat is closed";
}

}  // namespace
}  // namespace orivex::gtk
