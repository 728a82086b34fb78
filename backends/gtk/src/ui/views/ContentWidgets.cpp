#include "ContentWidgets.h"

#include "../../Contained.h"
#include "../../web/WebKitEngine.h"
#include "../Announcement.h"
#include "../Widgets.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Bundle.h"
#include "orivex/platform/ui/ContentViews.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

constexpr int gapAbove = 3;  // of a line at the upper edge, in points

constexpr const char* css = R"css(
.orivex-shadow { text-shadow: 0 0 2px black, 0 0 3px black; }
.orivex-sign { padding: 0; border-radius: 22px; font-size: 30px; font-weight: 400; }
)css";

guint16 pangoChannel(double value) {
  return static_cast<guint16>(value * 65535.0);
}

void updateLabel(GtkLabel* widget, const Label& label) {
  const auto color = label.textColor();
  PangoAttrList* const attributes = pango_attr_list_new();
  pango_attr_list_insert(attributes, pango_attr_foreground_new(pangoChannel(color.red), pangoChannel(color.green),
                                                               pangoChannel(color.blue)));
  pango_attr_list_insert(attributes, pango_attr_foreground_alpha_new(pangoChannel(color.alpha)));
  // Device units are points here: frames of views do not grow with the desktop's text size, so neither may their text.
  pango_attr_list_insert(attributes, pango_attr_size_new_absolute(static_cast<int>(label.fontSize() * PANGO_SCALE)));
  gtk_label_set_attributes(widget, attributes);
  pango_attr_list_unref(attributes);
  gtk_label_set_text(widget, label.text().c_str());
  const auto alignment = label.alignment();
  const bool isLeft = alignment == TextAlignment::left;
  gtk_label_set_xalign(widget, isLeft ? 0 : alignment == TextAlignment::center ? 0.5F : 1);
  gtk_label_set_yalign(widget, label.isAtTop() ? 0 : 0.5F);
  gtk_widget_set_margin_top(GTK_WIDGET(widget), label.isAtTop() ? gapAbove : 0);
  if (label.hasShadow()) {
    installStyle(css);
    gtk_widget_add_css_class(GTK_WIDGET(widget), "orivex-shadow");
  }
}

void updateImage(GtkPicture* widget, const ImageView& image) {
  const auto path = Platform::current().componentBundle.pathForResource(image.imageName(), "svg");
  gtk_picture_set_filename(widget, path ? path->c_str() : nullptr);
  const bool fills = image.contentMode() == ContentMode::scaleToFill;
  gtk_picture_set_content_fit(widget, fills ? GTK_CONTENT_FIT_FILL : GTK_CONTENT_FIT_CONTAIN);
}

GtkWidget* buttonFor(const Button& button) {
  installStyle(css);
  GtkWidget* const widget = gtk_button_new_with_label(button.sign().c_str());
  for (const char* const style : {"flat", "orivex-sign"}) gtk_widget_add_css_class(widget, style);
  makeLight(widget);
  setAccessibleLabel(widget, button.name());
  return widget;
}

}  // namespace

GRef<GtkWidget> contentWidgetFor(View& view) {
  if (const auto* web = dynamic_cast<const WebView*>(&view)) {
    auto& engine = dynamic_cast<WebKitEngine&>(web->engine());
    engine.shownBy(view);
    return GRef<GtkWidget>::share(engine.widget());
  }
  if (const auto* host = dynamic_cast<const WidgetView*>(&view)) return GRef<GtkWidget>::share(host->widget());
  GRef<GtkWidget> widget;
  if (dynamic_cast<const ImageView*>(&view)) {
    widget = GRef<GtkWidget>::sink(decorative(gtk_picture_new()));
    gtk_widget_set_can_target(widget.get(), FALSE);
  } else if (const auto* label = dynamic_cast<const Label*>(&view)) {
    const auto role = label->isAnnounced() ? GTK_ACCESSIBLE_ROLE_ALERT : GTK_ACCESSIBLE_ROLE_LABEL;
    widget = GRef<GtkWidget>::sink(GTK_WIDGET(g_object_new(GTK_TYPE_LABEL, "accessible-role", role, nullptr)));
    gtk_label_set_ellipsize(GTK_LABEL(widget.get()), PANGO_ELLIPSIZE_END);
    const auto appeared = [](GtkWidget* shown, gpointer /*data*/) noexcept {
      contained([&] { announce(shown, gtk_label_get_text(GTK_LABEL(shown))); });
    };
    if (label->isAnnounced()) g_signal_connect(widget.get(), "map", G_CALLBACK(+appeared), nullptr);
  } else if (const auto* button = dynamic_cast<const Button*>(&view)) {
    widget = GRef<GtkWidget>::sink(buttonFor(*button));
  }
  if (widget) updateContentWidget(widget.get(), view);
  return widget;
}

void updateContentWidget(GtkWidget* widget, const View& view) {
  if (const auto* label = dynamic_cast<const Label*>(&view)) updateLabel(GTK_LABEL(widget), *label);
  if (const auto* image = dynamic_cast<const ImageView*>(&view)) updateImage(GTK_PICTURE(widget), *image);
}

void allocateContentWidget(GtkWidget* widget, const View& view, int width, int height) {
  const auto* const image = dynamic_cast<const ImageView*>(&view);
  if (!image || image->contentMode() == ContentMode::scaleToFill) {
    return gtk_widget_allocate(widget, width, height, -1, nullptr);
  }
  int naturalWidth = 0;
  int naturalHeight = 0;
  gtk_widget_measure(widget, GTK_ORIENTATION_HORIZONTAL, -1, nullptr, &naturalWidth, nullptr, nullptr);
  gtk_widget_measure(widget, GTK_ORIENTATION_VERTICAL, -1, nullptr, &naturalHeight, nullptr, nullptr);
  // Of its own size, whatever the view's: where the view is smaller, its lower part shows. The frame, unlike the size
  // that was given, is not rounded: a picture in a view that changes its height stands still.
  const graphene_point_t origin{static_cast<float>((view.frame().width - naturalWidth) / 2),
                                static_cast<float>(view.frame().height - naturalHeight)};
  gtk_widget_allocate(widget, naturalWidth, naturalHeight, -1, gsk_transform_translate(nullptr, &origin));
}

std::shared_ptr<ViewController> screenFor(GtkWidget* widget) {
  return std::make_shared<WidgetScreen>(GRef<GtkWidget>::sink(widget));
}

std::shared_ptr<View> viewFor(GtkWidget* widget) {
  return std::make_shared<WidgetView>(GRef<GtkWidget>::sink(widget));
}

}  // namespace orivex::gtk
