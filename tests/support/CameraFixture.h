#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "GlibMainQueue.h"
#include "LogLines.h"
#include "MainLoop.h"
#include "TemporaryFolder.h"
#include "av/GtkRecordPermission.h"
#include "camera/GtkCamera.h"
#include "ui/GtkApplicationPort.h"

#include "orivex/platform/ui/View.h"

namespace orivex::gtk {

/// Frames as a good camera gives them.
inline const std::string testCamera = "videotestsrc is-live=true ! video/x-raw,width=1280,height=720,framerate=30/1";

/// Seconds after which a step has not happened at all; every step takes a small part of it on a busy machine.
inline constexpr double hangs = 30;

/// A window with a camera over it, and the visitor's hand.
class CameraFixture : public ::testing::Test {
 protected:
  CameraFixture();
  ~CameraFixture() override;

  /// The cameras that there are from now on, as launch fragments, one a line; empty: those of the machine.
  static void setSources(const std::string& sources);

  void present(const CameraOptions& options = {});

  /// Opens a camera and waits for its picture.
  void openLive(const std::string& sources = testCamera, const CameraOptions& options = {});

  bool waitForLive();
  bool hasSlidIn() const;
  bool waitForReview();
  bool waitForOutcome();

  /// The button with this style class, text or icon; null when it does not show.
  GtkWidget* button(const std::string& mark) const;
  /// The text of the recording's clock; empty when it does not show.
  std::string clock() const;
  void click(const std::string& mark);
  void tapShutter() { click("shutter"); }
  void beginHold();
  void endHold();

  /// Records until the clock over the picture shows this many seconds, and lets go.
  void hold(int seconds);

  /// The visitor has answered the question for the microphone, with yes from the beginning; nothing: never.
  void setConsent(std::optional<bool> answer);
  /// The screen that opened the camera leaves.
  void leave() { view_->setShowing(false); }

  void closeWindow();
  HostWindow& hostWindow() { return *application_.frontWindow(); }
  MainQueue& mainQueue() { return mainQueue_; }

  /// Names of the files that captures have left.
  static std::vector<std::string> files();
  /// Threads of pipelines that play; those that wait for work are ended first.
  static int streamingThreads();

  LogLines log;
  std::vector<CameraOutcome> outcomes;

 private:
  GlibMainQueue mainQueue_;
  GtkApplicationPort application_{mainQueue_};
  TemporaryFolder folder_;
  const ConsentFile consent_{folder_.path() / "permissions.ini", "shop"};
  GtkRecordPermission permission_{mainQueue_, application_, consent_};
  GtkCamera camera_{mainQueue_, application_, permission_};
  GtkWindow* window_ = nullptr;
  std::shared_ptr<View> view_;
};

}  // namespace orivex::gtk
