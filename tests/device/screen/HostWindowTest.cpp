#include <cmath>

#include <adwaita.h>
#include <gtest/gtest.h>

#include "support/ScreenFixture.h"
#include "support/Visitor.h"
#include "support/Widgets.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Application.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

const std::string page = "<script>" + raise("ready") + "</script>";

using HostWindowTest = ScreenFixture;

TEST_F(HostWindowTest, ShowsWhatTheHostPutsIntoItUnderTheChat) {
  const SocketServer server(servePage(page));
  const auto chat = openChat(server.url(""));
  GtkWidget* const next = gtk_label_new("Next");
  gtk_window_set_child(gtkWindow(), next);
  pass(0.2);
  EXPECT_TRUE(chat->isViewInWindow());
  EXPECT_EQ(evaluate(*chat, "`${innerWidth} ${innerHeight}`"), "360 720") << "the chat does not show any more";
  chat->close();
  EXPECT_TRUE(wait([&] { return !chat->isViewInWindow() && gtk_widget_get_mapped(next); }, 5));
  EXPECT_EQ(gtk_widget_get_height(next), 720);
  gtk_window_set_child(gtkWindow(), nullptr);
  window()->rootViewController()->present(startChat(server.url("")), false);  // of an emptied window
  pass(0.2);
}

TEST_F(HostWindowTest, IsLeftByTheVisitorOnlyForAnotherApplication) {
  auto& application = Platform::current().application;
  std::string told;
  const auto active = application.observe(ApplicationEvent::didBecomeActive, [&] { told += "active "; });
  const auto resigns = application.observe(ApplicationEvent::willResignActive, [&] { told += "resigns "; });
  auto* const other = GTK_WINDOW(gtk_window_new());  // of the host, not attached
  gtk_window_set_title(other, "orivex-other");
  gtk_window_present(other);
  pass(0.5);
  takeKeyboard();
  pass(0.5);
  told.clear();
  focusWindow(other, "orivex-other");
  EXPECT_TRUE(wait([&] { return gtk_window_is_active(other) && !gtk_window_is_active(gtkWindow()); }, 5));
  pass(0.2);
  EXPECT_EQ(told, "");
  gtk_window_destroy(other);  // now no window of this application has the keyboard
  EXPECT_TRUE(wait([&] { return told == "resigns "; }, 5)) << told;
}

GtkWindow* windowWithHeaderBar() {
  adw_init();
  auto* const window = GTK_WINDOW(adw_window_new());
  GtkWidget* const column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_box_append(GTK_BOX(column), adw_header_bar_new());
  gtk_box_append(GTK_BOX(column), gtk_entry_new());
  adw_window_set_content(ADW_WINDOW(window), column);
  return window;
}

class HeaderBarTest : public ScreenFixture {
 protected:
  HeaderBarTest() : ScreenFixture({}, windowWithHeaderBar()) {}
};

TEST_F(HeaderBarTest, StaysUsableAboveTheChat) {
  const SocketServer server(servePage(page));
  const auto chat = openChat(server.url(""));
  GtkWidget* const bar = findByType(GTK_WIDGET(gtkWindow()), ADW_TYPE_HEADER_BAR);
  const auto bounds = window()->bounds();
  const auto top = [&] { return chat->view()->frame().y; };
  EXPECT_TRUE(wait([&] { return top() > 20 && std::abs(top() - gtk_widget_get_height(bar)) < 2; }, 5)) << top();
  EXPECT_EQ(chat->view()->frame(), (Rect{0, top(), bounds.width, bounds.height - top()}));
  EXPECT_EQ(chat->webView()->frame(), chat->view()->bounds()) << "the page does not fill the screen";
  GtkWidget* const close = findByClass(bar, "close");
  ASSERT_TRUE(close);
  graphene_point_t middle;
  const graphene_point_t inButton{8, 8};
  ASSERT_TRUE(gtk_widget_compute_point(close, GTK_WIDGET(gtkWindow()), &inButton, &middle));
  GtkWidget* const hit = gtk_widget_pick(GTK_WIDGET(gtkWindow()), static_cast<double>(middle.x),
                                         static_cast<double>(middle.y), GTK_PICK_DEFAULT);
  EXPECT_TRUE(hit == close || gtk_widget_is_ancestor(hit, close)) << (hit ? G_OBJECT_TYPE_NAME(hit) : "nothing");
  const auto& behind = chat->previousViewSnapshot();
  ASSERT_TRUE(behind);
  EXPECT_EQ(behind->frame(), (Rect{0, -top(), bounds.width, bounds.height}))
      << "the host behind a swipe is not where it was";
  gtk_widget_set_visible(bar, FALSE);
  EXPECT_TRUE(wait([&] { return chat->view()->frame() == window()->bounds(); }, 5)) << top();
}

}  // namespace
}  // namespace orivex::gtk
