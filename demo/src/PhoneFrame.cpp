#include "PhoneFrame.h"

#include "base/GObjects.h"

namespace orivex::demo {
namespace {

using DateTimePtr = std::unique_ptr<GDateTime, FreeWith<g_date_time_unref>>;

// A status bar at least this high makes room for a notch.
constexpr double leastHeightWithNotch = 40;  // points

GtkWidget* shapeNew(const char* styleClass) {
  auto* const shape = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
  gtk_widget_add_css_class(shape, styleClass);
  gtk_widget_set_halign(shape, GTK_ALIGN_CENTER);
  return shape;
}

// Time, notch, signal and battery.
GtkWidget* statusBarNew(GtkWidget* notch) {
  const DateTimePtr now(g_date_time_new_now_local());
  const CharPtr time(g_date_time_format(now.get(), "%H:%M"));
  auto* const signs = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 6);
  for (const char* icon : {"network-cellular-signal-excellent-symbolic", "battery-full-symbolic"}) {
    gtk_box_append(GTK_BOX(signs), gtk_image_new_from_icon_name(icon));
  }
  auto* const bar = gtk_center_box_new();
  gtk_center_box_set_start_widget(GTK_CENTER_BOX(bar), gtk_label_new(time.get()));
  gtk_center_box_set_center_widget(GTK_CENTER_BOX(bar), notch);
  gtk_center_box_set_end_widget(GTK_CENTER_BOX(bar), signs);
  gtk_widget_set_valign(notch, GTK_ALIGN_CENTER);
  gtk_widget_add_css_class(bar, "phone-status");
  return bar;
}

void addTo(GtkWidget* overlay, GtkWidget* part, GtkAlign edge) {
  gtk_widget_set_can_target(part, FALSE);
  gtk_widget_set_valign(part, edge);
  gtk_overlay_add_overlay(GTK_OVERLAY(overlay), part);
}

}  // namespace

PhoneFrame::PhoneFrame(GtkWidget* content)
    : overlay_(gtk_overlay_new()),
      notch_(shapeNew("phone-notch")),
      statusBar_(statusBarNew(notch_)),
      homeIndicator_(shapeNew("phone-home")) {
  gtk_overlay_set_child(GTK_OVERLAY(overlay_), content);
  addTo(overlay_, statusBar_, GTK_ALIGN_START);
  addTo(overlay_, homeIndicator_, GTK_ALIGN_END);
}

void PhoneFrame::apply(const Settings& settings) {
  gtk_widget_set_size_request(statusBar_, -1, static_cast<int>(settings.statusBarHeight));
  gtk_widget_set_visible(statusBar_, settings.statusBarHeight > 0);
  gtk_widget_set_visible(notch_, settings.statusBarHeight >= leastHeightWithNotch);
  gtk_widget_set_visible(homeIndicator_, settings.bottomInset > 0);
}

}  // namespace orivex::demo
