#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "support/FileChooser.h"
#include "support/MainLoop.h"
#include "support/Visitor.h"
#include "ui/GtkApplicationPort.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Camera.h"
#include "orivex/platform/ports/Documents.h"
#include "orivex/platform/ports/ProgressOverlay.h"

namespace orivex::gtk {
namespace {

// The chat's window, and another one of the same host that the visitor has looked at last.
class TwoWindowsTest : public ::testing::Test {
 protected:
  TwoWindowsTest() : front_(GTK_WINDOW(gtk_window_new())) {
    attach(front_);
    gtk_window_present(front_);
    wait([&] { return application().frontWindow()->gtkWindow() == front_; }, 2);
  }
  ~TwoWindowsTest() override { gtk_window_destroy(front_); }

  static GtkApplicationPort& application() {
    return dynamic_cast<GtkApplicationPort&>(Platform::current().application);
  }
  bool shows(const char* cssClass) const { return findByClass(GTK_WIDGET(chat_.overlay()), cssClass) != nullptr; }

  VisitorWindow chat_;
  GtkWindow* const front_;
};

TEST_F(TwoWindowsTest, WhatTheChatOpensComesUpOverItsOwnWindow) {
  const auto& platform = Platform::current();
  platform.documentPicker.present({}, *chat_.view(), nullptr);
  ASSERT_TRUE(openFileChooser());
  EXPECT_EQ(gtk_window_get_transient_for(openFileChooser()), chat_.window());
  cancelFileChooser();

  platform.progressOverlay.setWindow(chat_.view()->window()->weak_from_this());
  platform.progressOverlay.showInfo("文件过大");
  EXPECT_TRUE(shows("orivex-mask"));
  platform.progressOverlay.setWindow({});
  platform.progressOverlay.dismiss();

  setenv("ORIVEX_CAMERA_SOURCE", "videotestsrc is-live=true", 1);
  platform.camera.present({}, *chat_.view(), nullptr);
  EXPECT_TRUE(shows("orivex-camera"));
  EXPECT_EQ(findByClass(GTK_WIDGET(front_), "orivex-camera"), nullptr);
  chat_.destroy();
  pass(0.1);
}

}  // namespace
}  // namespace orivex::gtk
