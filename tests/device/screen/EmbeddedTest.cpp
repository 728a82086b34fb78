#include <array>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "glib/GRef.h"
#include "support/FileChooser.h"
#include "support/LogLines.h"
#include "support/ScreenFixture.h"
#include "support/Visitor.h"
#include "support/Widgets.h"
#include "web/WebKitEngine.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

constexpr const char* title = "orivex-embedded";

struct Story final : OVKFApiConversationDelegate {
  std::string told;
  std::function<void()> whenClosed = [] {};
  void opened() override { told += "opened "; }
  void revealed() override { told += "revealed "; }
  void closed() override {
    told += "closed ";
    whenClosed();
  }
  bool becomes(const std::string& expected) const {
    return wait([&] { return told == expected; }, 20);
  }
};

// A window of the host, never attached, with an entry above and a chat below.
class EmbeddedTest : public ::testing::Test {
 protected:
  EmbeddedTest() : window_(windowNew()) {
    gtk_window_set_title(window_.get(), title);
    gtk_paned_set_start_child(paned_, entry_);
    gtk_paned_set_position(paned_, 200);
    gtk_window_set_child(window_.get(), GTK_WIDGET(paned_));
    gtk_window_present(window_.get());
    focusWindow(window_.get(), title);
    gtk_widget_grab_focus(entry_);
  }
  ~EmbeddedTest() override { gtk_window_destroy(window_.get()); }

  static GRef<GtkWindow> windowNew() {
    adw_init();
    install();
    auto* const window = GTK_WINDOW(gtk_window_new());
    gtk_window_set_decorated(window, FALSE);
    gtk_window_set_default_size(window, 360, 720);
    return GRef<GtkWindow>::share(window);
  }

  static std::shared_ptr<OVKFApi> start(const std::string& server, const std::shared_ptr<Story>& story) {
    auto chat = std::make_shared<OVKFApi>();
    chat->conversionDelegate = story;
    chat->startSession(server, "entry", "key", std::make_shared<UserMappingModel>());
    return chat;
  }
  // Below the entry.
  std::shared_ptr<OVKFApi> embed(const std::string& server) {
    auto chat = start(server, story_);
    widget_ = widgetFor(chat);
    gtk_paned_set_end_child(paned_, widget_);
    return chat;
  }
  bool becomes(const std::string& told) { return story_->becomes(told); }
  static GtkWidget* pageOf(OVKFApi& chat) { return dynamic_cast<WebKitEngine&>(chat.webView()->engine()).widget(); }
  static std::string run(OVKFApi& chat, const std::string& script) {
    return evaluateIn(WEBKIT_WEB_VIEW(pageOf(chat)), script);
  }
  static void post(OVKFApi& chat, const std::string& message, const std::string& body) {
    run(chat, "webkit.messageHandlers." + message + ".postMessage(" + body + "); 0");
  }
  std::string entered() const { return gtk_editable_get_text(GTK_EDITABLE(entry_)); }

  LogLines log_;
  const GRef<GtkWindow> window_;
  GtkPaned* const paned_ = GTK_PANED(gtk_paned_new(GTK_ORIENTATION_VERTICAL));
  GtkWidget* const entry_ = gtk_entry_new();
  GtkWidget* widget_ = nullptr;
  std::weak_ptr<ViewController> screen_;
  const std::shared_ptr<Story> story_ = std::make_shared<Story>();
  const SocketServer server_{
      servePage("<input autofocus><script>webkit.messageHandlers.initLoaded.postMessage(null);</script>")};
};

TEST_F(EmbeddedTest, LeavesTheRestOfTheWindowToTheHost) {
  const auto chat = embed(server_.url(""));
  ASSERT_TRUE(becomes("opened revealed ")) << story_->told;
  pass(0.6);
  const Rect whole{0, 0, static_cast<double>(gtk_widget_get_width(widget_)),
                   static_cast<double>(gtk_widget_get_height(widget_))};
  EXPECT_LT(whole.height, 530);
  EXPECT_EQ(chat->view()->frame(), whole);
  EXPECT_EQ(chat->webView()->frame(), whole);
  hands({"key", "a"});
  EXPECT_EQ(entered(), "a") << "the page took the keyboard from what the visitor was typing";

  EXPECT_EQ(chat->previousViewSnapshot(), nullptr);
  EXPECT_TRUE(chat->view()->gestures().empty()) << "a swipe would lead to nothing";

  post(*chat, "openPhotoLibraryPicker", "{deviceId: 'd'}");
  ASSERT_TRUE(wait([&] { return findByClass(widget_, "orivex-sheet") != nullptr; }, 5));
  ASSERT_TRUE(wait([] { return openFileChooser() != nullptr; }, 5)) << "there are no folders with photos here";
  EXPECT_EQ(gtk_window_get_transient_for(openFileChooser()), window_.get());
  cancelFileChooser();
  focusWindow(window_.get(), title);
  hands({"key", "Escape"});
  EXPECT_TRUE(wait([&] { return findByClass(widget_, "orivex-sheet") == nullptr; }, 5));
  post(*chat, "openFile", "'" + server_.url("/a.unheard-of") + "'");
  EXPECT_TRUE(wait([&] { return findByClass(widget_, "orivex-mask") != nullptr; }, 5));
  EXPECT_EQ(story_->told, "opened revealed ");
}

TEST_F(EmbeddedTest, TellsOnceThatItIsClosedAndShowsAgain) {
  std::weak_ptr<OVKFApi> ended = embed(server_.url(""));
  ASSERT_TRUE(becomes("opened revealed "));
  story_->told.clear();
  post(*ended.lock(), "goBack", "{}");
  EXPECT_TRUE(becomes("closed "));
  EXPECT_TRUE(gtk_widget_get_mapped(widget_)) << "what becomes of the widget is the host's";
  EXPECT_TRUE(becomes("closed opened ")) << "the visitor could not go back once more";

  story_->told.clear();
  story_->whenClosed = [this] { gtk_widget_set_visible(widget_, FALSE); };
  ended.lock()->close();
  EXPECT_TRUE(becomes("closed "));
  story_->whenClosed = [] {};
  EXPECT_FALSE(ended.lock()->view()->isShowing()) << "would record what is said";
  gtk_widget_grab_focus(entry_);
  gtk_widget_set_visible(widget_, TRUE);
  EXPECT_TRUE(becomes("closed opened "));
  gtk_widget_set_visible(widget_, FALSE);
  hands({"key", "a"});
  EXPECT_EQ(entered(), "a") << "a chat that goes took the keyboard from another part of the window";
  gtk_widget_set_visible(widget_, TRUE);

  const auto kept = GRef<GtkWidget>::share(widget_);
  const auto other = windowNew();
  gtk_paned_set_end_child(paned_, nullptr);
  gtk_window_set_child(other.get(), widget_);
  gtk_window_present(other.get());
  EXPECT_TRUE(wait([&] { return ended.lock()->view()->isShowing(); }, 5));
  pass(0.2);
  EXPECT_EQ(story_->told, "closed opened ") << "it has only moved";
  EXPECT_EQ(run(*ended.lock(), "document.querySelectorAll('input').length"), "1") << "the page did not move along";

  gtk_window_destroy(other.get());  // both the window and the widget are still referred to
  EXPECT_TRUE(becomes("closed opened closed "));
  gtk_window_set_child(other.get(), nullptr);
  gtk_paned_set_end_child(paned_, widget_);
  EXPECT_TRUE(becomes("closed opened closed opened "));
  gtk_paned_set_end_child(paned_, nullptr);
  EXPECT_TRUE(becomes("closed opened closed opened closed "));
  EXPECT_TRUE(wait([&] { return ended.use_count() == 1; }, 10)) << "the widget keeps its screen";
}

TEST_F(EmbeddedTest, ComesAndGoesWithItsPopover) {
  const auto chat = start(server_.url(""), story_);
  widget_ = widgetFor(chat);
  gtk_widget_set_size_request(widget_, 300, 400);
  auto* const popover = GTK_POPOVER(gtk_popover_new());
  gtk_popover_set_child(popover, widget_);
  auto* const button = gtk_menu_button_new();
  gtk_widget_set_valign(button, GTK_ALIGN_START);  // there is room below
  gtk_menu_button_set_popover(GTK_MENU_BUTTON(button), GTK_WIDGET(popover));
  gtk_paned_set_end_child(paned_, button);
  story_->whenClosed = [popover] { gtk_popover_popdown(popover); };
  pass(0.3);
  EXPECT_EQ(story_->told, "") << "nobody has seen it yet";
  gtk_widget_grab_focus(button);
  gtk_popover_popup(popover);
  ASSERT_TRUE(becomes("opened revealed ")) << story_->told;
  EXPECT_EQ(gtk_window_get_focus(window_.get()), pageOf(*chat)) << "what is typed goes nowhere";
  EXPECT_EQ(chat->view()->frame().width, 300);
  post(*chat, "openPhotoLibraryPicker", "{deviceId: 'd'}");
  EXPECT_TRUE(wait([&] { return findByClass(widget_, "orivex-sheet") != nullptr; }, 5));
  gtk_popover_popdown(popover);
  EXPECT_TRUE(wait([&] { return findByClass(widget_, "orivex-sheet") == nullptr; }, 5)) << "nobody sees it";
  EXPECT_EQ(story_->told, "opened revealed ");
  gtk_popover_popup(popover);
  post(*chat, "goBack", "{}");
  EXPECT_TRUE(becomes("opened revealed closed "));
  EXPECT_FALSE(chat->view()->isShowing());
  gtk_popover_popup(popover);
  EXPECT_TRUE(becomes("opened revealed closed opened "));
  story_->whenClosed = [] {};
  gtk_menu_button_set_popover(GTK_MENU_BUTTON(button), nullptr);
  EXPECT_TRUE(becomes("opened revealed closed opened closed "));
}

TEST_F(EmbeddedTest, TwoInOneWindowKeepApart) {
  const auto stories = std::array{std::make_shared<Story>(), std::make_shared<Story>()};
  auto* const box = GTK_BOX(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0));
  std::array<std::shared_ptr<OVKFApi>, 2> chats;
  std::array<GtkWidget*, 2> widgets{};
  for (std::size_t index = 0; index < chats.size(); ++index) {
    chats[index] = start(server_.url(""), stories[index]);
    widgets[index] = widgetFor(chats[index]);
    gtk_box_append(box, widgets[index]);
  }
  gtk_paned_set_end_child(paned_, GTK_WIDGET(box));
  for (const auto& story : stories) ASSERT_TRUE(story->becomes("opened revealed ")) << story->told;
  for (const std::size_t index : {0U, 1U}) {
    gtk_widget_grab_focus(pageOf(*chats[index]));
    post(*chats[index], "openFile", "'" + server_.url("/a.unheard-of") + "'");
    EXPECT_TRUE(wait([&] { return findByClass(widgets[index], "orivex-mask") != nullptr; }, 5)) << index;
    EXPECT_TRUE(wait([&] { return findByClass(widgets[index], "orivex-mask") == nullptr; }, 20)) << index;
  }
  hands({"key", "Escape"});
  EXPECT_TRUE(stories[1]->becomes("opened revealed closed "));
  EXPECT_EQ(stories[0]->told, "opened revealed ");
  gtk_box_remove(box, widgets[1]);
  pass(0.2);
  EXPECT_EQ(stories[1]->told, "opened revealed closed ");
  EXPECT_EQ(stories[0]->told, "opened revealed ");
  EXPECT_TRUE(chats[0]->view()->isShowing());
  EXPECT_EQ(chats[0]->view()->frame().height, gtk_widget_get_height(GTK_WIDGET(box))) << "the room of the other one";
}

TEST_F(EmbeddedTest, EndsWithItsWidgetWhileThePageLoads) {
  const SocketServer silent([](const std::string& target) {
    if (!target.starts_with(chatPath)) return SocketServer::Answer{reply(404, "")};
    return SocketServer::Answer{"HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 100000\r\n\r\n<p>",
                                SocketServer::Then::silence};
  });
  const std::pair<std::string, std::function<void()>> ways[] = {
      {"the host drops the widget", [&] { gtk_paned_set_end_child(paned_, nullptr); }},
      {"the page's wish, and the host drops the widget at once",
       [&] {
         std::static_pointer_cast<OVKFApi>(screen_.lock())->goBack();
         gtk_paned_set_end_child(paned_, nullptr);
       }},
      {"the host drops the widget when it hears of it",
       [&] {
         story_->whenClosed = [this] { gtk_paned_set_end_child(paned_, nullptr); };
         std::static_pointer_cast<OVKFApi>(screen_.lock())->goBack();
       }},
      {"the window ends", [&] { gtk_window_destroy(window_.get()); }},
  };
  for (const auto& [what, end] : ways) {
    SCOPED_TRACE(what);
    story_->told.clear();
    story_->whenClosed = [] {};
    screen_ = embed(silent.url(""));
    gpointer gone = widget_;
    g_object_add_weak_pointer(G_OBJECT(widget_), &gone);
    ASSERT_TRUE(becomes("opened "));
    pass(0.3);
    end();
    EXPECT_TRUE(becomes("opened closed ")) << story_->told;
    pass(0.1);
    EXPECT_EQ(story_->told, "opened closed ");
    if (what != "the window ends") {  // that is still referred to
      EXPECT_EQ(gone, nullptr);
      EXPECT_TRUE(wait([&] { return screen_.expired(); }, 10));
    }
    if (gone) g_object_remove_weak_pointer(G_OBJECT(gone), &gone);
  }
}

}  // namespace
}  // namespace orivex::gtk
