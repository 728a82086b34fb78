#pragma once

#include <memory>
#include <string>

#include <gtk/gtk.h>

#include "orivex/Export.h"
#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/ui/ViewController.h"
#include "orivex/platform/ui/Window.h"

/// The component on a real device: GTK 4, WebKitGTK, GStreamer and libcurl. Main thread only.
namespace orivex::gtk {

/// Makes the real device the platform of this process, and GTK ready if it is not. Call it once, before the first chat
/// screen is made and after the GApplication, if there is one: what is kept of a visitor is kept under its identifier.
/// Without a display the process ends with one line.
ORIVEX_API void install();

/// The areas of a window that something else covers, in points; nothing on a desktop.
struct Surroundings {
  double statusBarHeight = 0;
  EdgeInsets safeAreaInsets;
};

/// Turns a window into one that shows screens: what it holds now becomes its root screen, over which the chat is
/// presented. Takes GtkWindow, GtkApplicationWindow, AdwWindow and AdwApplicationWindow. The result lives as long as
/// the GTK window; attaching a window twice gives the same result.
ORIVEX_API std::shared_ptr<Window> attach(GtkWindow* window, const Surroundings& surroundings = {});

/// A widget that shows a screen in a part of a window, for example the chat in a GtkPaned, a split view or a popover.
/// What the chat opens (sheets, camera, messages) stays over the widget, dialogs over its window. The page's "goBack"
/// and `close()` leave the chat where it is and tell its delegate `closed`; the host then hides the widget or takes it
/// away, and may show it again, in another window too. The screen closes when the widget is in no window any more, and
/// lives as long as the widget. That takes what room there is, 240 by 160 points at least. Nothing is behind it, so
/// there is no swipe back. One widget for each screen, which has started its session. Returns a floating reference.
ORIVEX_API GtkWidget* widgetFor(const std::shared_ptr<ViewController>& screen);

/// Changes what covers an attached window; screens that show already keep what they were told.
ORIVEX_API void setSurroundings(GtkWindow* window, const Surroundings& surroundings);

/// Lets pages hand addresses of this scheme, in lower case and without its colon, to the visitor's other applications:
/// by "openUrl" and by windows of their own. http, https, mailto, tel, sms and geo are let through anyway; all others
/// cannot be opened. Think twice: what handles "file" runs programs.
ORIVEX_API void allowScheme(const std::string& scheme);

/// A screen that shows a widget of the host, for example as the root of a NavigationController. Takes a reference.
ORIVEX_API std::shared_ptr<ViewController> screenFor(GtkWidget* widget);

/// A view that shows a widget of the host and follows the view's frame. Takes a reference.
ORIVEX_API std::shared_ptr<View> viewFor(GtkWidget* widget);

}  // namespace orivex::gtk
