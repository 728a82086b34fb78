// A whole visit by keys alone, to the chat server's own page.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "ServerProcess.h"
#include "camera/CameraSource.h"
#include "device/photos/FakeMedia.h"
#include "support/ScreenFixture.h"
#include "support/Visitor.h"

#include "orivex/voice/VoiceManager.h"

namespace orivex::gtk {
namespace {

constexpr double hung = 20;  // seconds

constexpr const char* camera = "videotestsrc is-live=true ! video/x-raw,width=320,height=240,framerate=15/1";

class KeyVisit : public ScreenFixture {
 protected:
  KeyVisit() {
    setenv(cameraSourceVariable, camera, 1);
    const auto pictures = std::filesystem::path(g_get_home_dir()) / "Pictures";
    for (const char* album : {"Garden", "Sea"}) {
      std::filesystem::create_directories(pictures / album);
      for (const char* name : {"1.jpg", "2.jpg", "3.jpg"}) {
        std::ofstream(pictures / album / name, std::ios::binary) << pictureData(640, 480, 0x4080c0ff, "jpeg");
      }
    }
    gtk_window_set_child(gtkWindow(), button_);
    g_signal_connect_swapped(
        button_, "clicked",
        G_CALLBACK(+[](KeyVisit* visit) { visit->window()->rootViewController()->present(visit->chat_, true); }), this);
    chat_ = startChat(server_.address());
    takeKeyboard();
    gtk_widget_grab_focus(button_);
  }

  static void press(const std::vector<std::string>& keys) {
    for (const auto& key : keys) hands({"key", key});
  }

  static bool isNamed(GtkWidget* widget, const std::string& name) {
    return name == gtk_widget_get_name(widget) || gtk_widget_has_css_class(widget, name.c_str());
  }
  /// The widget of that name or style class has the keyboard, and the visitor sees that it has.
  void expectFocus(const std::string& name) const {
    const auto focus = [&] { return gtk_window_get_focus(gtkWindow()); };
    EXPECT_TRUE(wait([&] { return focus() && isNamed(focus(), name); }, hung)) << name;
    EXPECT_TRUE(gtk_window_get_focus_visible(gtkWindow())) << name;
  }

  std::string run(const std::string& script) { return evaluate(*chat_, script); }
  bool becomes(const std::string& script, const std::string& value) {
    return wait([&] { return run(script) == value; }, hung);
  }
  void expectMessages(int count) {
    EXPECT_TRUE(becomes("document.querySelectorAll('.message.mine').length", std::to_string(count))) << count;
  }

  /// On to the page's control of that id, or back.
  void reach(const std::string& id, const char* key = "Tab") {
    const std::string focused = "[...document.all].indexOf(document.activeElement) + ' ' + document.activeElement.id";
    for (int tabs = 0; tabs < 40; ++tabs) {
      const auto before = run(focused);
      if (before.ends_with(" " + id)) return;
      press({key});
      ASSERT_TRUE(wait([&] { return run(focused) != before; }, hung)) << key << " ends at " << before;
    }
    FAIL() << "no key leads to " << id;
  }

  /// Answers the question on the screen.
  void answer(const char* label) const {
    ASSERT_TRUE(wait([] { return openDialog() != nullptr; }, hung));
    const auto focused = [] { return gtk_root_get_focus(gtk_widget_get_root(openDialog())); };
    const auto isThere = [&] {
      return GTK_IS_BUTTON(focused()) && g_strcmp0(gtk_button_get_label(GTK_BUTTON(focused())), label) == 0;
    };
    for (int tabs = 0; tabs < 10 && !isThere(); ++tabs) press({"Tab"});
    press({"Return"});
    EXPECT_TRUE(wait([&] { return !openDialog() && gtk_window_is_active(gtkWindow()); }, hung));
  }

  GtkWidget* shown(const std::string& name) const {
    return findBelow(GTK_WIDGET(gtkWindow()),
                     [&](GtkWidget* widget) { return gtk_widget_get_mapped(widget) && isNamed(widget, name); });
  }
  bool waitForCamera() const {
    return wait([&] { return shown("shutter") && gtk_widget_get_opacity(shown("shutter")) == 1; }, hung);
  }
  bool waitForGrid() const {
    const auto focus = [&] { return gtk_window_get_focus(gtkWindow()); };
    return wait([&] { return focus() && isNamed(gtk_widget_get_parent(focus()), "orivex-photos"); }, hung);
  }
  bool waitForText(const std::string& text) const {
    return wait([&] { return findByText(GTK_WIDGET(gtkWindow()), text) != nullptr; }, hung);
  }

  testing::ServerProcess server_;
  GtkWidget* const button_ = gtk_button_new_with_label("Contact");
  std::shared_ptr<OVKFApi> chat_;
};

TEST_F(KeyVisit, EverythingAFingerDoes) {
  press({"Return"});
  ASSERT_TRUE(wait([&] { return raised("chat_open") && chat_->isLoaded(); }, hung));

  reach("camera");
  press({"Return"});
  ASSERT_TRUE(waitForCamera());
  expectFocus("camera-shutter");
  EXPECT_FALSE(wait([&] { return !gtk_window_get_focus_visible(gtkWindow()); }, 4)) << "the visitor thinks";
  press({"space"});
  expectFocus("camera-use");
  press({"Escape"});  // takes again
  ASSERT_TRUE(waitForCamera());
  press({"Return"});
  expectFocus("camera-use");
  press({"Return"});
  expectMessages(1);

  press({"Return"});
  ASSERT_TRUE(waitForCamera());
  hands({"key-down", "space"});
  ASSERT_TRUE(wait([] { return openDialog() != nullptr; }, hung));
  hands({"key-up", "space"});
  answer("允许");
  expectFocus("camera-shutter");
  hands({"key-down", "space"});
  ASSERT_TRUE(waitForText("0:02"));
  hands({"key-up", "space"});
  expectFocus("camera-use");
  press({"Return"});
  expectMessages(2);

  reach("voice-toggle", "shift+Tab");
  press({"space"});
  reach("talk", "shift+Tab");
  hands({"key-down", "space"});
  EXPECT_TRUE(wait([] { return VoiceManager::shared().duration >= 1500; }, hung)) << "nothing is recorded";
  hands({"key-up", "space"});
  expectMessages(3);

  reach("photo");
  press({"Return"});
  ASSERT_TRUE(waitForGrid());
  press({"shift+Tab"});
  expectFocus("album");
  press({"space", "Down", "Return"});
  ASSERT_TRUE(waitForGrid());
  press({"space", "Right", "Return"});
  ASSERT_TRUE(waitForText("2 / 3"));
  press({"plus", "0", "Right"});
  ASSERT_TRUE(waitForText("3 / 3"));
  press({"space", "Escape"});
  EXPECT_TRUE(waitForText("完成(2)"));
  press({"Tab"});
  expectFocus("photos-original");
  press({"space", "Tab"});
  expectFocus("photos-confirm");
  press({"Return"});
  expectMessages(5);

  press({"Return"});
  ASSERT_TRUE(waitForGrid());
  press({"Return"});
  ASSERT_TRUE(waitForText("1 / 6"));
  press({"Escape"});
  EXPECT_TRUE(wait([&] { return !findByText(GTK_WIDGET(gtkWindow()), "1 / 6"); }, hung));
  press({"Escape"});
  EXPECT_TRUE(wait([&] { return !shown("orivex-photo-sheet"); }, hung));
  EXPECT_TRUE(chat_->isViewInWindow());
  press({"Escape"});
  EXPECT_TRUE(wait([&] { return !chat_->isViewInWindow(); }, hung));
  EXPECT_TRUE(wait([&] { return gtk_window_get_focus(gtkWindow()) == button_; }, hung));
}

}  // namespace
}  // namespace orivex::gtk
